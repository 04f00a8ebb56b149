// SPDX-License-Identifier: MIT
#pragma once

#include "ShortcutListModel.h"
#include "context/TrackedApp.h"
#include "lookup/DesktopShortcut.h"
#include "lookup/ShortcutLookup.h"
#include "vault/ShortcutDrift.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

namespace Tessaline {

class AppMenuScanner;
class KeyNamePreference;
class ShortcutRunner;
class TextHelperService;
class VaultStore;

/// What the cheat-sheet view shows for one app: its sections flattened into rows, the header's
/// state and the scan status that belongs to the app. Recomputed whenever the vault, the search
/// text or the scanner changes.
class CheatSheetModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("CheatSheetModel is created with each HUD panel")
    Q_PROPERTY(QString appName READ appName CONSTANT)
    /// The app's bundle id, or undefined when it has none.
    Q_PROPERTY(QVariant appBundleID READ appBundleID CONSTANT)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(bool vaultReady READ vaultReady NOTIFY sectionsChanged)
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(int flatCount READ flatCount NOTIFY sectionsChanged)
    Q_PROPERTY(QString scanStatus READ scanStatus NOTIFY scanStatusChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY scanStatusChanged)
    Q_PROPERTY(QVariantList helperActions READ helperActions CONSTANT)
    /// Whether rows can be run in the app (their run buttons are shown).
    Q_PROPERTY(bool canRun READ canRun CONSTANT)
    /// True while key lookup waits for chords: the rows are then the shortcuts bound to the
    /// last chord pressed, labelled by where they come from.
    Q_PROPERTY(bool lookupActive READ lookupActive NOTIFY lookupChanged)
    /// The chord looked up, drawn as the user wants chords drawn; empty until one is pressed.
    Q_PROPERTY(QString lookupChordText READ lookupChordText NOTIFY lookupChanged)

public:
    /// `copyText` puts a chord on the clipboard; `helperActions` lists the helper bar's
    /// buttons as maps of "raw", "title" and "help".
    CheatSheetModel(VaultStore& store, AppMenuScanner& scanner, TrackedApp app,
                    std::function<void(const QString&)> copyText, QVariantList helperActions,
                    QObject* parent = nullptr);

    /// Draws the rows' chords as `keyNames` says, now and whenever the user changes it.
    void followKeyNames(const KeyNamePreference& keyNames);
    /// Runs rows through `run`, and shows `runner`'s word on the last failed run in this app
    /// in the status area (ahead of the scan status).
    void followRunner(ShortcutRunner& runner, std::function<void(const ShortcutItem&)> run);
    /// Shows `helpers`' word on a helper text that could not be typed in the status area
    /// (ahead of every other status).
    void followTextHelpers(TextHelperService& helpers);
    /// The desktop's own key bindings: key lookup lists them, and the app's rows whose chord
    /// the desktop takes are marked.
    void setDesktopShortcuts(QList<DesktopShortcut> shortcuts);

    const TrackedApp& app() const { return m_app; }
    QString appName() const { return m_app.name; }
    QVariant appBundleID() const;
    QString filter() const;
    void setFilter(const QString& filter);
    bool vaultReady() const;
    QAbstractItemModel* rows() { return &m_rows; }
    int flatCount() const { return static_cast<int>(m_rows.entries().size()); }
    QString scanStatus() const;
    bool isScanning() const;
    QVariantList helperActions() const { return m_helperActions; }
    bool lookupActive() const { return m_lookupActive; }
    QString lookupChordText() const;
    /// The chord looked up, in the stored form; empty until one is pressed.
    QString lookupChord() const { return m_lookupChord; }

    /// Starts key lookup: the rows are emptied until a chord is looked up.
    Q_INVOKABLE
    void startLookup();
    /// Lists the shortcuts bound to `chord` (either written form) in the app's pack, the global
    /// list and the desktop's bindings. Does nothing outside key lookup.
    Q_INVOKABLE
    void lookUp(const QString& chord);
    /// Leaves key lookup; the rows are the cheat sheet again.
    Q_INVOKABLE
    void stopLookup();

    /// Flips the favourite of row `index`.
    Q_INVOKABLE
    void toggleFavorite(int index);
    /// Copies `chord` to the clipboard.
    Q_INVOKABLE
    void copyChord(const QString& chord);
    /// Copies the chord of row `index` of the sections as they are now; nothing when the index
    /// is out of range.
    void copyChordAt(int index);
    /// Runs row `index` of the sections as they are now in the app; nothing when the index is
    /// out of range or rows cannot be run here.
    Q_INVOKABLE
    void runAt(int index);
    bool canRun() const { return static_cast<bool>(m_run); }
    /// Clears the scanner's and the runner's status message.
    Q_INVOKABLE
    void dismissScanStatus();

    // The panel's commands, which the application carries out: each emits its request.
    Q_INVOKABLE
    void requestClose() { emit closeRequested(); }
    Q_INVOKABLE
    void requestReload() { emit reloadRequested(); }
    Q_INVOKABLE
    void requestScanMenus() { emit scanMenusRequested(); }
    Q_INVOKABLE
    void requestBrowseAll() { emit browseAllRequested(); }
    Q_INVOKABLE
    void requestSettings() { emit settingsRequested(); }
    /// `rawValue` is the "raw" of one of the helper actions.
    Q_INVOKABLE
    void requestHelperAction(const QString& rawValue) { emit helperActionRequested(rawValue); }

signals:
    void filterChanged();
    void sectionsChanged();
    void scanStatusChanged();
    void closeRequested();
    void reloadRequested();
    void scanMenusRequested();
    void browseAllRequested();
    void settingsRequested();
    void helperActionRequested(const QString& rawValue);
    void lookupChanged();

private:
    void recompute();
    /// The item at flat `index` of the sections as they are now.
    std::optional<ShortcutItem> itemAt(int index) const;
    /// The index of the app's pack, the global list and the desktop's bindings, made once.
    const ShortcutLookup& lookup();
    /// The rows of key lookup: the shortcuts bound to the chord, under their source.
    QList<ShortcutListModel::Entry> lookupEntries();
    /// Finds the app's chords that clash again (after the vault or the desktop changed).
    void findConflicts();
    /// Finds the app's items that the last scan of the app no longer found, and the old chords
    /// of those whose chord changed (after the vault or the scan history changed).
    void findDrift();

    QPointer<VaultStore> m_store;
    QPointer<AppMenuScanner> m_scanner;
    QPointer<ShortcutRunner> m_runner;
    QPointer<TextHelperService> m_helpers;
    std::function<void(const ShortcutItem&)> m_run;
    TrackedApp m_app;
    std::function<void(const QString&)> m_copyText;
    QVariantList m_helperActions;
    ShortcutListModel m_rows;
    KeyNameStyle m_keyNames = KeyNameStyle::Words;
    QList<DesktopShortcut> m_desktop;
    /// Reasons of the app's clashing chords by item id, one reason per line.
    QHash<QString, QString> m_conflicts;
    /// Items of the app's pack that went stale or changed their chord, by item id.
    QHash<QString, ShortcutDrift::Mark> m_drift;
    bool m_lookupActive = false;
    QString m_lookupChord;
    /// Built when key lookup starts, dropped when the vault changes.
    std::optional<ShortcutLookup> m_lookup;
};

} // namespace Tessaline
