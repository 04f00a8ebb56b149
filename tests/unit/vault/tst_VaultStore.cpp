// SPDX-License-Identifier: MIT
#include "VaultTestSupport.h"

#include "vault/FallbackData.h"
#include "vault/VaultOrder.h"
#include "vault/VaultStore.h"

#include <QLocale>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QtTest>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

const QByteArray kValidVault = R"({"_comment": "mine", "global": [
    {"name": "zoom", "chord": "⌃ +"}, {"name": "Apps", "chord": "⌘", "favorite": true}],
    "apps": [{"name": "Kate", "bundleID": "org.kde.kate",
              "shortcuts": [{"name": "Save", "chord": "⌃ S"}]}]})";

const QByteArray kOtherVault =
    R"({"global": [{"name": "b", "chord": "2"}, {"name": "A", "chord": "1"}],
    "apps": []})";

} // namespace

class TestVaultStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
    void init() { QVERIFY(m_dir.emplace().isValid()); }

    void firstStartWithoutFolderOrSeedWritesTheFallback();
    void firstStartReadsBackTheGlobalListInVaultOrder();
    void firstStartUsesTheFirstExistingSeed();
    void invalidSeedAtFirstLocationIsReportedDespiteAValidLaterOne();
    void existingFileIsNotTouchedAtStart();
    void invalidDataFileShowsFallbackAndIsKeptUntilTheNextEdit();
    void damagedFileIsCopiedAsideBeforeItIsReplaced();
    void unreadableDataFileNamesTheFileAndTheReason();
    void reloadWithInvalidFileKeepsDataAndSetsError();
    void reloadAfterFailureClearsTheError();
    void importInvalidFileLeavesFileAndDataUntouched();
    void importReplacesTheWholeVault();
    void exportWritesTheCurrentData();
    void exportFailureNamesTheFile();
    void persistFailureKeepsTheEditInMemory();
    void resetToSeedRestoresTheSeed();
    void filterIsPublished();
    void standardConfigurationUsesTheUsersDataFolder();

private:
    std::optional<QTemporaryDir> m_dir;
};

void TestVaultStore::firstStartWithoutFolderOrSeedWritesTheFallback()
{
    const VaultStore::Configuration configuration =
        configurationIn(*m_dir, {QStringLiteral("absent.json")});
    QVERIFY(!QFileInfo::exists(QFileInfo(configuration.dataFilePath).absolutePath()));
    VaultStore store(configuration);
    QVERIFY(!store.lastError().has_value());
    QVERIFY(QFileInfo(QFileInfo(configuration.dataFilePath).absolutePath()).isDir());
    const QByteArray written = readFile(configuration.dataFilePath);
    QCOMPARE(written, VaultCodec::encode(fallbackData()));
    // Pretty-printed with sorted keys.
    QVERIFY(written.startsWith("{\n  \"_comment\" : \"Bundled fallback seed"));
    QVERIFY(written.indexOf("\"apps\"") < written.indexOf("\"global\""));
    QVERIFY(written.contains("\"chord\" : \"⌘ A\",\n      \"favorite\" : true,\n"));
}

void TestVaultStore::firstStartReadsBackTheGlobalListInVaultOrder()
{
    VaultStore store(configurationIn(*m_dir));
    QCOMPARE(names(store.data().global),
             (QStringList{QStringLiteral("Screenshot"), QStringLiteral("Show all apps"),
                          QStringLiteral("Close window"), QStringLiteral("Emoji and symbols")}));
    QCOMPARE(store.data().apps, fallbackData().apps);
    QCOMPARE(store.data().comment, fallbackData().comment);
}

void TestVaultStore::firstStartUsesTheFirstExistingSeed()
{
    const VaultStore::Configuration configuration =
        configurationIn(*m_dir, {QStringLiteral("missing.json"), QStringLiteral("one.json"),
                                 QStringLiteral("two.json")});
    QVERIFY(writeFile(configuration.seedCandidates[1], kOtherVault));
    QVERIFY(writeFile(configuration.seedCandidates[2], kValidVault));
    VaultStore store(configuration);
    QVERIFY(!store.lastError());
    QCOMPARE(names(store.data().global), (QStringList{QStringLiteral("A"), QStringLiteral("b")}));
    // The seed is written sorted and in the vault's own layout.
    VaultData expected = *VaultCodec::decode(kOtherVault);
    VaultOrder::sort(expected.global);
    QCOMPARE(readFile(configuration.dataFilePath), VaultCodec::encode(expected));
}

