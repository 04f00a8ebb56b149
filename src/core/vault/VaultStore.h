// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "context/TrackedApp.h"
#include "vault/AppShortcutPack.h"
#include "vault/PreparedShortcutList.h"
#include "vault/ShortcutItem.h"
#include "vault/ShortcutSection.h"
#include "vault/VaultData.h"
#include "vault/VaultShortcutRow.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <optional>

namespace Tessaline {

class ScanHistory;
class VaultFileWatcher;

/// Owns the one in-memory copy of the vault, keeps it in step with the data file
/// ($XDG_DATA_HOME/Tessaline/keybinds.json) and publishes every change. Failures never
/// escape: they end up in `lastError`, which the next successful load or write clears.
///
/// Other programs may write the same file (the command line, a text editor, a second copy of
/// the application). Every edit is therefore a change applied to the newest file under the
/// lock beside it (VaultFileLock) and written back whole, so no writer loses another's edit.
class VaultStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Tessaline::VaultData data READ data NOTIFY dataChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(QString lastError READ lastErrorText NOTIFY lastErrorChanged)
    Q_PROPERTY(QString dataFilePath READ dataFilePath CONSTANT)

public:
    /// Where the store keeps its file and where it looks for the seed of a new vault.
    struct Configuration
    {
        QString dataFilePath;
        /// Seed files in order of preference; the first that exists is used, and if it cannot
        /// be read the later ones are not tried.
        QStringList seedCandidates;

        /// The data file under the user's data folder and the seed next to the installed
        /// program, in the build tree, then in a "Tessaline for Jorvo" folder beside the working
        /// directory.
        static Configuration standard();
    };

    explicit VaultStore(QObject* parent = nullptr);
    explicit VaultStore(Configuration configuration, QObject* parent = nullptr);

    const VaultData& data() const { return m_data; }
    QString filter() const { return m_filter; }
    void setFilter(const QString& filter);
    std::optional<QString> lastError() const { return m_lastError; }
    QString lastErrorText() const { return m_lastError.value_or(QString()); }

    QString dataFilePath() const { return m_configuration.dataFilePath; }
    /// Where a data file that failed to load is kept before the first write replaces it.
    QString damagedCopyPath() const;
    /// True while the data file exists but failed to load at start or at the last reload.
    bool dataFileIsDamaged() const { return m_dataFileDamaged; }
    /// The last menu scan of each app, kept beside the data file; reset and import clear it,
    /// since the items it describes are gone.
    ScanHistory& scanHistory() const { return *m_scanHistory; }

    /// An edit of the vault. It is run on the newest copy of the vault and returns whether it
    /// changed anything; it may run more than once, so running it twice must equal running it
    /// once (set a flag to a value, add what is missing).
    using Change = std::function<bool(VaultData&)>;

    /// Applies `change` to the newest vault: under the file's lock it reads the data file,
    /// applies the edits not yet written and `change`, writes the result atomically, unlocks
    /// and publishes it. A data file that fails to load is not written over unless the store
    /// already reported it (then a copy is kept at damagedCopyPath()). When the file cannot be
    /// written the edit is kept in `data` and written with the next change that succeeds.
    /// Returns whether the file now holds the edit.
    bool apply(const Change& change);

    /// Reads the data file again; on failure `data` stays as it was.
    Q_INVOKABLE
    void reload();
    /// Reloads as reload() does, but only when the file differs from what this store last read
    /// or wrote: another program changed it.
    void reloadIfChangedOutside();
    /// Watches the data file and its folder and reloads an outside change as soon as the file
    /// has been quiet for a moment (see VaultFileWatcher).
    void followOutsideChanges();
    /// Writes the vault to the data file: the newest file with the edits not written yet, or
    /// the data shown when the file is missing or its damage was reported.
    void persistQuietly();
    /// Replaces the whole data file and `data` with the seed vault, on purpose: edits made
    /// elsewhere since and the scan history are dropped.
    Q_INVOKABLE
    void resetToSeed();
    /// Replaces the whole data file and `data` with the vault in `filePath`, on purpose, and
    /// drops the scan history.
    Q_INVOKABLE
    void importData(const QString& filePath);
    /// Writes the current data to `filePath`.
    Q_INVOKABLE
    void exportData(const QString& filePath);

