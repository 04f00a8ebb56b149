// SPDX-License-Identifier: MIT
// The cheat sheet's and the browser's models over a real vault file and a scanner whose desktop
// is faked: header state, rows, copying, scan status and counts.
#include "AppTestSupport.h"
#include "BrowserModel.h"
#include "CheatSheetModel.h"
#include "FakeAccessibilityTrust.h"
#include "FakeAlertPresenter.h"
#include "FakeClipboard.h"
#include "FakeKeyInjector.h"
#include "FakeMenuCommandRunner.h"
#include "FakeScanDesktop.h"
#include "FakeTextInserter.h"
#include "FakeWorkspace.h"
#include "ManualScheduler.h"
#include "ShortcutListModel.h"
#include "commands/ShortcutRunner.h"
#include "helpers/TextHelperService.h"
#include "scan/AppMenuScanner.h"
#include "search/FuzzyMatch.h"
#include "vault/VaultBrowserIndex.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Tessaline;
using namespace Tessaline::Testing;
using AppTestSupport::item;
using AppTestSupport::pack;

namespace {

const TrackedApp kEditor{QStringLiteral("Editor"), QStringLiteral("org.example.Editor")};
const TrackedApp kEmpty{QStringLiteral("Hollow"), QStringLiteral("org.example.Hollow")};
const TrackedApp kUnknown{QStringLiteral("Stranger"), QStringLiteral("org.example.Stranger")};

VaultData sampleVault()
{
    VaultData data;
    data.global = {item(QStringLiteral("Copy"), QStringLiteral("⌘C")),
                   item(QStringLiteral("Paste"), QStringLiteral("⌘V"))};
    data.apps = {pack(QStringLiteral("Editor"), QStringLiteral("org.example.Editor"),
                      {item(QStringLiteral("Find"), QStringLiteral("⌘F")),
                       item(QStringLiteral("Save"), QStringLiteral("⌘S")),
                       item(QStringLiteral("Yank line"), QStringLiteral("⌃Y"))}),
                 pack(QStringLiteral("Hollow"), QStringLiteral("org.example.Hollow"), {})};
    return data;
}

QStringList column(QAbstractItemModel& model, int role)
{
    QStringList values;
    for (int row = 0; row < model.rowCount(); ++row)
        values << model.index(row, 0).data(role).toString();
    return values;
}

// The titles of the model's sections, in order.
QStringList sectionTitles(CheatSheetModel& model)
{
    QStringList titles;
    for (const QString& group : column(*model.rows(), ShortcutListModel::GroupRole)) {
        if (titles.isEmpty() || titles.last() != group)
            titles.append(group);
    }
    return titles;
}

} // namespace