void TestVaultStore::invalidSeedAtFirstLocationIsReportedDespiteAValidLaterOne()
{
    const VaultStore::Configuration configuration =
        configurationIn(*m_dir, {QStringLiteral("broken.json"), QStringLiteral("absent.json"),
                                 QStringLiteral("good.json")});
    QVERIFY(writeFile(configuration.seedCandidates[0], R"({"global": []})"));
    QVERIFY(writeFile(configuration.seedCandidates[2], kValidVault));
    VaultStore store(configuration);
    QVERIFY(store.lastError().has_value());
    QVERIFY2(store.lastError()->contains(QStringLiteral("broken.json")),
             qPrintable(*store.lastError()));
    QVERIFY2(store.lastError()->contains(QStringLiteral("apps: required key is missing")),
             qPrintable(*store.lastError()));
    QCOMPARE(store.data(), fallbackData());
    QVERIFY(!QFileInfo::exists(configuration.dataFilePath));
}

void TestVaultStore::existingFileIsNotTouchedAtStart()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    QVERIFY(writeFile(configuration.dataFilePath, kValidVault));
    VaultStore store(configuration);
    QVERIFY(!store.lastError());
    QCOMPARE(readFile(configuration.dataFilePath), kValidVault);
    QCOMPARE(names(store.data().global),
             (QStringList{QStringLiteral("Apps"), QStringLiteral("zoom")}));
    QCOMPARE(store.data().comment, std::optional<QString>(QStringLiteral("mine")));
}

void TestVaultStore::invalidDataFileShowsFallbackAndIsKeptUntilTheNextEdit()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    const QByteArray damaged = R"({"global": [], "apps": [)";
    QVERIFY(writeFile(configuration.dataFilePath, damaged));
    VaultStore store(configuration);
    QCOMPARE(store.data(), fallbackData());
    QVERIFY(store.lastError().has_value());
    QVERIFY2(store.lastError()->contains(configuration.dataFilePath),
             qPrintable(*store.lastError()));
    QVERIFY2(store.lastError()->contains(QStringLiteral("syntax error at byte offset")),
             qPrintable(*store.lastError()));
    QVERIFY(store.dataFileIsDamaged());
    QCOMPARE(readFile(configuration.dataFilePath), damaged);

    // The next persisted edit replaces it.
    store.toggleFavorite(fallbackData().global.at(2), TrackedApp::placeholder());
    QVERIFY(!store.lastError());
    const Expected<VaultData> written = VaultCodec::decode(readFile(configuration.dataFilePath));
    QVERIFY2(written, qPrintable(VaultTestSupport::errorText(written)));
    QCOMPARE(written->global.at(2).favorite, std::optional<bool>(true));
}

void TestVaultStore::damagedFileIsCopiedAsideBeforeItIsReplaced()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    const QByteArray damaged = R"({"global": [{"name": "mine", "chord": 1}], "apps": []})";
    QVERIFY(writeFile(configuration.dataFilePath, damaged));
    VaultStore store(configuration);
    QVERIFY(store.lastError()->contains(QStringLiteral("global[0].chord: expected a string")));
    QVERIFY(!QFileInfo::exists(store.damagedCopyPath()));
    QCOMPARE(store.damagedCopyPath(), configuration.dataFilePath + QStringLiteral(".damaged"));

    store.persistQuietly();
    QVERIFY(!store.lastError());
    QCOMPARE(readFile(store.damagedCopyPath()), damaged);
    QCOMPARE(readFile(configuration.dataFilePath), VaultCodec::encode(fallbackData()));
    QVERIFY(!store.dataFileIsDamaged());

    // Later writes replace a healthy file: the copy of the damaged one stays as it was.
    store.toggleFavorite(fallbackData().global.at(0), TrackedApp::placeholder());
    QCOMPARE(readFile(store.damagedCopyPath()), damaged);
}

void TestVaultStore::unreadableDataFileNamesTheFileAndTheReason()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    QVERIFY(QDir().mkpath(configuration.dataFilePath)); // a folder where the file should be
    VaultStore store(configuration);
    QCOMPARE(store.data(), fallbackData());
    QVERIFY(store.lastError().has_value());
    QVERIFY2(store.lastError()->startsWith(QStringLiteral("Cannot read ") +
                                           configuration.dataFilePath + QStringLiteral(": ")),
             qPrintable(*store.lastError()));
    QVERIFY(store.lastError()->size() >
            (QStringLiteral("Cannot read : ") + configuration.dataFilePath).size());
}

