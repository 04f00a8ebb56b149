// SPDX-License-Identifier: MIT
#include "vault/VaultStore.h"

#include "LogCategories.h"

#include "vault/FallbackData.h"
#include "vault/ScanHistory.h"
#include "vault/ShortcutDrift.h"
#include "vault/VaultCodec.h"
#include "vault/VaultFileLock.h"
#include "vault/VaultFileWatcher.h"
#include "vault/VaultOrder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

namespace Tessaline {

namespace {

const QString kSeedFileName = QStringLiteral("keybinds.json");

QString nativePath(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

// Writes through a temporary file in the same folder that replaces the target only once
// everything was written, so a failed write never leaves a half-written vault.
Expected<void> writeAtomically(const QString& filePath, const QByteArray& bytes)
{
    QSaveFile file(filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return Unexpected(QStringLiteral("Cannot write %1: %2").arg(nativePath(filePath), reason));
    }
    return {};
}

// The whole of `filePath`, or why it cannot be read.
Expected<QByteArray> readBytes(const QString& filePath)
{
    QFile file(filePath);
    const auto cannotRead = [&file, &filePath] {
        return Unexpected(
            QStringLiteral("Cannot read %1: %2").arg(nativePath(filePath), file.errorString()));
    };
    if (!file.open(QIODevice::ReadOnly))
        return cannotRead();
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return cannotRead();
    return bytes;
}

std::optional<QByteArray> bytesIfReadable(const QString& filePath)
{
    Expected<QByteArray> read = readBytes(filePath);
    if (!read)
        return std::nullopt;
    return std::move(*read);
}

// The error of a failed step, for the store's lastError; none for a success.
std::optional<QString> errorOf(const Expected<void>& result)
{
    if (result)
        return std::nullopt;
    return result.error();
}

} // namespace

VaultStore::Configuration VaultStore::Configuration::standard()
{
    Configuration configuration;
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (dataHome.isEmpty())
        qFatal("VaultStore: the system reports no folder for user data");
    configuration.dataFilePath = dataHome + QStringLiteral("/Tessaline/") + kSeedFileName;

    // 1. The resource folder of an installed copy, relative to the executable.
    if (QCoreApplication::instance()) {
        const QString shareDir = QStringLiteral(TESSALINE_SHARE_SUBDIR);
        const QString folder =
            QDir::isAbsolutePath(shareDir)
                ? shareDir
                : QCoreApplication::applicationDirPath() + QStringLiteral("/../") + shareDir;
        configuration.seedCandidates << QDir::cleanPath(folder + QLatin1Char('/') + kSeedFileName);
    }
    // 2. The build tree's copy, for runs from a build folder.
    configuration.seedCandidates << QStringLiteral(TESSALINE_BUILD_SHARE_DIR) + QLatin1Char('/') +
                                        kSeedFileName;
    // 3. and 4. A "Tessaline for Jorvo" folder beside the working directory: once formed from
    // the working directory's parent as it stands, once from "..", resolved.
    const QString workingDir = QDir::currentPath();
    const QString relative = QStringLiteral("Tessaline for Jorvo/") + kSeedFileName;
    configuration.seedCandidates << QDir(QFileInfo(workingDir).path()).filePath(relative);
    configuration.seedCandidates << QDir::cleanPath(workingDir + QStringLiteral("/../") + relative);
    return configuration;
}

VaultStore::VaultStore(QObject* parent) : VaultStore(Configuration::standard(), parent) {}

VaultStore::VaultStore(Configuration configuration, QObject* parent)
    : QObject(parent), m_configuration(std::move(configuration)),
      m_scanHistory(new ScanHistory(ScanHistory::filePathBeside(dataFilePath()), this))
{
    const Expected<void> ready = bootstrapIfNeeded();
    if (ready)
        m_fileBytes = bytesIfReadable(dataFilePath());
    Expected<VaultData> loaded =
        ready ? readVault(dataFilePath()) : Expected<VaultData>(Unexpected(ready.error()));
    // A file that fails to load stays as it is; it is copied aside before anything replaces it.
    m_dataFileDamaged = ready && !loaded && QFileInfo::exists(dataFilePath());
    if (loaded) {
        m_data = std::move(*loaded);
    } else {
        m_lastError = loaded.error();
        m_data = fallbackData();
    }
}

QString VaultStore::globalSectionTitle()
{
    return QStringLiteral("Global desktop essentials");
}

QString VaultStore::damagedCopyPath() const
{
    return dataFilePath() + QStringLiteral(".damaged");
}

void VaultStore::setFilter(const QString& filter)
{
    if (m_filter == filter)
        return;
    m_filter = filter;
    emit filterChanged();
}

void VaultStore::publishDataChange()
{
    m_prepared.clear();
    m_packParts.clear();
    emit dataChanged();
}

void VaultStore::setData(VaultData data)
{
    m_data = std::move(data);
    publishDataChange();
}

void VaultStore::setLastError(std::optional<QString> error)
{
    if (m_lastError == error)
        return;
    m_lastError = std::move(error);
    emit lastErrorChanged();
}

// ---- File life cycle -------------------------------------------------------------------------

Expected<void> VaultStore::bootstrapIfNeeded()
{
    const QString folder = QFileInfo(dataFilePath()).absolutePath();
    if (!QFileInfo::exists(folder)) {
        std::error_code code;
        std::filesystem::create_directories(std::filesystem::path(folder.toStdString()), code);
        if (code) {
            return Unexpected(QStringLiteral("Cannot create the folder %1: %2")
                                  .arg(nativePath(folder), QString::fromStdString(code.message())));
        }
    }
    if (QFileInfo::exists(dataFilePath()))
        return {};

    const Expected<VaultData> seed = loadSeedData();
    if (!seed)
        return Unexpected(seed.error());
    return writeAtomically(dataFilePath(), VaultCodec::encode(*seed));
}

Expected<VaultData> VaultStore::loadSeedData() const
{
    for (const QString& candidate : m_configuration.seedCandidates) {
        if (candidate.isEmpty() || !QFileInfo::exists(candidate))
            continue;
        // Only the first existing candidate counts: a broken seed is reported, not skipped.
        return readVault(candidate);
    }
    return fallbackData();
}

Expected<VaultData> VaultStore::readVault(const QString& filePath) const
{
    const Expected<QByteArray> bytes = readBytes(filePath);
    if (!bytes)
        return Unexpected(bytes.error());
    return decodeVault(*bytes, filePath);
}

Expected<VaultData> VaultStore::decodeVault(const QByteArray& bytes, const QString& filePath)
{
    Expected<VaultData> result = VaultCodec::decode(bytes);
    if (!result)
        return Unexpected(QStringLiteral("%1 is not a valid vault file: %2")
                              .arg(nativePath(filePath), result.error()));
    VaultOrder::sort(result->global);
    return result;
}

Expected<void> VaultStore::keepDamagedCopy()
{
    if (!m_dataFileDamaged || !QFileInfo::exists(dataFilePath()))
        return {};
    const QString copyPath = damagedCopyPath();
    if (QFileInfo::exists(copyPath) && !QFile::remove(copyPath))
        return Unexpected(QStringLiteral("Cannot replace %1 with a copy of the damaged vault")
                              .arg(nativePath(copyPath)));
    QFile original(dataFilePath());
    if (!original.copy(copyPath))
        return Unexpected(QStringLiteral("Cannot keep a copy of the damaged vault at %1: %2")
                              .arg(nativePath(copyPath), original.errorString()));
    return {};
}

Expected<void> VaultStore::writeDataFile(const QByteArray& bytes)
{
    // A data file that failed to load may hold a hand edit with one typo: keep it beside the
    // vault before the first write replaces it.
    if (Expected<void> kept = keepDamagedCopy(); !kept)
        return kept;
    if (Expected<void> written = writeAtomically(dataFilePath(), bytes); !written)
        return written;
    m_dataFileDamaged = false;
    m_fileBytes = bytes;
    return {};
}

Expected<void> VaultStore::replaceDataFile(const QByteArray& bytes)
{
    VaultFileLock lock(dataFilePath());
    if (Expected<void> locked = lock.acquire(); !locked)
        return locked;
    // The file is replaced whole, but a damaged one is still copied aside first.
    if (!m_dataFileDamaged && QFileInfo::exists(dataFilePath()))
        m_dataFileDamaged = !readVault(dataFilePath());
    return writeDataFile(bytes);
}

bool VaultStore::replaceData(Expected<VaultData> loaded, bool writeFirst)
{
    if (!loaded) {
        setLastError(std::move(loaded).error());
        return false;
    }
    if (writeFirst) {
        if (Expected<void> written = replaceDataFile(VaultCodec::encode(*loaded)); !written) {
            setLastError(written.error());
            return false;
        }
        // The replacement is what the user asked for: edits that could not be written are
        // dropped with the rest of the old vault.
        m_unsaved.clear();
    } else {
        // Edits not written yet stay visible on top of what was read.
        for (const Change& change : std::as_const(m_unsaved))
            change(*loaded);
    }
    setData(std::move(*loaded));
    setLastError(std::nullopt);
    return true;
}

void VaultStore::replaceVault(Expected<VaultData> loaded)
{
    if (!replaceData(std::move(loaded), true))
        return;
    // The scans on record describe items that are gone; the vault itself is already replaced,
    // so a history that cannot be removed is only logged.
    if (const Expected<void> cleared = m_scanHistory->clear(); !cleared)
        qCWarning(lcVault) << cleared.error();
}

void VaultStore::reload()
{
    const Expected<QByteArray> bytes = readBytes(dataFilePath());
    m_fileBytes = bytes ? std::optional<QByteArray>(*bytes) : std::nullopt;
    Expected<VaultData> loaded = bytes ? decodeVault(*bytes, dataFilePath())
                                       : Expected<VaultData>(Unexpected(bytes.error()));
    m_dataFileDamaged = !loaded && QFileInfo::exists(dataFilePath());
    replaceData(std::move(loaded), false);
}

void VaultStore::reloadIfChangedOutside()
{
    if (bytesIfReadable(dataFilePath()) == m_fileBytes)
        return;
    qCDebug(lcVault) << "reloading" << dataFilePath() << "after an outside change";
    reload();
}

void VaultStore::followOutsideChanges()
{
    if (m_watcher)
        return;
    m_watcher = new VaultFileWatcher(dataFilePath(), this);
    connect(m_watcher, &VaultFileWatcher::changed, this, &VaultStore::reloadIfChangedOutside);
    // The scan history lives in the same folder, so the same events tell of its changes.
    connect(m_watcher, &VaultFileWatcher::changed, m_scanHistory,
            &ScanHistory::reloadIfChangedOutside);
}

void VaultStore::persistQuietly()
{
    // Written as an edit that changes nothing, so that a newer file is not written over.
    apply([](VaultData&) { return true; });
}

void VaultStore::keepUnsaved(const Change& change)
{
    VaultData shown = m_data;
    if (!change(shown))
        return;
    m_unsaved.append(change);
    setData(std::move(shown));
}

bool VaultStore::apply(const Change& change)
{
    VaultFileLock lock(dataFilePath());
    if (Expected<void> locked = lock.acquire(); !locked) {
        keepUnsaved(change);
        setLastError(locked.error());
        return false;
    }

    // The newest vault is the file as it is now. Without a file it is the data shown; so it is
    // when the file is damaged and the store has already said so: the edit then replaces the
    // damaged file, which is copied aside first.
    VaultData base = m_data;
    bool readFresh = false;
    if (QFileInfo::exists(dataFilePath())) {
        const Expected<QByteArray> bytes = readBytes(dataFilePath());
        Expected<VaultData> newest = bytes ? decodeVault(*bytes, dataFilePath())
                                           : Expected<VaultData>(Unexpected(bytes.error()));
        if (newest) {
            base = std::move(*newest);
            readFresh = true;
            m_dataFileDamaged = false;
            m_fileBytes = *bytes;
        } else if (!m_dataFileDamaged) {
            // Damaged since it was last read (a hand edit in progress, say): leave it alone and
            // say so; a later edit, with the damage known, replaces it and keeps a copy.
            m_dataFileDamaged = true;
            m_fileBytes = bytes ? std::optional<QByteArray>(*bytes) : std::nullopt;
            setLastError(QStringLiteral("%1; the change was not saved and the file was left "
                                        "as it is")
                             .arg(newest.error()));
            return false;
        }
    }

    VaultData changed = base;
    bool anyChange = false;
    for (const Change& unsaved : std::as_const(m_unsaved))
        anyChange = unsaved(changed) || anyChange;
    if (!change(changed) && !anyChange) {
        // Nothing to write; what was read is still the newest vault.
        lock.release();
        if (readFresh && base != m_data) {
            setData(std::move(base));
            setLastError(std::nullopt);
        }
        return true;
    }

    const Expected<void> written = writeDataFile(VaultCodec::encode(changed));
    lock.release();
    if (written)
        m_unsaved.clear();
    else
        m_unsaved.append(change);
    setData(std::move(changed));
    setLastError(errorOf(written));
    return bool(written);
}

void VaultStore::resetToSeed()
{
    replaceVault(loadSeedData());
}

void VaultStore::importData(const QString& filePath)
{
    replaceVault(readVault(filePath));
}

void VaultStore::exportData(const QString& filePath)
{
    setLastError(errorOf(writeAtomically(filePath, VaultCodec::encode(m_data))));
}

// ---- Queries and edits -----------------------------------------------------------------------

std::array<qsizetype, 2> VaultStore::packCandidates(const VaultData& data, const TrackedApp& app)
{
    const QList<AppShortcutPack>& apps = data.apps;
    std::array<qsizetype, 2> found{-1, -1};
    if (app.bundleID) {
        for (qsizetype i = 0; i < apps.size() && found[0] < 0; ++i) {
            if (apps[i].bundleID && *apps[i].bundleID == *app.bundleID)
                found[0] = i;
        }
    }
    const QString name = app.name.toLower();
    for (qsizetype i = 0; i < apps.size() && found[1] < 0; ++i) {
        if (apps[i].name.toLower() == name)
            found[1] = i;
    }
    return found;
}

qsizetype VaultStore::packIndex(const VaultData& data, const TrackedApp& app)
{
    const std::array<qsizetype, 2> candidates = packCandidates(data, app);
    return candidates[0] >= 0 ? candidates[0] : candidates[1];
}

std::optional<AppShortcutPack> VaultStore::appPack(const TrackedApp& app) const
{
    const qsizetype index = packIndex(app);
    if (index < 0)
        return std::nullopt;
    return m_data.apps[index];
}

std::optional<VaultStore::ItemLocation>
VaultStore::locateItem(const VaultData& data, const QString& itemId, const TrackedApp& app)
{
    const auto findIn = [&itemId](const QList<ShortcutItem>& items) -> qsizetype {
        for (qsizetype i = 0; i < items.size(); ++i) {
            if (items[i].id() == itemId)
                return i;
        }
        return -1;
    };
    for (const qsizetype pack : packCandidates(data, app)) {
        if (pack < 0)
            continue;
        const qsizetype item = findIn(data.apps[pack].shortcuts);
        if (item >= 0)
            return ItemLocation{pack, item};
    }
    const qsizetype item = findIn(data.global);
    if (item >= 0)
        return ItemLocation{-1, item};
    return std::nullopt;
}

std::optional<ShortcutItem> VaultStore::storedItem(const QString& itemId,
                                                   const TrackedApp& app) const
{
    const std::optional<ItemLocation> location = locateItem(m_data, itemId, app);
    if (!location)
        return std::nullopt;
    if (location->pack < 0)
        return m_data.global[location->item];
    return m_data.apps[location->pack].shortcuts[location->item];
}

void VaultStore::toggleFavorite(const ShortcutItem& item, const TrackedApp& app)
{
    // The new value follows the item as the caller saw it, not the stored copy, so the change
    // sets a value and means the same on whatever copy of the vault it meets.
    const bool favorite = !item.isFavorite();
    apply([itemId = item.id(), app, favorite](VaultData& data) {
        const std::optional<ItemLocation> location = locateItem(data, itemId, app);
        if (!location)
            return false;
        ShortcutItem& stored = location->pack < 0
                                   ? data.global[location->item]
                                   : data.apps[location->pack].shortcuts[location->item];
        if (stored.favorite == favorite)
            return false;
        stored.favorite = favorite;
        return true;
    });
}

QList<VaultShortcutRow> VaultStore::allShortcutRows() const
{
    QList<VaultShortcutRow> rows;
    qsizetype count = m_data.global.size();
    for (const AppShortcutPack& pack : m_data.apps)
        count += pack.shortcuts.size();
    rows.reserve(count);

    for (const ShortcutItem& item : m_data.global)
        rows.append(VaultShortcutRow{globalSectionTitle(), std::nullopt, item});

    QList<const AppShortcutPack*> packs;
    packs.reserve(m_data.apps.size());
    for (const AppShortcutPack& pack : m_data.apps)
        packs.append(&pack);
    VaultOrder::sortByName(
        packs, [](const AppShortcutPack* pack) -> const QString& { return pack->name; });
    for (const AppShortcutPack* pack : packs) {
        for (const ShortcutItem& item : pack->shortcuts)
            rows.append(VaultShortcutRow{pack->name, pack->bundleID, item});
    }
    return rows;
}

qsizetype VaultStore::mergeScannedShortcuts(const QList<ShortcutItem>& scanned,
                                            const TrackedApp& app)
{
    if (scanned.isEmpty())
        return 0;
    // The change may be kept and run again with a later edit, so it owns what it needs.
    const auto added = std::make_shared<qsizetype>(0);
    apply([scanned, app, added](VaultData& data) {
        *added = mergeInto(data, scanned, app);
        return true;
    });
    return *added;
}

QList<ShortcutItem> VaultStore::pruneStaleItems(const TrackedApp& app)
{
    // The change may run again on a newer vault; what it removed last is what was removed.
    const auto removed = std::make_shared<QList<ShortcutItem>>();
    const ScanHistory& history = *m_scanHistory;
    apply([app, removed, &history](VaultData& data) {
        removed->clear();
        const qsizetype index = packIndex(data, app);
        if (index < 0)
            return false;
        AppShortcutPack& pack = data.apps[index];
        const std::optional<ScanRecord> lastScan = history.lastScan(pack);
        if (!lastScan)
            return false;
        *removed = ShortcutDrift::removeStale(pack.shortcuts, *lastScan);
        return !removed->isEmpty();
    });
    return *removed;
}

qsizetype VaultStore::mergeInto(VaultData& data, const QList<ShortcutItem>& scanned,
                                const TrackedApp& app)
{
    qsizetype index = packIndex(data, app);
    if (index < 0) {
        data.apps.append(AppShortcutPack{app.name, app.bundleID, {}});
        index = data.apps.size() - 1;
    }

    QList<ShortcutItem>& shortcuts = data.apps[index].shortcuts;
    QSet<QString> keys;
    keys.reserve(shortcuts.size() + scanned.size());
    for (const ShortcutItem& item : shortcuts)
        keys.insert(item.dedupeKey());

    qsizetype added = 0;
    for (const ShortcutItem& item : scanned) {
        const QString key = item.dedupeKey();
        if (keys.contains(key))
            continue;
        keys.insert(key);
        shortcuts.append(item);
        ++added;
    }
    // Any scan re-sorts the pack, even one that added nothing.
    VaultOrder::sort(shortcuts);
    return added;
}

const PreparedShortcutList& VaultStore::preparedItems(qsizetype packIndex) const
{
    auto found = m_prepared.constFind(packIndex);
    if (found == m_prepared.cend()) {
        found = m_prepared.insert(
            packIndex,
            PreparedShortcutList(packIndex < 0 ? m_data.global : m_data.apps[packIndex].shortcuts));
    }
    return *found;
}

const std::array<QList<qsizetype>, 3>& VaultStore::packParts(qsizetype packIndex) const
{
    auto found = m_packParts.constFind(packIndex);
    if (found == m_packParts.cend()) {
        std::array<QList<qsizetype>, 3> parts;
        const QList<ShortcutItem>& shortcuts = m_data.apps[packIndex].shortcuts;
        for (qsizetype i = 0; i < shortcuts.size(); ++i) {
            const ShortcutItem& item = shortcuts[i];
            parts[item.isFavorite() ? 0 : item.isScanned() ? 2 : 1].append(i);
        }
        found = m_packParts.insert(packIndex, std::move(parts));
    }
    return *found;
}

QList<ShortcutSection> VaultStore::sections(const TrackedApp& app) const
{
    const PreparedShortcut::Query query = PreparedShortcut::Query::fromTyped(m_filter);
    const qsizetype index = packIndex(app);
    const QString title = index >= 0 ? m_data.apps[index].name : app.name;

    // Each candidate section as indices into its list: the app's pack or the global list.
    struct Candidate
    {
        QString title;
        qsizetype list;
        QList<qsizetype> items;
    };
    QList<Candidate> candidates{{QStringLiteral("Favorites for %1").arg(title), index, {}},
                                {QStringLiteral("%1 shortcuts").arg(title), index, {}},
                                {QStringLiteral("Discovered from %1 menus").arg(title), index, {}},
                                {globalSectionTitle(), -1, {}}};
    if (index >= 0) {
        const std::array<QList<qsizetype>, 3>& parts = packParts(index);
        for (std::size_t part = 0; part < parts.size(); ++part)
            candidates[static_cast<qsizetype>(part)].items = parts[part];
    }
    candidates[3].items.reserve(m_data.global.size());
    for (qsizetype i = 0; i < m_data.global.size(); ++i)
        candidates[3].items.append(i);

    QList<ShortcutSection> result;
    for (const Candidate& candidate : std::as_const(candidates)) {
        if (candidate.items.isEmpty())
            continue;
        const QList<ShortcutItem>& items =
            candidate.list < 0 ? m_data.global : m_data.apps[candidate.list].shortcuts;
        ShortcutSection section{candidate.title, {}};
        if (query.isEmpty()) {
            section.shortcuts.reserve(candidate.items.size());
            for (const qsizetype i : candidate.items)
                section.shortcuts.append(items[i]);
            result.append(std::move(section));
            continue;
        }
        // Ranking happens within each section; the sections keep their fixed order.
        const PreparedShortcutList& prepared = preparedItems(candidate.list);
        QList<std::pair<qint64, qsizetype>> ranked;
        for (const qsizetype i : candidate.items) {
            if (const std::optional<qint64> score = prepared.score(i, query))
                ranked.append({*score, i});
        }
        if (ranked.isEmpty())
            continue;
        std::stable_sort(ranked.begin(), ranked.end(),
                         [](const auto& a, const auto& b) { return a.first > b.first; });
        section.shortcuts.reserve(ranked.size());
        for (const auto& entry : std::as_const(ranked))
            section.shortcuts.append(items[entry.second]);
        result.append(std::move(section));
    }
    return result;
}

} // namespace Tessaline