    /// The pack of `app`: by bundle id first, then by case-insensitive name.
    std::optional<AppShortcutPack> appPack(const TrackedApp& app) const;
    /// The cheat sheet's sections for `app`, filtered and ranked by `filter`.
    QList<ShortcutSection> sections(const TrackedApp& app) const;
    /// Flips the favorite flag of the stored item with `item`'s id, looked up in the pack of
    /// `app` and then in the global list, and writes the vault.
    void toggleFavorite(const ShortcutItem& item, const TrackedApp& app);
    /// The stored item that `toggleFavorite` would change for this id and app, if any.
    std::optional<ShortcutItem> storedItem(const QString& itemId, const TrackedApp& app) const;
    /// Every item of the vault as rows: the global list first, then the packs by name.
    QList<VaultShortcutRow> allShortcutRows() const;
    /// Adds the scanned items the app's pack lacks (by case-insensitive name and chord),
    /// creating the pack if needed, re-sorts the pack and writes the vault. Returns how many
    /// items were added.
    qsizetype mergeScannedShortcuts(const QList<ShortcutItem>& scanned, const TrackedApp& app);

    /// Removes the items of `app`'s pack that the last scan of the app no longer found (see
    /// ShortcutDrift) and writes the vault. Returns the items removed: none when the app has no
    /// pack or no scan on record.
    QList<ShortcutItem> pruneStaleItems(const TrackedApp& app);

    /// Title of the section holding the global list, also the app name of its rows.
    static QString globalSectionTitle();

signals:
    void dataChanged();
    void filterChanged();
    void lastErrorChanged();

private:
    struct ItemLocation
    {
        qsizetype pack = -1; // -1: the global list
        qsizetype item = -1;
    };

    Expected<void> bootstrapIfNeeded();
    /// The seed vault, its global list in vault order (the built-in stand-in is taken as it is).
    Expected<VaultData> loadSeedData() const;
    /// The vault in `filePath`, its global list in vault order.
    Expected<VaultData> readVault(const QString& filePath) const;
    /// The vault in `bytes` read from `filePath`, its global list in vault order.
    static Expected<VaultData> decodeVault(const QByteArray& bytes, const QString& filePath);
    /// Writes the data file (keeping a copy of a damaged one first) and remembers what it holds.
    Expected<void> writeDataFile(const QByteArray& bytes);
    /// Writes `bytes` as the whole data file under its lock.
    Expected<void> replaceDataFile(const QByteArray& bytes);
    Expected<void> keepDamagedCopy();
    /// Puts a vault just read in place of `data`, with `writeFirst` only once the data file
    /// holds it. A failure leaves `data` and the file as they were and becomes lastError.
    /// Returns whether `data` was replaced.
    bool replaceData(Expected<VaultData> loaded, bool writeFirst);
    /// Replaces the vault on purpose (reset, import) and then forgets the scans of the old one.
    void replaceVault(Expected<VaultData> loaded);

    /// The packs that stand for `app`, in the order they are tried: the first with its bundle
    /// id, then the first with its name (case-insensitive); -1 where there is none.
    static std::array<qsizetype, 2> packCandidates(const VaultData& data, const TrackedApp& app);
    /// The pack of `app`: the first of packCandidates() that exists, or -1.
    static qsizetype packIndex(const VaultData& data, const TrackedApp& app);
    qsizetype packIndex(const TrackedApp& app) const { return packIndex(m_data, app); }
    static std::optional<ItemLocation> locateItem(const VaultData& data, const QString& itemId,
                                                  const TrackedApp& app);
    /// The merge of `scanned` into the pack of `app` in `data`; returns how many were added.
    static qsizetype mergeInto(VaultData& data, const QList<ShortcutItem>& scanned,
                               const TrackedApp& app);
    /// Keeps an edit that could not be written: shown in `data`, written with the next change.
    void keepUnsaved(const Change& change);

    void setData(VaultData data);
    /// Every change of `data` goes through here: drops the prepared search forms and notifies.
    void publishDataChange();
    /// The prepared search forms of a pack's items (-1: the global list), built on first use
    /// after each change and kept while the vault stays as it is.
    const PreparedShortcutList& preparedItems(qsizetype packIndex) const;
    /// A pack's items split as its sections list them: favourites, the app's own shortcuts and
    /// those discovered from its menus, as indices in stored order. Kept like preparedItems().
    const std::array<QList<qsizetype>, 3>& packParts(qsizetype packIndex) const;
    void setLastError(std::optional<QString> error);

    Configuration m_configuration;
    VaultData m_data;
    QString m_filter;
    std::optional<QString> m_lastError;
    bool m_dataFileDamaged = false;
    /// The data file's bytes as this store last read or wrote them (none: it could not be
    /// read), to tell an outside change from the store's own write.
    std::optional<QByteArray> m_fileBytes;
    /// Edits shown in `data` that the file does not hold yet, because writing it failed.
    QList<Change> m_unsaved;
    VaultFileWatcher* m_watcher = nullptr;
    ScanHistory* m_scanHistory = nullptr;
    mutable QHash<qsizetype, PreparedShortcutList> m_prepared;
    mutable QHash<qsizetype, std::array<QList<qsizetype>, 3>> m_packParts;
};

} // namespace Tessaline
