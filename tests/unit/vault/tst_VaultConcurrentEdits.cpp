// SPDX-License-Identifier: MIT
// Several writers share one vault file: each store's edits are made to the newest file, an
// outside change is followed, and a folder that cannot be written loses nothing.
#include "VaultTestSupport.h"

#include "vault/FallbackData.h"
#include "vault/VaultFileLock.h"
#include "vault/VaultFileWatcher.h"
#include "vault/VaultStore.h"

#include <QLocale>
#include <QSaveFile>
#include <QSignalSpy>
#include <QtTest>

#include <sys/fsuid.h>
#include <unistd.h>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

const QByteArray kVault = R"({"global": [
    {"name": "Alpha", "chord": "⌃ A"}, {"name": "Beta", "chord": "⌃ B"},
    {"name": "Gamma", "chord": "⌃ G"}],
    "apps": [{"name": "Kate", "bundleID": "org.kde.kate",
              "shortcuts": [{"name": "Save", "chord": "⌃ S"}]}]})";

const TrackedApp kKate{QStringLiteral("Kate"), QStringLiteral("org.kde.kate")};

std::optional<bool> favoriteIn(const VaultData& data, const QString& name)
{
    for (const ShortcutItem& entry : data.global) {
        if (entry.name == name)
            return entry.favorite;
    }
    return std::nullopt;
}

VaultData decoded(const QByteArray& bytes)
{
    Expected<VaultData> data = VaultCodec::decode(bytes);
    return data ? *data : VaultData{};
}

bool writeAtomically(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

/// While it lives, this thread reaches files as an unprivileged user. Root passes every
/// permission check, so without it a read-only folder would not stop a test run as root.
class UnprivilegedFileAccess
{
public:
    UnprivilegedFileAccess()
    {
        if (geteuid() != 0)
            return;
        setfsgid(kNobody);
        setfsuid(kNobody);
        m_active = true;
    }
    ~UnprivilegedFileAccess()
    {
        if (!m_active)
            return;
        setfsuid(0);
        setfsgid(0);
    }
    UnprivilegedFileAccess(const UnprivilegedFileAccess&) = delete;
    UnprivilegedFileAccess& operator=(const UnprivilegedFileAccess&) = delete;

    /// True when this thread's file access is now that of an unprivileged user.
    bool holds() const
    {
        // An invalid id changes nothing and returns the current one.
        return !m_active || setfsuid(static_cast<uid_t>(-1)) == kNobody;
    }

private:
    static constexpr uid_t kNobody = 65534;
    bool m_active = false;
};

} // namespace

class TestVaultConcurrentEdits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
    void init()
    {
        QVERIFY(m_dir.emplace().isValid());
        m_configuration = configurationIn(*m_dir);
        QVERIFY(writeFile(m_configuration.dataFilePath, kVault));
    }

    void favoriteKeepsAnotherWritersEdit();
    void mergeKeepsAnotherWritersEdit();
    void favoriteOfAnItemRemovedElsewhereWritesNothing();
    void lockHeldElsewhereKeepsTheEditForTheNextWrite();
    void readOnlyFolderLosesNothing();
    void fileDamagedElsewhereIsLeftAloneByAnEdit();
    void importReplacesTheWholeFileOnPurpose();
    void ownWriteIsNotAnOutsideChange();
    void outsideChangeIsReloadedAsTheButtonWould();
    void watchedStoreFollowsAnAtomicReplace();
    void watchedStoreFollowsAnEditInPlace();
    void burstOfOutsideChangesIsReportedOnce();

private:
    std::optional<QTemporaryDir> m_dir;
    VaultStore::Configuration m_configuration;
};