class TestCheatSheetModel : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<FakeScanDesktop> m_desktop;
    std::unique_ptr<VaultStore> m_store;
    QStringList m_copied;

    std::unique_ptr<CheatSheetModel> cheatSheet(const TrackedApp& app)
    {
        return std::make_unique<CheatSheetModel>(
            *m_store, m_desktop->scanner, app, [this](const QString& text) { m_copied << text; },
            QVariantList{});
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_store = std::make_unique<VaultStore>(AppTestSupport::writeVault(*m_dir, sampleVault()));
        QVERIFY2(!m_store->lastError(), qPrintable(m_store->lastErrorText()));
        m_desktop = std::make_unique<FakeScanDesktop>();
        m_copied.clear();
    }

    void cleanup()
    {
        m_desktop.reset();
        m_store.reset();
        m_dir.reset();
    }

    void appWithShortcutsIsVaultReady()
    {
        auto model = cheatSheet(kEditor);
        QVERIFY(model->vaultReady());
        QCOMPARE(model->appName(), QStringLiteral("Editor"));
        QCOMPARE(model->appBundleID(), QVariant(QStringLiteral("org.example.Editor")));
        QCOMPARE(sectionTitles(*model), (QStringList{QStringLiteral("Editor shortcuts"),
                                                     QStringLiteral("Global desktop essentials")}));
        QCOMPARE(model->flatCount(), 5);
        QCOMPARE(column(*model->rows(), ShortcutListModel::NameRole),
                 (QStringList{QStringLiteral("Find"), QStringLiteral("Save"),
                              QStringLiteral("Yank line"), QStringLiteral("Copy"),
                              QStringLiteral("Paste")}));
        QCOMPARE(column(*model->rows(), ShortcutListModel::GroupRole).first(),
                 QStringLiteral("Editor shortcuts"));
    }

    void packWithoutShortcutsCountsAsMissing()
    {
        auto model = cheatSheet(kEmpty);
        QVERIFY(!model->vaultReady());
        // The global list is still shown.
        QCOMPARE(sectionTitles(*model), QStringList{QStringLiteral("Global desktop essentials")});
        QCOMPARE(model->flatCount(), 2);
    }

    void appWithoutPackIsNotReady()
    {
        auto model = cheatSheet(kUnknown);
        QVERIFY(!model->vaultReady());
        QCOMPARE(model->flatCount(), 2);
        auto nameless = cheatSheet(TrackedApp{QStringLiteral("Desktop"), std::nullopt});
        QVERIFY(!nameless->vaultReady());
        QVERIFY(!nameless->appBundleID().isValid());
    }

    void clashingChordsMarkTheAppsRows()
    {
        auto model = cheatSheet(kEditor);
        QAbstractItemModelTester tester(model->rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(column(*model->rows(), ShortcutListModel::ConflictRole),
                 QStringList(5, QString()));
        QCOMPARE(model->rows()->roleNames().value(ShortcutListModel::ConflictRole),
                 QByteArray("conflict"));

        // The desktop takes Super+S from the app and Super+C, which only the global list uses.
        model->setDesktopShortcuts(
            {{QStringLiteral("Snap"), QStringLiteral("Desktop: x"), QStringLiteral("Super+S")},
             {QStringLiteral("Clip"), QStringLiteral("Desktop: x"), QStringLiteral("⌘ C")}});
        QCOMPARE(column(*model->rows(), ShortcutListModel::ConflictRole),
                 (QStringList{QString(), QStringLiteral("The desktop takes this key: Snap"),
                              QString(), QString(), QString()}));

        // A scan adds a second item on Super+F: both rows say so.
        m_store->mergeScannedShortcuts({item(QStringLiteral("Search"), QStringLiteral("⌘F"))},
                                       kEditor);
        const QStringList names = column(*model->rows(), ShortcutListModel::NameRole);
        const QStringList conflicts = column(*model->rows(), ShortcutListModel::ConflictRole);
        QCOMPARE(conflicts.at(names.indexOf(QStringLiteral("Find"))),
                 QStringLiteral("Also bound to “Search” in this app"));
        QCOMPARE(conflicts.at(names.indexOf(QStringLiteral("Search"))),
                 QStringLiteral("Also bound to “Find” in this app"));
        QCOMPARE(conflicts.at(names.indexOf(QStringLiteral("Copy"))), QString());
    }

    void keyLookupListsTheBoundShortcutsBySource()
    {
        auto model = cheatSheet(kEditor);
        QAbstractItemModelTester tester(model->rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        model->setDesktopShortcuts(
            {{QStringLiteral("Clip"), QStringLiteral("Desktop: x"), QStringLiteral("Super+C")}});
        QSignalSpy changes(model.get(), &CheatSheetModel::lookupChanged);
        // Outside key lookup a chord changes nothing.
        model->lookUp(QStringLiteral("Super+C"));
        QVERIFY(!model->lookupActive());
        QCOMPARE(model->flatCount(), 5);

        model->startLookup();
        QVERIFY(model->lookupActive());
        QCOMPARE(model->flatCount(), 0);
        QCOMPARE(model->lookupChordText(), QString());

        model->lookUp(QStringLiteral("⌘ C"));
        QCOMPARE(model->lookupChord(), QStringLiteral("⌘ C"));
        QCOMPARE(model->lookupChordText(), QStringLiteral("Super+C"));
        QCOMPARE(column(*model->rows(), ShortcutListModel::NameRole),
                 (QStringList{QStringLiteral("Copy"), QStringLiteral("Clip")}));
        QCOMPARE(column(*model->rows(), ShortcutListModel::GroupRole),
                 (QStringList{QStringLiteral("Global"), QStringLiteral("Desktop: x")}));
        // The filter is untouched and does not narrow the lookup.
        QCOMPARE(model->filter(), QString());

        // The vault changing meanwhile is seen at once.
        m_store->mergeScannedShortcuts({item(QStringLiteral("Clone"), QStringLiteral("⌘C"))},
                                       kEditor);
        QCOMPARE(column(*model->rows(), ShortcutListModel::GroupRole),
                 (QStringList{QStringLiteral("Editor"), QStringLiteral("Global"),
                              QStringLiteral("Desktop: x")}));

        model->lookUp(QStringLiteral("Ctrl+Y"));
        QCOMPARE(column(*model->rows(), ShortcutListModel::NameRole),
                 QStringList{QStringLiteral("Yank line")});
        // A starred lookup row is the vault's item.
        model->toggleFavorite(0);
        QVERIFY(
            m_store
                ->storedItem(item(QStringLiteral("Yank line"), QStringLiteral("⌃Y")).id(), kEditor)
                ->isFavorite());

        model->stopLookup();
        QVERIFY(!model->lookupActive());
        QCOMPARE(model->lookupChordText(), QString());
        QCOMPARE(model->flatCount(), 6);
        QCOMPARE(changes.count(), 4);
    }

    void filterGoesThroughTheStore()
    {
        auto model = cheatSheet(kEditor);
        QSignalSpy filter(model.get(), &CheatSheetModel::filterChanged);
        QSignalSpy sections(model.get(), &CheatSheetModel::sectionsChanged);
        model->setFilter(QStringLiteral("yank"));
        QCOMPARE(m_store->filter(), QStringLiteral("yank"));
        QCOMPARE(model->filter(), QStringLiteral("yank"));
        QCOMPARE(filter.count(), 1);
        QVERIFY(sections.count() >= 1);
        QCOMPARE(column(*model->rows(), ShortcutListModel::NameRole),
                 QStringList{QStringLiteral("Yank line")});
        model->setFilter(QStringLiteral("zzzzqqq"));
        QCOMPARE(model->flatCount(), 0);
        QVERIFY(sectionTitles(*model).isEmpty());
        // Matching nothing does not change whether the app is in the vault.
        QVERIFY(model->vaultReady());
    }

    void copyChordAtUsesTheListAsItIsNow()
    {
        auto model = cheatSheet(kEditor);
        model->copyChordAt(0);
        model->copyChordAt(4);
        QCOMPARE(m_copied, (QStringList{QStringLiteral("⌘F"), QStringLiteral("⌘V")}));
        m_copied.clear();
        for (int outside : {-1, 5, 100})
            model->copyChordAt(outside);
        QVERIFY(m_copied.isEmpty());

        // A selection that fell out of range after the list shrank copies nothing.
        m_store->setFilter(QStringLiteral("save"));
        QCOMPARE(model->flatCount(), 1);
        model->copyChordAt(3);
        QVERIFY(m_copied.isEmpty());
        model->copyChordAt(0);
        QCOMPARE(m_copied, QStringList{QStringLiteral("⌘S")});
    }

    void copyChordHandsTheTextOn()
    {
        auto model = cheatSheet(kEditor);
        model->copyChord(QStringLiteral("⌥⌘Z"));
        QCOMPARE(m_copied, QStringList{QStringLiteral("⌥⌘Z")});
    }

    void toggleFavoriteWritesTheVault()
    {
        auto model = cheatSheet(kEditor);
        model->toggleFavorite(1); // Save
        const std::optional<ShortcutItem> saved =
            m_store->storedItem(item(QStringLiteral("Save"), QStringLiteral("⌘S")).id(), kEditor);
        QVERIFY(saved);
        QCOMPARE(saved->favorite, std::optional<bool>(true));
        QCOMPARE(sectionTitles(*model).first(), QStringLiteral("Favorites for Editor"));
        // Out of range does nothing.
        model->toggleFavorite(-1);
        model->toggleFavorite(99);
        QCOMPARE(model->flatCount(), 5);
    }

    // A star, a reload or a merged scan reaches the list as row changes, never a reset, so the
    // list keeps its scroll position and selection.
    void vaultChangesUpdateRowsInPlace()
    {
        auto model = cheatSheet(kEditor);
        QAbstractItemModelTester tester(model->rows());
        QSignalSpy resets(model->rows(), &QAbstractItemModel::modelReset);
        QSignalSpy inserted(model->rows(), &QAbstractItemModel::rowsInserted);
        model->toggleFavorite(1); // Save
        m_store->reload();
        QCOMPARE(resets.count(), 0);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(model->rows()->index(0, 0).data(ShortcutListModel::NameRole).toString(),
                 QStringLiteral("Save"));
        // A new search text starts the list afresh.
        model->setFilter(QStringLiteral("sa"));
        QCOMPARE(resets.count(), 1);
    }

    void runAtRunsTheRowAsItIsNow()
    {
        auto model = cheatSheet(kEditor);
        QVERIFY(!model->canRun());
        model->runAt(0); // nothing to run it with

        FakeWorkspace workspace;
        FakeMenuCommandRunner menus;
        FakeKeyInjector keys;
        ManualScheduler scheduler;
        ShortcutRunner runner(workspace, menus, keys, scheduler);
        QStringList ran;
        model->followRunner(runner, [&ran](const ShortcutItem& row) { ran << row.name; });
        QVERIFY(model->canRun());
        model->runAt(1);
        m_store->setFilter(QStringLiteral("yank"));
        model->runAt(0);
        model->runAt(1);
        QCOMPARE(ran, (QStringList{QStringLiteral("Save"), QStringLiteral("Yank line")}));

        // Key lookup's rows are run as they are listed, not as the sections are.
        m_store->setFilter(QString());
        model->startLookup();
        model->lookUp(QStringLiteral("Ctrl+Y"));
        model->runAt(0);
        model->runAt(1); // past the one row found
        QCOMPARE(ran, (QStringList{QStringLiteral("Save"), QStringLiteral("Yank line"),
                                   QStringLiteral("Yank line")}));
    }

    void failedRunShowsInTheStatusAreaOfItsApp()
    {
        auto editor = cheatSheet(kEditor);
        auto other = cheatSheet(kUnknown);
        FakeWorkspace workspace; // runs nothing
        FakeMenuCommandRunner menus;
        FakeKeyInjector keys;
        ManualScheduler scheduler;
        ShortcutRunner runner(workspace, menus, keys, scheduler);
        editor->followRunner(runner, [](const ShortcutItem&) {});
        other->followRunner(runner, [](const ShortcutItem&) {});
        QSignalSpy status(editor.get(), &CheatSheetModel::scanStatusChanged);

        runner.run(item(QStringLiteral("Save"), QStringLiteral("⌃ S")), kEditor);
        QCOMPARE(editor->scanStatus(),
                 QStringLiteral("Could not run “Save”: Editor is not running."));
        QVERIFY(other->scanStatus().isEmpty());
        QVERIFY(status.count() >= 1);

        editor->dismissScanStatus();
        QVERIFY(editor->scanStatus().isEmpty());
    }

    void untypedHelperTextShowsInTheStatusArea()
    {
        auto editor = cheatSheet(kEditor);
        FakeWorkspace workspace;
        FakeClipboard clipboard;
        FakeKeyInjector keys;
        keys.succeeds = false; // a session that takes no keys
        FakeAccessibilityTrust trust;
        FakeAlertPresenter alerts;
        ManualScheduler scheduler;
        FakeTextInserter inserter;
        inserter.accepts = false; // a field without editable text
        TextHelperService helpers([] { return kEditor; }, workspace, clipboard, keys, trust, alerts,
                                  scheduler);
        helpers.setTextInserter(&inserter);
        editor->followTextHelpers(helpers);
        QSignalSpy status(editor.get(), &CheatSheetModel::scanStatusChanged);

        helpers.perform(TextHelperAction::Bullet);
        scheduler.advance(TextHelperService::kKeystrokeDelayMs);
        QCOMPARE(editor->scanStatus(), TextHelperService::notPastedText());
        QCOMPARE(status.count(), 1);
        // Another cheat sheet opened later says it as well.
        auto later = cheatSheet(kUnknown);
        later->followTextHelpers(helpers);
        QCOMPARE(later->scanStatus(), TextHelperService::notPastedText());

        editor->dismissScanStatus();
        QVERIFY(editor->scanStatus().isEmpty());
        QVERIFY(later->scanStatus().isEmpty());
    }

    void scanStatusBelongsToTheScannedApp()
    {
        auto editor = cheatSheet(kEditor);
        auto other = cheatSheet(kUnknown);
        QSignalSpy status(editor.get(), &CheatSheetModel::scanStatusChanged);
        QVERIFY(editor->scanStatus().isEmpty());
        QVERIFY(!editor->isScanning());

        m_desktop->scanner.scanAndMergeCurrentApp(kEditor, *m_store);
        QVERIFY(editor->isScanning());
        QCOMPARE(editor->scanStatus(), QStringLiteral("Scanning Editor menus..."));
        QVERIFY(other->scanStatus().isEmpty());
        QVERIFY(status.count() >= 1);

        QVERIFY(m_desktop->waitForScan());
        QVERIFY(!editor->isScanning());
        // The fake desktop runs no such app.
        QCOMPARE(editor->scanStatus(), QStringLiteral("Editor is not running anymore."));
    }

    void commandsBecomeRequests()
    {
        auto model = cheatSheet(kEditor);
        QSignalSpy close(model.get(), &CheatSheetModel::closeRequested);
        QSignalSpy reload(model.get(), &CheatSheetModel::reloadRequested);
        QSignalSpy scan(model.get(), &CheatSheetModel::scanMenusRequested);
        QSignalSpy browse(model.get(), &CheatSheetModel::browseAllRequested);
        QSignalSpy settings(model.get(), &CheatSheetModel::settingsRequested);
        QSignalSpy helper(model.get(), &CheatSheetModel::helperActionRequested);
        const QList<QSignalSpy*> spies{&close, &reload, &scan, &browse, &settings, &helper};
        const auto counts = [&spies] {
            QList<qsizetype> result;
            for (const QSignalSpy* spy : spies)
                result << spy->count();
            return result;
        };
        model->requestClose();
        QCOMPARE(counts(), (QList<qsizetype>{1, 0, 0, 0, 0, 0}));
        model->requestReload();
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 0, 0, 0, 0}));
        model->requestScanMenus();
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1, 0, 0, 0}));
        model->requestBrowseAll();
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1, 1, 0, 0}));
        model->requestSettings();
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1, 1, 1, 0}));
        model->requestHelperAction(QStringLiteral("bullets"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1, 1, 1, 1}));
        QCOMPARE(helper.first().first().toString(), QStringLiteral("bullets"));

        BrowserModel browser(*m_store, m_desktop->scanner, {});
        QSignalSpy scanOpen(&browser, &BrowserModel::scanOpenAppsRequested);
        QSignalSpy showJson(&browser, &BrowserModel::showJsonRequested);
        browser.requestScanOpenApps();
        QCOMPARE(scanOpen.count(), 1);
        QCOMPARE(showJson.count(), 0);
        browser.requestShowJson();
        QCOMPARE(scanOpen.count(), 1);
        QCOMPARE(showJson.count(), 1);
    }

    void dismissScanStatusClearsIt()
    {
        auto model = cheatSheet(kEditor);
        m_desktop->scanner.scanAndMergeCurrentApp(kEditor, *m_store);
        QVERIFY(m_desktop->waitForScan());
        QVERIFY(!model->scanStatus().isEmpty());
        QSignalSpy status(model.get(), &CheatSheetModel::scanStatusChanged);
        model->dismissScanStatus();
        QVERIFY(model->scanStatus().isEmpty());
        QVERIFY(!m_desktop->scanner.statusText());
        QVERIFY(!m_desktop->scanner.statusAppBundleID());
        QVERIFY(status.count() >= 1);
    }

    void vaultChangesRecomputeTheRows()
    {
        auto model = cheatSheet(kUnknown);
        QSignalSpy sections(model.get(), &CheatSheetModel::sectionsChanged);
        m_store->mergeScannedShortcuts({item(QStringLiteral("Reveal"), QStringLiteral("⌘R"))},
                                       kUnknown);
        QVERIFY(sections.count() >= 1);
        QVERIFY(model->vaultReady());
        QCOMPARE(model->flatCount(), 3);
    }

    void rowsModelIsAWellBehavedListModel()
    {
        auto model = cheatSheet(kEditor);
        QAbstractItemModelTester tester(model->rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model->rows()->rowCount(), 5);
        const QHash<int, QByteArray> roles = model->rows()->roleNames();
        for (const char* name :
             {"group", "name", "nameHtml", "chord", "detail", "favorite", "scanned"})
            QVERIFY2(roles.values().contains(QByteArray(name)), name);
        m_store->setFilter(QStringLiteral("find"));
        QCOMPARE(model->rows()->rowCount(), 1);
        QCOMPARE(column(*model->rows(), ShortcutListModel::ChordRole),
                 QStringList{QStringLiteral("⌘F")});
        m_store->setFilter(QString());
        model->toggleFavorite(0);
        m_store->setFilter(QStringLiteral("nothing at all here"));
        QCOMPARE(model->rows()->rowCount(), 0);
        QVERIFY(!model->rows()->index(0, 0).isValid());
    }

    void scannedRowsAreMarked()
    {
        auto model = cheatSheet(kUnknown);
        ShortcutItem reveal = item(QStringLiteral("Reveal"), QStringLiteral("⌘R"));
        reveal.source = QStringLiteral("scanned-menu");
        ShortcutItem tagged = item(QStringLiteral("Tagged"), QStringLiteral("⌘T"));
        tagged.tags = QStringList{QStringLiteral("scanned")};
        m_store->mergeScannedShortcuts({reveal, tagged}, kUnknown);
        const QStringList names = column(*model->rows(), ShortcutListModel::NameRole);
        for (const QString& scanned : {QStringLiteral("Reveal"), QStringLiteral("Tagged")}) {
            const int row = static_cast<int>(names.indexOf(scanned));
            QVERIFY(row >= 0);
            QVERIFY(model->rows()->index(row, 0).data(ShortcutListModel::ScannedRole).toBool());
        }
        const int copy = static_cast<int>(names.indexOf(QStringLiteral("Copy")));
        QVERIFY(!model->rows()->index(copy, 0).data(ShortcutListModel::ScannedRole).toBool());
    }

    // The browser window's model.

    void browserCountsPacksAndEveryRow()
    {
        BrowserModel browser(*m_store, m_desktop->scanner,
                             [this](const QString& t) { m_copied << t; });
        QAbstractItemModelTester tester(browser.rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(browser.appPackCount(), 2);
        QCOMPARE(browser.shortcutCount(), 5);
        QCOMPARE(browser.rowCount(), 5);
        QCOMPARE(browser.groupCounts().value(QStringLiteral("Editor")).toInt(), 3);
        QCOMPARE(browser.groupCounts().value(QStringLiteral("Global desktop essentials")).toInt(),
                 2);
        QCOMPARE(browser.bundleIDForGroup(QStringLiteral("Editor")),
                 QVariant(QStringLiteral("org.example.Editor")));
        QVERIFY(!browser.bundleIDForGroup(QStringLiteral("Global desktop essentials")).isValid());
        // The global group comes first.
        QCOMPARE(browser.rows()->index(0, 0).data(ShortcutListModel::GroupRole).toString(),
                 QStringLiteral("Global desktop essentials"));
        browser.copyChord(QStringLiteral("⌘C"));
        QCOMPARE(m_copied, QStringList{QStringLiteral("⌘C")});
    }

    void browserQueryFiltersButCountsStay()
    {
        BrowserModel browser(*m_store, m_desktop->scanner, {});
        QSignalSpy rows(&browser, &BrowserModel::rowsChanged);
        QSignalSpy query(&browser, &BrowserModel::queryChanged);
        browser.setQuery(QStringLiteral("   "));
        QCOMPARE(browser.rowCount(), 5);
        browser.setQuery(QStringLiteral("org.example.editor"));
        QCOMPARE(browser.rowCount(), 3);
        QCOMPARE(browser.groupCounts().value(QStringLiteral("Editor")).toInt(), 3);
        QCOMPARE(browser.groupCounts(), (QVariantMap{{QStringLiteral("Editor"), 3}}));
        browser.setQuery(QStringLiteral("no such shortcut anywhere"));
        QCOMPARE(browser.rowCount(), 0);
        QCOMPARE(browser.groupCounts().value(QStringLiteral("Editor")).toInt(), 0);
        QCOMPARE(browser.shortcutCount(), 5);
        QCOMPARE(browser.appPackCount(), 2);
        QCOMPARE(query.count(), 3);
        QCOMPARE(rows.count(), 3);
        browser.setQuery(QStringLiteral("no such shortcut anywhere"));
        QCOMPARE(query.count(), 3);
    }

    void browserRowsAreTheIndexGroupsInOrder()
    {
        BrowserModel browser(*m_store, m_desktop->scanner, {});
        QAbstractItemModelTester tester(browser.rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        for (const QString& query : {QString(), QStringLiteral("s"), QStringLiteral("editor")}) {
            browser.setQuery(query);
            QStringList groups;
            QStringList names;
            QStringList chords;
            const QList<BrowserGroup> expected =
                VaultBrowserIndex(m_store->allShortcutRows()).groupedRows(query);
            for (const BrowserGroup& group : expected) {
                for (const VaultShortcutRow& row : group.rows) {
                    groups << group.name;
                    names << row.shortcut.name;
                    chords << row.shortcut.chord;
                }
            }
            QVERIFY2(!names.isEmpty(), qPrintable(query));
            QCOMPARE(column(*browser.rows(), ShortcutListModel::GroupRole), groups);
            QCOMPARE(column(*browser.rows(), ShortcutListModel::NameRole), names);
            QCOMPARE(column(*browser.rows(), ShortcutListModel::ChordRole), chords);
        }
        browser.setQuery(QStringLiteral("sav"));
        QCOMPARE(browser.rows()->index(0, 0).data(ShortcutListModel::NameHtmlRole).toString(),
                 FuzzyMatch::highlighted(QStringLiteral("Save"), QStringLiteral("sav")));
    }

    // A star, a reload or a merged scan reaches the browser's list as row changes, never a
    // reset, so the list keeps its scroll position and selection; a new query resets it.
    void browserVaultChangesUpdateRowsInPlace()
    {
        BrowserModel browser(*m_store, m_desktop->scanner, {});
        QAbstractItemModelTester tester(browser.rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QAbstractItemModel& rows = *browser.rows();
        const QStringList before = column(rows, ShortcutListModel::NameRole);
        const qsizetype saveRow = before.indexOf(QStringLiteral("Save"));
        QVERIFY(saveRow >= 0);
        QSignalSpy resets(&rows, &QAbstractItemModel::modelReset);
        QSignalSpy changed(&rows, &QAbstractItemModel::dataChanged);
        QSignalSpy inserted(&rows, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&rows, &QAbstractItemModel::rowsRemoved);

        auto sheet = cheatSheet(kEditor);
        sheet->toggleFavorite(1); // Save
        QCOMPARE(resets.count(), 0);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toModelIndex().row(), static_cast<int>(saveRow));
        QVERIFY(rows.index(static_cast<int>(saveRow), 0)
                    .data(ShortcutListModel::FavoriteRole)
                    .toBool());
        QCOMPARE(column(rows, ShortcutListModel::NameRole), before);

        m_store->reload();
        QCOMPARE(resets.count(), 0);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(inserted.count() + removed.count(), 0);
        QCOMPARE(column(rows, ShortcutListModel::NameRole), before);

        m_store->mergeScannedShortcuts({item(QStringLiteral("Reveal"), QStringLiteral("⌘R"))},
                                       kUnknown);
        QCOMPARE(resets.count(), 0);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(removed.count(), 0);
        QCOMPARE(rows.rowCount(), before.size() + 1);
        QVERIFY(column(rows, ShortcutListModel::NameRole).contains(QStringLiteral("Reveal")));

        // Taking the star back changes the row in place too.
        sheet->toggleFavorite(0); // Save again, now first under the favourites
        QCOMPARE(resets.count(), 0);
        QVERIFY(!rows.index(static_cast<int>(saveRow), 0)
                     .data(ShortcutListModel::FavoriteRole)
                     .toBool());

        browser.setQuery(QStringLiteral("sa"));
        QCOMPARE(resets.count(), 1);
    }

    void browserFollowsTheVaultAndTheScanner()
    {
        BrowserModel browser(*m_store, m_desktop->scanner, {});
        QAbstractItemModelTester tester(browser.rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy counts(&browser, &BrowserModel::countsChanged);
        QSignalSpy scanner(&browser, &BrowserModel::scannerChanged);
        browser.setQuery(QStringLiteral("reveal"));
        QCOMPARE(browser.rowCount(), 0);
        m_store->mergeScannedShortcuts({item(QStringLiteral("Reveal"), QStringLiteral("⌘R"))},
                                       kUnknown);
        QVERIFY(counts.count() >= 1);
        QCOMPARE(browser.appPackCount(), 3);
        QCOMPARE(browser.shortcutCount(), 6);
        // The new row shows at once under the kept query, read from the rebuilt index.
        QCOMPARE(column(*browser.rows(), ShortcutListModel::NameRole),
                 QStringList{QStringLiteral("Reveal")});
        QCOMPARE(column(*browser.rows(), ShortcutListModel::GroupRole), QStringList{kUnknown.name});

        m_desktop->scanner.scanAndMergeCurrentApp(kEditor, *m_store);
        QVERIFY(browser.isScanning());
        QCOMPARE(browser.statusText(), QStringLiteral("Scanning Editor menus..."));
        QVERIFY(scanner.count() >= 1);
        QVERIFY(m_desktop->waitForScan());
        QVERIFY(!browser.isScanning());
    }

    // Two scans of the Editor, its menu changing in between: Cut moves from Ctrl+X to
    // Ctrl+Shift+X and Close leaves. The rows say so; the status line counts them.
    void rowsCarryWhatChangedSinceTheLastScan()
    {
        auto model = cheatSheet(kEditor);
        QAbstractItemModelTester tester(model->rows(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        BrowserModel browser(*m_store, m_desktop->scanner, {});
        m_desktop->workspace.apps.append(makeApp(kEditor.name, *kEditor.bundleID, 9));
        const auto setMenu = [this](const QList<FakeElementPtr>& items) {
            m_desktop->elements.applications.insert(
                9, makeApplication({makeMenu(QStringLiteral("Edit"), items)}));
        };
        constexpr int control = 4 | 8; // menu modifier masks: Control, no Super
        setMenu({makeItem(QStringLiteral("Cut"), QStringLiteral("x"), control),
                 makeItem(QStringLiteral("Close"), QStringLiteral("w"), control)});
        m_desktop->scanner.scanAndMergeCurrentApp(kEditor, *m_store);
        QVERIFY(m_desktop->waitForScan());
        QCOMPARE(column(*model->rows(), ShortcutListModel::WasTextRole).join(QString()), QString());

        setMenu({makeItem(QStringLiteral("Cut"), QStringLiteral("x"), control | 1)});
        QSignalSpy status(model.get(), &CheatSheetModel::scanStatusChanged);
        m_desktop->scanner.scanAndMergeCurrentApp(kEditor, *m_store);
        QVERIFY(m_desktop->waitForScan());
        QCOMPARE(model->scanStatus(),
                 QStringLiteral("Added 1 of 1 discovered shortcuts for Editor, "
                                "2 changed since the last scan."));
        QCOMPARE(browser.statusText(), model->scanStatus());
        QVERIFY(!status.isEmpty());

        QStringList marked;
        QAbstractItemModel& rows = *model->rows();
        for (int row = 0; row < rows.rowCount(); ++row) {
            const QModelIndex index = rows.index(row, 0);
            const bool stale = index.data(ShortcutListModel::StaleRole).toBool();
            const QString was = index.data(ShortcutListModel::WasTextRole).toString();
            if (stale || !was.isEmpty())
                marked << QStringLiteral("%1 %2 %3 %4")
                              .arg(index.data(ShortcutListModel::NameRole).toString(),
                                   index.data(ShortcutListModel::ChordTextRole).toString(),
                                   stale ? QStringLiteral("stale") : QStringLiteral("-"), was);
        }
        QCOMPARE(marked, (QStringList{QStringLiteral("Close Ctrl+W stale "),
                                      QStringLiteral("Cut Ctrl+X stale "),
                                      QStringLiteral("Cut Ctrl+Shift+X - was Ctrl+X")}));
        // Removing the stale rows takes the old chord away too.
        QCOMPARE(m_store->pruneStaleItems(kEditor).size(), 2);
        QCOMPARE(column(rows, ShortcutListModel::WasTextRole).join(QString()), QString());
    }
};

QTEST_MAIN(TestCheatSheetModel)
#include "tst_CheatSheetModel.moc"
