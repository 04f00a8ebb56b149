// SPDX-License-Identifier: MIT
// The scan history beside the vault: keys, saving and reading back, a damaged or missing file,
// changes by another writer, and clearing by reset and import.
#include "VaultTestSupport.h"
#include "vault/ScanHistory.h"

#include <QSignalSpy>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

ShortcutItem scanned(const QString& name, const QString& chord, const QString& menu)
{
    ShortcutItem result = item(name, chord);
    result.menu = menu;
    result.source = QStringLiteral("scanned-menu");
    return result;
}

} // namespace

class TestScanHistory : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;

    QString historyPath() const { return folder->filePath(QStringLiteral("scan-history.json")); }

private Q_SLOTS:
    void init() { folder = std::make_unique<QTemporaryDir>(); }

    void fileLivesBesideTheVault()
    {
        QCOMPARE(ScanHistory::filePathBeside(QStringLiteral("/data/Tessaline/keybinds.json")),
                 QStringLiteral("/data/Tessaline/scan-history.json"));
    }

    void packKeyIsTheBundleIdElseTheLowerCasedName()
    {
        QCOMPARE(ScanHistory::packKey(
                     AppShortcutPack{QStringLiteral("Kate"), QStringLiteral("org.kde.Kate"), {}}),
                 QStringLiteral("org.kde.Kate"));
        QCOMPARE(ScanHistory::packKey(AppShortcutPack{QStringLiteral("Kate"), std::nullopt, {}}),
                 QStringLiteral("kate"));
    }

    void missingFileIsNoHistory()
    {
        ScanHistory history(historyPath());
        QVERIFY(!history.lastScan(QStringLiteral("org.editor")));
        QVERIFY(!QFileInfo::exists(historyPath()));
    }

    void recordSavesAndAnotherReaderLoadsIt()
    {
        ScanHistory history(historyPath());
        QSignalSpy changed(&history, &ScanHistory::changed);
        QVERIFY(history.record(
            QStringLiteral("org.editor"),
            {scanned(QStringLiteral("Save"), QStringLiteral("⌃ S"), QStringLiteral("File")),
             scanned(QStringLiteral("Quit"), QStringLiteral("⌃ Q"), QStringLiteral("File")),
             // The same key again is kept once.
             scanned(QStringLiteral("save"), QStringLiteral("⌃ s"), QStringLiteral("File"))}));
        QCOMPARE(changed.size(), 1);
        QVERIFY(QFileInfo::exists(historyPath()));

        const ScanHistory reader(historyPath());
        const std::optional<ScanRecord> record = reader.lastScan(QStringLiteral("org.editor"));
        QVERIFY(record);
        QCOMPARE(names(record->items),
                 (QStringList{QStringLiteral("Save"), QStringLiteral("Quit")}));
        QCOMPARE(record->items.at(0).menu, std::optional(QStringLiteral("File")));
        // Only what identifies a command is kept.
        QVERIFY(!record->items.at(0).source);
        QVERIFY(record->contains(item(QStringLiteral("SAVE"), QStringLiteral("⌃ S"))));
        QVERIFY(!record->contains(item(QStringLiteral("Save"), QStringLiteral("⌃ ⇧ S"))));
        QVERIFY(!reader.lastScan(QStringLiteral("org.other")));
    }

    void aNewScanReplacesOnlyItsOwnApp()
    {
        ScanHistory history(historyPath());
        QVERIFY(history.record(QStringLiteral("a"),
                               {item(QStringLiteral("One"), QStringLiteral("1"))}));
        QVERIFY(history.record(QStringLiteral("b"),
                               {item(QStringLiteral("Two"), QStringLiteral("2"))}));
        QVERIFY(history.record(QStringLiteral("a"),
                               {item(QStringLiteral("Three"), QStringLiteral("3"))}));
        const ScanHistory reader(historyPath());
        QCOMPARE(names(reader.lastScan(QStringLiteral("a"))->items),
                 QStringList{QStringLiteral("Three")});
        QCOMPARE(names(reader.lastScan(QStringLiteral("b"))->items),
                 QStringList{QStringLiteral("Two")});
    }

    void recordKeepsWhatAnotherWriterRecorded()
    {
        ScanHistory first(historyPath());
        ScanHistory second(historyPath());
        QVERIFY(!first.lastScan(QStringLiteral("a")));
        QVERIFY(
            second.record(QStringLiteral("b"), {item(QStringLiteral("Two"), QStringLiteral("2"))}));
        QVERIFY(
            first.record(QStringLiteral("a"), {item(QStringLiteral("One"), QStringLiteral("1"))}));
        const ScanHistory reader(historyPath());
        QVERIFY(reader.lastScan(QStringLiteral("a")));
        QVERIFY(reader.lastScan(QStringLiteral("b")));
    }

    void anOutsideChangeIsReadAndAnnounced()
    {
        ScanHistory shown(historyPath());
        QVERIFY(!shown.lastScan(QStringLiteral("a")));
        QSignalSpy changed(&shown, &ScanHistory::changed);
        shown.reloadIfChangedOutside();
        QCOMPARE(changed.size(), 0);

        ScanHistory other(historyPath());
        QVERIFY(
            other.record(QStringLiteral("a"), {item(QStringLiteral("One"), QStringLiteral("1"))}));
        shown.reloadIfChangedOutside();
        QCOMPARE(changed.size(), 1);
        QVERIFY(shown.lastScan(QStringLiteral("a")));
    }

    void damagedFileIsNoHistoryAndIsReplacedByTheNextRecord_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addRow("not json") << QByteArray("{\"apps\": [");
        QTest::addRow("not an object") << QByteArray("[1, 2]");
        QTest::addRow("apps not an object") << QByteArray("{\"apps\": 3}");
    }

    void damagedFileIsNoHistoryAndIsReplacedByTheNextRecord()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(writeFile(historyPath(), bytes));
        ScanHistory history(historyPath());
        QVERIFY(!history.lastScan(QStringLiteral("a")));
        QVERIFY(history.record(QStringLiteral("a"),
                               {item(QStringLiteral("One"), QStringLiteral("1"))}));
        QVERIFY(ScanHistory(historyPath()).lastScan(QStringLiteral("a")));
    }

    void entriesWithoutNameOrChordAreSkipped()
    {
        QVERIFY(writeFile(historyPath(), R"({"apps": {"a": [{"name": "One", "chord": "1"},
            {"name": "No chord"}, {"chord": 5, "name": "Bad"}, 7]}})"));
        const ScanHistory history(historyPath());
        QCOMPARE(names(history.lastScan(QStringLiteral("a"))->items),
                 QStringList{QStringLiteral("One")});
    }

    void unwritableFolderIsAnError()
    {
        ScanHistory history(folder->filePath(QStringLiteral("missing/scan-history.json")));
        const Expected<void> recorded =
            history.record(QStringLiteral("a"), {item(QStringLiteral("One"), QStringLiteral("1"))});
        QVERIFY(!recorded);
        QVERIFY2(recorded.error().contains(QStringLiteral("scan-history.json")),
                 qPrintable(recorded.error()));
    }

    void clearRemovesTheFile()
    {
        ScanHistory history(historyPath());
        QVERIFY(history.record(QStringLiteral("a"),
                               {item(QStringLiteral("One"), QStringLiteral("1"))}));
        QSignalSpy changed(&history, &ScanHistory::changed);
        QVERIFY(history.clear());
        QCOMPARE(changed.size(), 1);
        QVERIFY(!QFileInfo::exists(historyPath()));
        QVERIFY(!history.lastScan(QStringLiteral("a")));
    }

    void resetAndImportClearTheStoresHistory_data()
    {
        QTest::addColumn<bool>("import");
        QTest::addRow("reset") << false;
        QTest::addRow("import") << true;
    }

    void resetAndImportClearTheStoresHistory()
    {
        QFETCH(bool, import);
        const QString dataFile = folder->filePath(QStringLiteral("vault/keybinds.json"));
        VaultStore store(VaultStore::Configuration{dataFile, {}});
        QCOMPARE(store.scanHistory().filePath(),
                 folder->filePath(QStringLiteral("vault/scan-history.json")));
        QVERIFY(store.scanHistory().record(QStringLiteral("a"),
                                           {item(QStringLiteral("One"), QStringLiteral("1"))}));
        if (import) {
            const QString other = folder->filePath(QStringLiteral("other.json"));
            store.exportData(other);
            store.importData(other);
        } else {
            store.resetToSeed();
        }
        QVERIFY(!store.lastError());
        QVERIFY(!store.scanHistory().lastScan(QStringLiteral("a")));
        QVERIFY(!QFileInfo::exists(store.scanHistory().filePath()));
    }

    void storePrunesWhatTheLastScanNoLongerFound()
    {
        const QString dataFile = folder->filePath(QStringLiteral("vault/keybinds.json"));
        VaultStore store(VaultStore::Configuration{dataFile, {}});
        const TrackedApp editor{QStringLiteral("Editor"), QStringLiteral("org.editor")};
        const ShortcutItem save =
            scanned(QStringLiteral("Save"), QStringLiteral("⌃ S"), QStringLiteral("File"));
        const ShortcutItem quit =
            scanned(QStringLiteral("Quit"), QStringLiteral("⌃ Q"), QStringLiteral("File"));
        QCOMPARE(store.mergeScannedShortcuts({quit, save}, editor), 2);
        // No scan on record: nothing is stale.
        QVERIFY(store.pruneStaleItems(editor).isEmpty());
        QVERIFY(store.scanHistory().record(QStringLiteral("org.editor"), {save}));
        QCOMPARE(store.pruneStaleItems(editor), QList<ShortcutItem>{quit});
        QVERIFY(!store.lastError());
        QCOMPARE(names(store.appPack(editor)->shortcuts), QStringList{QStringLiteral("Save")});
        // Written to the file.
        VaultStore reader(VaultStore::Configuration{dataFile, {}});
        QCOMPARE(names(reader.appPack(editor)->shortcuts), QStringList{QStringLiteral("Save")});
        QVERIFY(store.pruneStaleItems(editor).isEmpty());
        QVERIFY(
            store.pruneStaleItems(TrackedApp{QStringLiteral("Nobody"), std::nullopt}).isEmpty());
    }

    void failedImportKeepsTheHistory()
    {
        const QString dataFile = folder->filePath(QStringLiteral("vault/keybinds.json"));
        VaultStore store(VaultStore::Configuration{dataFile, {}});
        QVERIFY(store.scanHistory().record(QStringLiteral("a"),
                                           {item(QStringLiteral("One"), QStringLiteral("1"))}));
        const QString broken = folder->filePath(QStringLiteral("broken.json"));
        QVERIFY(writeFile(broken, "{"));
        store.importData(broken);
        QVERIFY(store.lastError());
        QVERIFY(store.scanHistory().lastScan(QStringLiteral("a")));
    }
};

QTEST_GUILESS_MAIN(TestScanHistory)
#include "tst_ScanHistory.moc"
