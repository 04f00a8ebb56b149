// SPDX-License-Identifier: MIT
// What a rescan tells of the shortcuts an earlier scan found: the note beside the status
// message, the scan history it keeps, and a vault file left exactly as the merge writes it.
#include "FakeScanDesktop.h"
#include "vault/ScanHistory.h"
#include "vault/ShortcutDrift.h"
#include "vault/VaultStore.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Tessaline;
using namespace Tessaline::Testing;

namespace {

const QString kBundle = QStringLiteral("org.editor");
const TrackedApp kEditor{QStringLiteral("Editor"), kBundle};

// A menu item by title and command character.
struct Entry
{
    QString title;
    QString key;
};

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestScanDrift : public QObject
{
    Q_OBJECT

    std::unique_ptr<FakeScanDesktop> desktop;
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<VaultStore> store;

    // Gives the app `pid` a menu bar with one "Edit" menu holding `entries`.
    void setMenus(qint64 pid, const QList<Entry>& entries)
    {
        QList<FakeElementPtr> items;
        for (const Entry& entry : entries)
            items.append(makeItem(entry.title, entry.key));
        desktop->elements.applications.insert(
            pid, makeApplication({makeMenu(QStringLiteral("Edit"), items)}));
    }

    void scanEditor()
    {
        desktop->scanner.scanAndMergeCurrentApp(kEditor, *store);
        QVERIFY(desktop->waitForScan());
    }

    QString status() const
    {
        return desktop->scanner.statusText().value_or(QStringLiteral("<none>"));
    }
    QString drift() const
    {
        return desktop->scanner.driftText().value_or(QStringLiteral("<none>"));
    }

    QList<ShortcutItem> editorItems() const { return store->appPack(kEditor)->shortcuts; }

private Q_SLOTS:
    void init()
    {
        desktop = std::make_unique<FakeScanDesktop>();
        folder = std::make_unique<QTemporaryDir>();
        store = std::make_unique<VaultStore>(
            VaultStore::Configuration{folder->filePath(QStringLiteral("keybinds.json")), {}});
        desktop->workspace.apps.append(makeApp(QStringLiteral("Editor"), kBundle, 5));
        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("x")},
                     {QStringLiteral("Copy"), QStringLiteral("c")},
                     {QStringLiteral("Paste"), QStringLiteral("v")}});
    }

    void cleanup()
    {
        desktop.reset();
        store.reset();
    }

    void joiningPutsTheNoteInsideTheSentence()
    {
        QCOMPARE(
            AppMenuScanner::joinedWithDrift(
                QStringLiteral("Found 3 shortcuts for Editor; they were already in the vault."),
                QStringLiteral("2 changed since the last scan")),
            QStringLiteral("Found 3 shortcuts for Editor; they were already in the vault, 2 "
                           "changed since the last scan."));
        QCOMPARE(
            AppMenuScanner::joinedWithDrift(QStringLiteral("Done"), QStringLiteral("1 changed")),
            QStringLiteral("Done, 1 changed"));
    }

    void firstScanHasNoNoteAndStartsTheHistory()
    {
        scanEditor();
        QCOMPARE(status(), QStringLiteral("Added 3 of 3 discovered shortcuts for Editor."));
        QCOMPARE(drift(), QStringLiteral("<none>"));
        QCOMPARE(desktop->scanner.statusLine(kEditor), desktop->scanner.statusText());
        const std::optional<ScanRecord> record = store->scanHistory().lastScan(kBundle);
        QVERIFY(record);
        QCOMPARE(record->items.size(), 3);
        QVERIFY(QFile::exists(folder->filePath(QStringLiteral("scan-history.json"))));
    }

    void firstScanWithScannedItemsFromBeforeTheHistoryCountsNothing()
    {
        // Items of a scan made before the history existed, which this scan no longer finds.
        setMenus(5, {{QStringLiteral("Undo"), QStringLiteral("z")}});
        desktop->scanner.scanAndMergeCurrentApp(kEditor, *store);
        QVERIFY(desktop->waitForScan());
        QVERIFY(store->scanHistory().clear());
        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("x")}});
        scanEditor();
        QCOMPARE(drift(), QStringLiteral("<none>"));
        // From now on the old item counts as stale.
        const QHash<QString, ShortcutDrift::Mark> marks =
            ShortcutDrift::marks(editorItems(), *store->scanHistory().lastScan(kBundle));
        QCOMPARE(marks.size(), 1);
    }

    void vanishedAndChangedItemsMakeTheNote()
    {
        scanEditor();
        // Copy left the menus and Cut moved from x to k.
        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("k")},
                     {QStringLiteral("Paste"), QStringLiteral("v")}});
        QSignalSpy notes(&desktop->scanner, &AppMenuScanner::driftTextChanged);
        scanEditor();
        // The status message itself is as it always was.
        QCOMPARE(status(), QStringLiteral("Added 1 of 2 discovered shortcuts for Editor."));
        QCOMPARE(drift(), QStringLiteral("2 changed since the last scan"));
        QVERIFY(notes.size() >= 1);
        QCOMPARE(
            desktop->scanner.statusLine(kEditor),
            std::optional(QStringLiteral(
                "Added 1 of 2 discovered shortcuts for Editor, 2 changed since the last scan.")));
        // The merge kept every item; the old Cut is stale and the new one remembers its chord.
        const QList<ShortcutItem> items = editorItems();
        QCOMPARE(items.size(), 4);
        const QHash<QString, ShortcutDrift::Mark> marks =
            ShortcutDrift::marks(items, *store->scanHistory().lastScan(kBundle));
        int stale = 0;
        int changed = 0;
        for (const ShortcutDrift::Mark& mark : marks) {
            stale += mark.stale ? 1 : 0;
            changed += mark.was.isEmpty() ? 0 : 1;
        }
        QCOMPARE(stale, 2);
        QCOMPARE(changed, 1);

        // Nothing new went stale on the next scan: no note, though the items stay stale.
        scanEditor();
        QCOMPARE(status(),
                 QStringLiteral("Found 2 shortcuts for Editor; they were already in the vault."));
        QCOMPARE(drift(), QStringLiteral("<none>"));
    }

    void anItemThatComesBackIsNoLongerStale()
    {
        scanEditor();
        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("x")}});
        scanEditor();
        QCOMPARE(drift(), QStringLiteral("2 changed since the last scan"));
        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("x")},
                     {QStringLiteral("Copy"), QStringLiteral("c")},
                     {QStringLiteral("Paste"), QStringLiteral("v")}});
        scanEditor();
        QCOMPARE(drift(), QStringLiteral("<none>"));
        QVERIFY(
            ShortcutDrift::marks(editorItems(), *store->scanHistory().lastScan(kBundle)).isEmpty());
    }

    void theVaultFileIsWhatTheMergeWrites()
    {
        // The same scans into a second vault without any history give the same file.
        QTemporaryDir otherFolder;
        VaultStore other(
            VaultStore::Configuration{otherFolder.filePath(QStringLiteral("keybinds.json")), {}});
        scanEditor();
        const QList<ShortcutItem> first =
            std::get<ScanResult>(desktop->scanner.scan(kEditor)).shortcuts;
        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("k")}});
        scanEditor();
        const QList<ShortcutItem> second =
            std::get<ScanResult>(desktop->scanner.scan(kEditor)).shortcuts;
        QCOMPARE(drift(), QStringLiteral("3 changed since the last scan"));
        other.mergeScannedShortcuts(first, kEditor);
        other.mergeScannedShortcuts(second, kEditor);
        QCOMPARE(fileBytes(store->dataFilePath()), fileBytes(other.dataFilePath()));
    }

    void noteBelongsToTheScannedApp()
    {
        scanEditor();
        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("x")}});
        scanEditor();
        const TrackedApp otherApp{QStringLiteral("Other"), QStringLiteral("org.other")};
        QVERIFY(!desktop->scanner.driftText(otherApp));
        QVERIFY(!desktop->scanner.statusLine(otherApp));
        QCOMPARE(desktop->scanner.driftText(kEditor), desktop->scanner.driftText());
        // A new scan starts without a note; dismissing the message drops the note too.
        desktop->scanner.scanAndMergeCurrentApp(kEditor, *store);
        QVERIFY(!desktop->scanner.driftText());
        QVERIFY(desktop->waitForScan());
        setMenus(5, {});
        scanEditor();
        QCOMPARE(status(), QStringLiteral("No menu shortcuts found for Editor."));
        QVERIFY(!desktop->scanner.driftText());
        desktop->scanner.clearStatus();
        QVERIFY(!desktop->scanner.driftText());
    }

    void anEmptyScanLeavesTheHistoryAlone()
    {
        scanEditor();
        setMenus(5, {});
        scanEditor();
        QCOMPARE(store->scanHistory().lastScan(kBundle)->items.size(), 3);
    }

    void openAppsScanAddsTheNotesOfEveryApp()
    {
        desktop->workspace.apps.append(
            makeApp(QStringLiteral("Viewer"), QStringLiteral("org.viewer"), 6));
        setMenus(6, {{QStringLiteral("Zoom"), QStringLiteral("z")},
                     {QStringLiteral("Fit"), QStringLiteral("f")}});
        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(drift(), QStringLiteral("<none>"));

        setMenus(5, {{QStringLiteral("Cut"), QStringLiteral("x")}});
        setMenus(6, {{QStringLiteral("Zoom"), QStringLiteral("y")}});
        desktop->scanner.scanAndMergeOpenApps(*store);
        QCOMPARE(drift(), QStringLiteral("<none>"));
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(),
                 QStringLiteral(
                     "Scanned 2 open apps. Added 1 new shortcuts from 2 found across 2 apps."));
        QCOMPARE(drift(), QStringLiteral("4 changed since the last scan"));
        // A general message: its note shows for every app.
        QCOMPARE(desktop->scanner.driftText(TrackedApp{QStringLiteral("X"), QStringLiteral("x")}),
                 desktop->scanner.driftText());
    }
};

QTEST_GUILESS_MAIN(TestScanDrift)
#include "tst_ScanDrift.moc"