void TestVaultConcurrentEdits::favoriteKeepsAnotherWritersEdit()
{
    VaultStore app(m_configuration);
    VaultStore commandLine(m_configuration);
    const ShortcutItem alpha = app.data().global.at(0);
    const ShortcutItem beta = app.data().global.at(1);

    commandLine.toggleFavorite(alpha, TrackedApp::placeholder());
    QVERIFY(!commandLine.lastError());
    // The app has not read the file since; its edit is still made to the newest one.
    QCOMPARE(favoriteIn(app.data(), QStringLiteral("Alpha")), std::nullopt);
    QSignalSpy published(&app, &VaultStore::dataChanged);
    app.toggleFavorite(beta, TrackedApp::placeholder());
    QVERIFY2(!app.lastError(), qPrintable(app.lastErrorText()));
    QCOMPARE(published.count(), 1);

    const VaultData onDisk = decoded(readFile(m_configuration.dataFilePath));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Alpha")), std::optional<bool>(true));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Beta")), std::optional<bool>(true));
    QCOMPARE(app.data(), onDisk);
}

void TestVaultConcurrentEdits::mergeKeepsAnotherWritersEdit()
{
    VaultStore app(m_configuration);
    VaultStore commandLine(m_configuration);
    commandLine.toggleFavorite(commandLine.data().global.at(2), TrackedApp::placeholder());

    const qsizetype added =
        app.mergeScannedShortcuts({item(QStringLiteral("Open"), QStringLiteral("⌃ O")),
                                   item(QStringLiteral("save"), QStringLiteral("⌃ s"))},
                                  kKate);
    QCOMPARE(added, 1);
    const VaultData onDisk = decoded(readFile(m_configuration.dataFilePath));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Gamma")), std::optional<bool>(true));
    QCOMPARE(names(onDisk.apps.at(0).shortcuts),
             (QStringList{QStringLiteral("Open"), QStringLiteral("Save")}));
    QCOMPARE(app.data(), onDisk);
}

void TestVaultConcurrentEdits::favoriteOfAnItemRemovedElsewhereWritesNothing()
{
    VaultStore app(m_configuration);
    const ShortcutItem alpha = app.data().global.at(0);
    const QByteArray without = R"({"global": [{"name": "Beta", "chord": "⌃ B"}], "apps": []})";
    QVERIFY(writeFile(m_configuration.dataFilePath, without));

    app.toggleFavorite(alpha, TrackedApp::placeholder());
    QVERIFY(!app.lastError());
    QCOMPARE(readFile(m_configuration.dataFilePath), without);
    // What was read is the newest vault, and it is what the store shows now.
    QCOMPARE(names(app.data().global), QStringList{QStringLiteral("Beta")});
}

void TestVaultConcurrentEdits::lockHeldElsewhereKeepsTheEditForTheNextWrite()
{
    VaultStore app(m_configuration);
    const QByteArray before = readFile(m_configuration.dataFilePath);
    {
        VaultFileLock other(m_configuration.dataFilePath);
        QVERIFY(other.acquire());
        app.toggleFavorite(app.data().global.at(0), TrackedApp::placeholder());
        QVERIFY(app.lastError());
        QVERIFY2(app.lastError()->contains(QStringLiteral("another program")),
                 qPrintable(app.lastErrorText()));
        QCOMPARE(readFile(m_configuration.dataFilePath), before);
        // Shown, not lost.
        QCOMPARE(favoriteIn(app.data(), QStringLiteral("Alpha")), std::optional<bool>(true));
    }
    app.toggleFavorite(app.data().global.at(1), TrackedApp::placeholder());
    QVERIFY2(!app.lastError(), qPrintable(app.lastErrorText()));
    const VaultData onDisk = decoded(readFile(m_configuration.dataFilePath));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Alpha")), std::optional<bool>(true));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Beta")), std::optional<bool>(true));
}