void TestVaultStore::reloadWithInvalidFileKeepsDataAndSetsError()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    QVERIFY(writeFile(configuration.dataFilePath, kValidVault));
    VaultStore store(configuration);
    const VaultData before = store.data();
    QSignalSpy dataSpy(&store, &VaultStore::dataChanged);
    QSignalSpy errorSpy(&store, &VaultStore::lastErrorChanged);

    QVERIFY(writeFile(configuration.dataFilePath, "not json"));
    store.reload();
    QCOMPARE(store.data(), before);
    QVERIFY(store.lastError().has_value());
    QCOMPARE(dataSpy.count(), 0);
    QCOMPARE(errorSpy.count(), 1);
    QCOMPARE(store.property("lastError").toString(), *store.lastError());
}

void TestVaultStore::reloadAfterFailureClearsTheError()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    QVERIFY(writeFile(configuration.dataFilePath, "{"));
    VaultStore store(configuration);
    QVERIFY(store.lastError().has_value());

    QVERIFY(writeFile(configuration.dataFilePath, kOtherVault));
    QSignalSpy dataSpy(&store, &VaultStore::dataChanged);
    QSignalSpy errorSpy(&store, &VaultStore::lastErrorChanged);
    store.reload();
    QVERIFY(!store.lastError().has_value());
    QCOMPARE(store.lastErrorText(), QString());
    QCOMPARE(dataSpy.count(), 1);
    QCOMPARE(errorSpy.count(), 1);
    QCOMPARE(names(store.data().global), (QStringList{QStringLiteral("A"), QStringLiteral("b")}));
    QVERIFY(!store.dataFileIsDamaged());
}

void TestVaultStore::importInvalidFileLeavesFileAndDataUntouched()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    QVERIFY(writeFile(configuration.dataFilePath, kValidVault));
    VaultStore store(configuration);
    const VaultData before = store.data();
    const QString importPath = m_dir->filePath(QStringLiteral("import.json"));
    QVERIFY(writeFile(importPath,
                      R"({"global": [], "apps": [{"name": "x", "shortcuts": [{"name": "n"}]}]})"));
    QSignalSpy dataSpy(&store, &VaultStore::dataChanged);

    store.importData(importPath);
    QCOMPARE(store.data(), before);
    QCOMPARE(dataSpy.count(), 0);
    QCOMPARE(readFile(configuration.dataFilePath), kValidVault);
    QVERIFY2(store.lastError()->contains(
                 QStringLiteral("apps[0].shortcuts[0].chord: required key is missing")),
             qPrintable(*store.lastError()));

    store.importData(m_dir->filePath(QStringLiteral("nowhere.json")));
    QVERIFY2(store.lastError()->startsWith(QStringLiteral("Cannot read ")),
             qPrintable(*store.lastError()));
    QCOMPARE(readFile(configuration.dataFilePath), kValidVault);
}

void TestVaultStore::importReplacesTheWholeVault()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    QVERIFY(writeFile(configuration.dataFilePath, kValidVault));
    VaultStore store(configuration);
    store.importData(m_dir->filePath(QStringLiteral("nowhere.json")));
    QVERIFY(store.lastError());
    const QString importPath = m_dir->filePath(QStringLiteral("import.json"));
    QVERIFY(writeFile(importPath, kOtherVault));
    QSignalSpy dataSpy(&store, &VaultStore::dataChanged);

    store.importData(importPath);
    QVERIFY(!store.lastError());
    QCOMPARE(dataSpy.count(), 1);
    QVERIFY(!store.data().comment.has_value()); // the comment is replaced too
    QVERIFY(store.data().apps.isEmpty());
    QCOMPARE(names(store.data().global), (QStringList{QStringLiteral("A"), QStringLiteral("b")}));
    QCOMPARE(readFile(configuration.dataFilePath), VaultCodec::encode(store.data()));
}

void TestVaultStore::exportWritesTheCurrentData()
{
    VaultStore store(configurationIn(*m_dir));
    const QString exportPath = m_dir->filePath(QStringLiteral("export.json"));
    store.exportData(exportPath);
    QVERIFY(!store.lastError());
    QCOMPARE(readFile(exportPath), VaultCodec::encode(store.data()));
}