void TestVaultConcurrentEdits::readOnlyFolderLosesNothing()
{
    VaultStore app(m_configuration);
    const QString folder = QFileInfo(m_configuration.dataFilePath).absolutePath();
    const QByteArray before = readFile(m_configuration.dataFilePath);
    const auto readable = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                          QFile::ReadOther | QFile::ExeOther;
    // The unprivileged user must reach the folder; only the folder itself is read-only.
    QVERIFY(QFile::setPermissions(m_dir->path(), readable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(QFileInfo(folder).absolutePath(), readable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(folder, readable));
    {
        UnprivilegedFileAccess unprivileged;
        QVERIFY(unprivileged.holds());
        app.toggleFavorite(app.data().global.at(0), TrackedApp::placeholder());
    }
    QVERIFY(app.lastError());
    QVERIFY2(app.lastError()->contains(m_configuration.dataFilePath) &&
                 app.lastError()->contains(QStringLiteral("is not writable")),
             qPrintable(app.lastErrorText()));
    QCOMPARE(readFile(m_configuration.dataFilePath), before);
    QCOMPARE(favoriteIn(app.data(), QStringLiteral("Alpha")), std::optional<bool>(true));

    // Writable again: the next edit writes the earlier one too.
    QVERIFY(QFile::setPermissions(folder, readable | QFile::WriteOwner));
    app.toggleFavorite(app.data().global.at(1), TrackedApp::placeholder());
    QVERIFY2(!app.lastError(), qPrintable(app.lastErrorText()));
    const VaultData onDisk = decoded(readFile(m_configuration.dataFilePath));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Alpha")), std::optional<bool>(true));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Beta")), std::optional<bool>(true));
    QCOMPARE(app.data(), onDisk);
}

void TestVaultConcurrentEdits::fileDamagedElsewhereIsLeftAloneByAnEdit()
{
    VaultStore app(m_configuration);
    const ShortcutItem alpha = app.data().global.at(0);
    const VaultData shown = app.data();
    const QByteArray typo = R"({"global": [{"name": "Alpha", "chord": "⌃ A"},], "apps": []})";
    QVERIFY(writeFile(m_configuration.dataFilePath, typo));

    app.toggleFavorite(alpha, TrackedApp::placeholder());
    QVERIFY(app.lastError());
    QVERIFY2(app.lastError()->contains(QStringLiteral("is not a valid vault file")) &&
                 app.lastError()->contains(QStringLiteral("the change was not saved")),
             qPrintable(app.lastErrorText()));
    QCOMPARE(readFile(m_configuration.dataFilePath), typo);
    QCOMPARE(app.data(), shown);
    QVERIFY(app.dataFileIsDamaged());
    QVERIFY(!QFileInfo::exists(app.damagedCopyPath()));

    // The damage has been reported: the next edit replaces the file and keeps a copy of it.
    app.toggleFavorite(alpha, TrackedApp::placeholder());
    QVERIFY2(!app.lastError(), qPrintable(app.lastErrorText()));
    QCOMPARE(readFile(app.damagedCopyPath()), typo);
    const VaultData onDisk = decoded(readFile(m_configuration.dataFilePath));
    QCOMPARE(favoriteIn(onDisk, QStringLiteral("Alpha")), std::optional<bool>(true));
    QCOMPARE(names(onDisk.global), names(shown.global));
}

void TestVaultConcurrentEdits::importReplacesTheWholeFileOnPurpose()
{
    VaultStore app(m_configuration);
    VaultStore commandLine(m_configuration);
    commandLine.toggleFavorite(commandLine.data().global.at(0), TrackedApp::placeholder());
    const QString imported = m_dir->filePath(QStringLiteral("other.json"));
    const QByteArray other = R"({"global": [{"name": "Other", "chord": "⌃ O"}], "apps": []})";
    QVERIFY(writeFile(imported, other));

    app.importData(imported);
    QVERIFY(!app.lastError());
    const VaultData onDisk = decoded(readFile(m_configuration.dataFilePath));
    QCOMPARE(onDisk, decoded(other));
    QCOMPARE(app.data(), onDisk);
}

void TestVaultConcurrentEdits::ownWriteIsNotAnOutsideChange()
{
    VaultStore app(m_configuration);
    app.toggleFavorite(app.data().global.at(0), TrackedApp::placeholder());
    QSignalSpy published(&app, &VaultStore::dataChanged);
    app.reloadIfChangedOutside();
    QCOMPARE(published.count(), 0);

    VaultStore commandLine(m_configuration);
    commandLine.toggleFavorite(commandLine.data().global.at(2), TrackedApp::placeholder());
    app.reloadIfChangedOutside();
    QCOMPARE(published.count(), 1);
    QCOMPARE(favoriteIn(app.data(), QStringLiteral("Gamma")), std::optional<bool>(true));
    app.reloadIfChangedOutside();
    QCOMPARE(published.count(), 1);
}

void TestVaultConcurrentEdits::outsideChangeIsReloadedAsTheButtonWould()
{
    VaultStore app(m_configuration);
    const VaultData shown = app.data();
    QVERIFY(writeFile(m_configuration.dataFilePath, "[broken"));
    app.reloadIfChangedOutside();
    QVERIFY(app.lastError());
    QCOMPARE(app.data(), shown);
    QVERIFY(app.dataFileIsDamaged());

    // The same damaged bytes again are no news: the error is not raised twice.
    QSignalSpy errors(&app, &VaultStore::lastErrorChanged);
    app.reloadIfChangedOutside();
    QCOMPARE(errors.count(), 0);

    // Mended: read, the error cleared, the global list in vault order.
    QVERIFY(writeFile(m_configuration.dataFilePath,
                      R"({"global": [{"name": "b", "chord": "2"},
                         {"name": "a", "chord": "1", "favorite": false},
                         {"name": "c", "chord": "3", "favorite": true}], "apps": []})"));
    app.reloadIfChangedOutside();
    QVERIFY(!app.lastError());
    QCOMPARE(names(app.data().global),
             (QStringList{QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")}));
}

void TestVaultConcurrentEdits::watchedStoreFollowsAnAtomicReplace()
{
    VaultStore app(m_configuration);
    app.followOutsideChanges();
    VaultStore commandLine(m_configuration);
    // Two replaces in a row: the watch must survive the first one's new file.
    commandLine.toggleFavorite(commandLine.data().global.at(0), TrackedApp::placeholder());
    QTRY_COMPARE_WITH_TIMEOUT(favoriteIn(app.data(), QStringLiteral("Alpha")),
                              std::optional<bool>(true), 10000);
    commandLine.toggleFavorite(commandLine.data().global.at(1), TrackedApp::placeholder());
    QTRY_COMPARE_WITH_TIMEOUT(favoriteIn(app.data(), QStringLiteral("Beta")),
                              std::optional<bool>(true), 10000);
    QVERIFY(!app.lastError());
}

void TestVaultConcurrentEdits::watchedStoreFollowsAnEditInPlace()
{
    VaultStore app(m_configuration);
    app.followOutsideChanges();
    // A text editor that writes over the file itself instead of replacing it.
    QVERIFY(writeFile(m_configuration.dataFilePath,
                      R"({"global": [{"name": "Typed", "chord": "⌃ T"}], "apps": []})"));
    QTRY_COMPARE_WITH_TIMEOUT(names(app.data().global), QStringList{QStringLiteral("Typed")},
                              10000);
    QVERIFY(writeFile(m_configuration.dataFilePath, "{\"global\": "));
    QTRY_VERIFY_WITH_TIMEOUT(app.lastError().has_value(), 10000);
    QCOMPARE(names(app.data().global), QStringList{QStringLiteral("Typed")});
}

void TestVaultConcurrentEdits::burstOfOutsideChangesIsReportedOnce()
{
    VaultFileWatcher watcher(m_configuration.dataFilePath);
    QSignalSpy changed(&watcher, &VaultFileWatcher::changed);
    for (int i = 0; i < 5; ++i)
        QVERIFY(writeAtomically(m_configuration.dataFilePath, kVault + QByteArray(i, ' ')));
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, 10000);
    // Nothing more arrives once the folder is quiet.
    QTest::qWait(int(VaultFileWatcher::longestWait().count()) * 2);
    QCOMPARE(changed.count(), 1);

    // The file is still watched after the replaces.
    QVERIFY(writeFile(m_configuration.dataFilePath, kVault));
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 2, 10000);
}

QTEST_GUILESS_MAIN(TestVaultConcurrentEdits)
#include "tst_VaultConcurrentEdits.moc"