void TestVaultStore::exportFailureNamesTheFile()
{
    VaultStore store(configurationIn(*m_dir));
    const QString exportPath = m_dir->filePath(QStringLiteral("no/such/folder/export.json"));
    QSignalSpy errorSpy(&store, &VaultStore::lastErrorChanged);
    store.exportData(exportPath);
    QCOMPARE(errorSpy.count(), 1);
    QVERIFY2(store.lastError()->startsWith(QStringLiteral("Cannot write ") + exportPath +
                                           QStringLiteral(": ")),
             qPrintable(*store.lastError()));
    // The next success clears it.
    store.exportData(m_dir->filePath(QStringLiteral("export.json")));
    QVERIFY(!store.lastError());
    QCOMPARE(errorSpy.count(), 2);
}

void TestVaultStore::persistFailureKeepsTheEditInMemory()
{
    const VaultStore::Configuration configuration = configurationIn(*m_dir);
    VaultStore store(configuration);
    QVERIFY(QDir(QFileInfo(configuration.dataFilePath).absolutePath()).removeRecursively());
    const ShortcutItem target = store.data().global.at(3);
    store.toggleFavorite(target, TrackedApp::placeholder());
    QVERIFY(store.lastError().has_value());
    QVERIFY2(store.lastError()->contains(configuration.dataFilePath),
             qPrintable(*store.lastError()));
    QCOMPARE(store.data().global.at(3).favorite, std::optional<bool>(true));
}

void TestVaultStore::resetToSeedRestoresTheSeed()
{
    const VaultStore::Configuration configuration =
        configurationIn(*m_dir, {QStringLiteral("seed.json")});
    QVERIFY(writeFile(configuration.dataFilePath, "[broken"));
    VaultStore store(configuration);
    QVERIFY(store.lastError());

    // The seed itself broken: nothing changes.
    QVERIFY(writeFile(configuration.seedCandidates[0], "{}"));
    store.resetToSeed();
    QVERIFY(store.lastError()->contains(QStringLiteral("seed.json")));
    QCOMPARE(readFile(configuration.dataFilePath), QByteArray("[broken"));
    QCOMPARE(store.data(), fallbackData());

    QVERIFY(writeFile(configuration.seedCandidates[0], kOtherVault));
    QSignalSpy dataSpy(&store, &VaultStore::dataChanged);
    store.resetToSeed();
    QVERIFY(!store.lastError());
    QCOMPARE(dataSpy.count(), 1);
    QCOMPARE(names(store.data().global), (QStringList{QStringLiteral("A"), QStringLiteral("b")}));
    QCOMPARE(readFile(configuration.dataFilePath), VaultCodec::encode(store.data()));
    QCOMPARE(readFile(store.damagedCopyPath()), QByteArray("[broken"));
}

void TestVaultStore::filterIsPublished()
{
    VaultStore store(configurationIn(*m_dir));
    QSignalSpy spy(&store, &VaultStore::filterChanged);
    QCOMPARE(store.filter(), QString());
    store.setFilter(QStringLiteral("sa"));
    store.setFilter(QStringLiteral("sa"));
    QCOMPARE(spy.count(), 1);
    QVERIFY(store.setProperty("filter", QStringLiteral("save")));
    QCOMPARE(store.filter(), QStringLiteral("save"));
    QCOMPARE(spy.count(), 2);
}

void TestVaultStore::standardConfigurationUsesTheUsersDataFolder()
{
    const VaultStore::Configuration configuration = VaultStore::Configuration::standard();
    QCOMPARE(configuration.dataFilePath,
             QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                 QStringLiteral("/Tessaline/keybinds.json"));
    QCOMPARE(configuration.seedCandidates.size(), 4);
    QCOMPARE(configuration.seedCandidates[0],
             QDir::cleanPath(QCoreApplication::applicationDirPath() +
                             QStringLiteral("/../share/tessaline/keybinds.json")));
    QCOMPARE(configuration.seedCandidates[1],
             QStringLiteral(TESSALINE_BUILD_SHARE_DIR "/keybinds.json"));
    const QString beside = QDir::cleanPath(QDir::currentPath() +
                                           QStringLiteral("/../Tessaline for Jorvo/keybinds.json"));
    QCOMPARE(configuration.seedCandidates[2], beside);
    QCOMPARE(configuration.seedCandidates[3], beside);
}

QTEST_GUILESS_MAIN(TestVaultStore)
#include "tst_VaultStore.moc"
