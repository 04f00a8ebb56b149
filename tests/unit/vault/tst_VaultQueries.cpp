// SPDX-License-Identifier: MIT
#include "VaultTestSupport.h"

#include "search/FuzzyMatch.h"
#include "vault/VaultStore.h"

#include <QLocale>
#include <QSignalSpy>
#include <QtTest>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

QStringList titles(const QList<ShortcutSection>& sections)
{
    QStringList result;
    for (const ShortcutSection& section : sections)
        result << section.title;
    return result;
}

ShortcutItem tagged(ShortcutItem item, const QStringList& tags)
{
    item.tags = tags;
    return item;
}

ShortcutItem sourced(ShortcutItem item, const QString& source)
{
    item.source = source;
    return item;
}

} // namespace

class TestVaultQueries : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
    void init() { QVERIFY(m_dir.emplace().isValid()); }

    void appPackPrefersBundleIdThenName();
    void appWithoutPackShowsOnlyTheGlobalSection();
    void packSectionsSplitFavoritesCuratedAndDiscovered();
    void scannedFavoriteIsListedOnlyAsFavorite();
    void globalFavoritesStayInTheGlobalSection();
    void whitespaceQueryIsAnEmptyQuery();
    void queryRanksWithinSectionsByTheBestField();
    void queryDropsSectionsWithoutMatches();
    void toggleFlipsThePackItemBeforeTheGlobalOne();
    void toggleFollowsThePassedItemAndStoresABoolean();
    void toggleOfAMissingItemChangesAndWritesNothing();
    void toggleFallsBackToTheNamedPack();
    void allRowsListGlobalThenPacksByName();
    void mergeCreatesAPackForANewApp();
    void mergeComparesNamesAndChordsCaseInsensitively();
    void mergeAddsSameNameWithAnotherChord();
    void secondMergeAddsNothingButResortsAndWrites();
    void emptyMergeCreatesAndWritesNothing();
    void mergeKeepsFavoritesInFront();
    void mergeUsesTheBundleIdPackAndIgnoresGlobal();

private:
    // A store over `data`, written as the data file first.
    std::unique_ptr<VaultStore> storeWith(const VaultData& data)
    {
        const VaultStore::Configuration configuration = configurationIn(*m_dir);
        writeFile(configuration.dataFilePath, VaultCodec::encode(data));
        return std::make_unique<VaultStore>(configuration);
    }
    VaultData fileData(const VaultStore& store)
    {
        return VaultCodec::decode(readFile(store.dataFilePath())).value_or(VaultData{});
    }

    std::optional<QTemporaryDir> m_dir;
};

void TestVaultQueries::appPackPrefersBundleIdThenName()
{
    VaultData data;
    data.apps = {AppShortcutPack{QStringLiteral("Editor"), std::nullopt, {}},
                 AppShortcutPack{QStringLiteral("Kate"), QStringLiteral("org.kde.kate"), {}},
                 AppShortcutPack{QStringLiteral("Other"), QStringLiteral("org.kde.KATE"), {}}};
    auto store = storeWith(data);
    QCOMPARE(
        store->appPack(TrackedApp{QStringLiteral("Renamed"), QStringLiteral("org.kde.kate")})->name,
        QStringLiteral("Kate"));
    QCOMPARE(
        store->appPack(TrackedApp{QStringLiteral("Kate"), QStringLiteral("org.kde.KATE")})->name,
        QStringLiteral("Other"));
    // No bundle-id match: the name decides, case-insensitively.
    QCOMPARE(store->appPack(TrackedApp{QStringLiteral("EDITOR"), QStringLiteral("x.y")})->name,
             QStringLiteral("Editor"));
    QCOMPARE(store->appPack(TrackedApp{QStringLiteral("kate"), std::nullopt})->name,
             QStringLiteral("Kate"));
    QVERIFY(!store->appPack(TrackedApp{QStringLiteral("Nope"), QStringLiteral("org.kde.Kate")}));
}

void TestVaultQueries::appWithoutPackShowsOnlyTheGlobalSection()
{
    VaultData data;
    data.global = {item(QStringLiteral("Lock screen"), QStringLiteral("⌘ L"))};
    data.apps = {AppShortcutPack{QStringLiteral("Kate"),
                                 QStringLiteral("org.kde.kate"),
                                 {item(QStringLiteral("Save"), QStringLiteral("⌃ S"))}}};
    auto store = storeWith(data);
    const TrackedApp app{QStringLiteral("Files"), QStringLiteral("org.gnome.Nautilus")};
    const QList<ShortcutSection> sections = store->sections(app);
    QCOMPARE(titles(sections), QStringList{QStringLiteral("Global desktop essentials")});
    QCOMPARE(sections[0].shortcuts, data.global);

    data.global.clear();
    store = storeWith(data);
    QVERIFY(store->sections(app).isEmpty());
}

void TestVaultQueries::packSectionsSplitFavoritesCuratedAndDiscovered()
{
    VaultData data;
    data.global = {item(QStringLiteral("Lock screen"), QStringLiteral("⌘ L"))};
    data.apps = {AppShortcutPack{QStringLiteral("Kate"),
                                 QStringLiteral("org.kde.kate"),
                                 {item(QStringLiteral("Save"), QStringLiteral("⌃ S")),
                                  sourced(item(QStringLiteral("Open"), QStringLiteral("⌃ O")),
                                          QStringLiteral("scanned-menu")),
                                  item(QStringLiteral("Find"), QStringLiteral("⌃ F"), true),
                                  tagged(item(QStringLiteral("Quit"), QStringLiteral("⌃ Q")),
                                         {QStringLiteral("file"), QStringLiteral("scanned")}),
                                  sourced(item(QStringLiteral("Close"), QStringLiteral("⌃ W")),
                                          QStringLiteral("Scanned-Menu")),
                                  tagged(item(QStringLiteral("Print"), QStringLiteral("⌃ P")),
                                         {QStringLiteral("Scanned")})}}};
    auto store = storeWith(data);
    // The app's own name differs: titles use the pack's name.
    const QList<ShortcutSection> sections =
        store->sections(TrackedApp{QStringLiteral("kate editor"), QStringLiteral("org.kde.kate")});
    QCOMPARE(titles(sections),
             (QStringList{QStringLiteral("Favorites for Kate"), QStringLiteral("Kate shortcuts"),
                          QStringLiteral("Discovered from Kate menus"),
                          QStringLiteral("Global desktop essentials")}));
    QCOMPARE(names(sections[0].shortcuts), QStringList{QStringLiteral("Find")});
    // Comparisons are exact: "Scanned-Menu" and "Scanned" are curated.
    QCOMPARE(
        names(sections[1].shortcuts),
        (QStringList{QStringLiteral("Save"), QStringLiteral("Close"), QStringLiteral("Print")}));
    QCOMPARE(names(sections[2].shortcuts),
             (QStringList{QStringLiteral("Open"), QStringLiteral("Quit")}));
}

void TestVaultQueries::scannedFavoriteIsListedOnlyAsFavorite()
{
    VaultData data;
    data.apps = {AppShortcutPack{QStringLiteral("Kate"),
                                 std::nullopt,
                                 {tagged(item(QStringLiteral("Open"), QStringLiteral("⌃ O"), true),
                                         {QStringLiteral("scanned")})}}};
    auto store = storeWith(data);
    const QList<ShortcutSection> sections =
        store->sections(TrackedApp{QStringLiteral("Kate"), std::nullopt});
    QCOMPARE(titles(sections), QStringList{QStringLiteral("Favorites for Kate")});
    QCOMPARE(names(sections[0].shortcuts), QStringList{QStringLiteral("Open")});
}

void TestVaultQueries::globalFavoritesStayInTheGlobalSection()
{
    VaultData data;
    data.global = {item(QStringLiteral("b"), QStringLiteral("1")),
                   item(QStringLiteral("a"), QStringLiteral("2"), true)};
    data.apps = {AppShortcutPack{QStringLiteral("Kate"),
                                 std::nullopt,
                                 {item(QStringLiteral("Save"), QStringLiteral("⌃ S"))}}};
    auto store = storeWith(data);
    const QList<ShortcutSection> sections =
        store->sections(TrackedApp{QStringLiteral("Kate"), std::nullopt});
    QCOMPARE(titles(sections), (QStringList{QStringLiteral("Kate shortcuts"),
                                            QStringLiteral("Global desktop essentials")}));
    // The global list was put in vault order when the file was read.
    QCOMPARE(names(sections[1].shortcuts), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

void TestVaultQueries::whitespaceQueryIsAnEmptyQuery()
{
    auto store =
        storeWith(VaultData{std::nullopt,
                            {item(QStringLiteral("b"), QStringLiteral("1"))},
                            {AppShortcutPack{QStringLiteral("Kate"),
                                             std::nullopt,
                                             {item(QStringLiteral("z"), QStringLiteral("2"))}}}});
    const TrackedApp app{QStringLiteral("Kate"), std::nullopt};
    const QList<ShortcutSection> unfiltered = store->sections(app);
    store->setFilter(QStringLiteral("  \n\t "));
    QCOMPARE(store->sections(app), unfiltered);
    QCOMPARE(unfiltered.size(), 2);
}

void TestVaultQueries::queryRanksWithinSectionsByTheBestField()
{
    // "ns" scores 15 against the chord "ns" but -11 against this name (late, long): the item
    // ranks with 15, ahead of an item whose name gives 1 + 12 = 13, behind "New Slide" (16 + 12).
    const QString late = QString(40, QLatin1Char('x')) + QStringLiteral("ns");
    QCOMPARE(FuzzyMatch::match(QStringLiteral("ns"), late)->score, -23);
    QCOMPARE(FuzzyMatch::match(QStringLiteral("ns"), QStringLiteral("ns"))->score, 15);
    QCOMPARE(FuzzyMatch::match(QStringLiteral("ns"), QStringLiteral("xxxxxxxxns"))->score, 1);

    VaultData data;
    data.apps = {AppShortcutPack{QStringLiteral("Kate"),
                                 std::nullopt,
                                 {item(QStringLiteral("xxxxxxxxns"), QStringLiteral("⌃ 1")),
                                  item(QStringLiteral("Nothing"), QStringLiteral("⌃ 2")),
                                  item(late, QStringLiteral("ns")),
                                  item(QStringLiteral("New Slide"), QStringLiteral("⌃ 3"))}}};
    auto store = storeWith(data);
    store->setFilter(QStringLiteral(" NS "));
    const QList<ShortcutSection> sections =
        store->sections(TrackedApp{QStringLiteral("Kate"), std::nullopt});
    QCOMPARE(titles(sections), QStringList{QStringLiteral("Kate shortcuts")});
    QCOMPARE(names(sections[0].shortcuts),
             (QStringList{QStringLiteral("New Slide"), late, QStringLiteral("xxxxxxxxns")}));
}

void TestVaultQueries::queryDropsSectionsWithoutMatches()
{
    VaultData data;
    data.global = {item(QStringLiteral("Lock screen"), QStringLiteral("⌘ L")),
                   item(QStringLiteral("Screenshot"), QStringLiteral("Print"))};
    data.apps = {AppShortcutPack{QStringLiteral("Kate"),
                                 std::nullopt,
                                 {item(QStringLiteral("Save"), QStringLiteral("⌃ S"), true),
                                  item(QStringLiteral("Print preview"), QStringLiteral("⌃ P"))}}};
    auto store = storeWith(data);
    store->setFilter(QStringLiteral("print"));
    const QList<ShortcutSection> sections =
        store->sections(TrackedApp{QStringLiteral("Kate"), std::nullopt});
    QCOMPARE(titles(sections), (QStringList{QStringLiteral("Kate shortcuts"),
                                            QStringLiteral("Global desktop essentials")}));
    QCOMPARE(names(sections[1].shortcuts), QStringList{QStringLiteral("Screenshot")});
    store->setFilter(QStringLiteral("qqq"));
    QVERIFY(store->sections(TrackedApp{QStringLiteral("Kate"), std::nullopt}).isEmpty());
}

void TestVaultQueries::toggleFlipsThePackItemBeforeTheGlobalOne()
{
    const ShortcutItem shared = item(QStringLiteral("Find"), QStringLiteral("⌃ F"));
    auto store = storeWith(VaultData{
        std::nullopt,
        {shared},
        {AppShortcutPack{QStringLiteral("Kate"), QStringLiteral("org.kde.kate"), {shared}}}});
    QSignalSpy spy(store.get(), &VaultStore::dataChanged);
    store->toggleFavorite(store->data().global.at(0),
                          TrackedApp{QStringLiteral("Kate"), QStringLiteral("org.kde.kate")});
    QCOMPARE(spy.count(), 1);
    QCOMPARE(store->data().apps.at(0).shortcuts.at(0).favorite, std::optional<bool>(true));
    QVERIFY(!store->data().global.at(0).favorite.has_value());
    QCOMPARE(fileData(*store), store->data());
}

void TestVaultQueries::toggleFollowsThePassedItemAndStoresABoolean()
{
    auto store = storeWith(
        VaultData{std::nullopt, {item(QStringLiteral("Find"), QStringLiteral("⌃ F"))}, {}});
    const TrackedApp app = TrackedApp::placeholder();
    ShortcutItem seen = item(QStringLiteral("Find"), QStringLiteral("⌃ F"), true);
    seen.note = QStringLiteral("the view's stale copy");
    store->toggleFavorite(seen, app); // the caller saw it as a favorite: it becomes false
    QCOMPARE(store->data().global.at(0).favorite, std::optional<bool>(false));
    QVERIFY(!store->data().global.at(0).note.has_value());
    store->toggleFavorite(item(QStringLiteral("Find"), QStringLiteral("⌃ F")), app);
    QCOMPARE(store->data().global.at(0).favorite, std::optional<bool>(true));
    QCOMPARE(fileData(*store).global.at(0).favorite, std::optional<bool>(true));
}

void TestVaultQueries::toggleOfAMissingItemChangesAndWritesNothing()
{
    auto store = storeWith(
        VaultData{std::nullopt, {item(QStringLiteral("Find"), QStringLiteral("⌃ F"))}, {}});
    const QByteArray before = readFile(store->dataFilePath());
    QVERIFY(QFile::remove(store->dataFilePath()));
    QSignalSpy spy(store.get(), &VaultStore::dataChanged);
    store->toggleFavorite(item(QStringLiteral("Find"), QStringLiteral("⌃ G")),
                          TrackedApp::placeholder());
    QCOMPARE(spy.count(), 0);
    QVERIFY(!QFileInfo::exists(store->dataFilePath()));
    QVERIFY(!store->data().global.at(0).favorite.has_value());
    QVERIFY(!before.isEmpty());
}

void TestVaultQueries::toggleFallsBackToTheNamedPack()
{
    const ShortcutItem find = item(QStringLiteral("Find"), QStringLiteral("⌃ F"));
    auto store =
        storeWith(VaultData{std::nullopt,
                            {find},
                            {AppShortcutPack{QStringLiteral("Other"),
                                             QStringLiteral("org.kde.kate"),
                                             {item(QStringLiteral("x"), QStringLiteral("y"))}},
                             AppShortcutPack{QStringLiteral("Kate"), std::nullopt, {find}}}});
    store->toggleFavorite(find, TrackedApp{QStringLiteral("KATE"), QStringLiteral("org.kde.kate")});
    QCOMPARE(store->data().apps.at(1).shortcuts.at(0).favorite, std::optional<bool>(true));
    QVERIFY(!store->data().global.at(0).favorite);
    QCOMPARE(
        store->storedItem(find.id(), TrackedApp{QStringLiteral("kate"), std::nullopt})->favorite,
        std::optional<bool>(true));
}

void TestVaultQueries::allRowsListGlobalThenPacksByName()
{
    auto store =
        storeWith(VaultData{std::nullopt,
                            {item(QStringLiteral("g2"), QStringLiteral("2")),
                             item(QStringLiteral("g1"), QStringLiteral("1"))},
                            {AppShortcutPack{QStringLiteral("gamma"),
                                             std::nullopt,
                                             {item(QStringLiteral("c"), QStringLiteral("3"))}},
                             AppShortcutPack{QStringLiteral("Empty"), std::nullopt, {}},
                             AppShortcutPack{QStringLiteral("Beta"),
                                             QStringLiteral("org.beta"),
                                             {item(QStringLiteral("b2"), QStringLiteral("5")),
                                              item(QStringLiteral("b1"), QStringLiteral("4"))}},
                             AppShortcutPack{QStringLiteral("alpha"),
                                             std::nullopt,
                                             {item(QStringLiteral("a"), QStringLiteral("6"))}}}});
    const VaultData before = store->data();
    const QList<VaultShortcutRow> rows = store->allShortcutRows();
    QStringList ids;
    for (const VaultShortcutRow& row : rows)
        ids << row.id();
    QCOMPARE(ids, (QStringList{QStringLiteral("Global desktop essentials|g1|1"),
                               QStringLiteral("Global desktop essentials|g2|2"),
                               QStringLiteral("alpha|a|6"), QStringLiteral("Beta|b2|5"),
                               QStringLiteral("Beta|b1|4"), QStringLiteral("gamma|c|3")}));
    QVERIFY(!rows[0].bundleID);
    QCOMPARE(rows[3].bundleID, std::optional<QString>(QStringLiteral("org.beta")));
    QCOMPARE(store->data(), before);
}

void TestVaultQueries::mergeCreatesAPackForANewApp()
{
    auto store = storeWith(VaultData{});
    QSignalSpy spy(store.get(), &VaultStore::dataChanged);
    const QList<ShortcutItem> scanned{
        sourced(item(QStringLiteral("Save"), QStringLiteral("⌃ S")),
                QStringLiteral("scanned-menu")),
        item(QStringLiteral("open"), QStringLiteral("⌃ O")),
        item(QStringLiteral("SAVE"), QStringLiteral("⌃ s")), // duplicate key of the first
        item(QStringLiteral("About"), QStringLiteral("F1"))};
    const TrackedApp app{QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")};
    QCOMPARE(store->mergeScannedShortcuts(scanned, app), 3);
    // Made to the newest file and published once, whole: the new pack with its sorted items.
    QCOMPARE(spy.count(), 1);
    QCOMPARE(store->data().apps.size(), 1);
    const AppShortcutPack& pack = store->data().apps.at(0);
    QCOMPARE(pack.name, QStringLiteral("Mousepad"));
    QCOMPARE(pack.bundleID, std::optional<QString>(QStringLiteral("org.xfce.mousepad")));
    QCOMPARE(names(pack.shortcuts), (QStringList{QStringLiteral("About"), QStringLiteral("open"),
                                                 QStringLiteral("Save")}));
    QCOMPARE(pack.shortcuts.at(2), scanned.at(0)); // appended unchanged
    QCOMPARE(fileData(*store), store->data());
}

void TestVaultQueries::mergeComparesNamesAndChordsCaseInsensitively()
{
    auto store = storeWith(
        VaultData{std::nullopt,
                  {},
                  {AppShortcutPack{QStringLiteral("App"),
                                   std::nullopt,
                                   {item(QStringLiteral("save"), QStringLiteral("⌘s"))}}}});
    QCOMPARE(store->mergeScannedShortcuts({item(QStringLiteral("Save"), QStringLiteral("⌘S"))},
                                          TrackedApp{QStringLiteral("App"), std::nullopt}),
             0);
    QCOMPARE(store->data().apps.at(0).shortcuts.size(), 1);
}

void TestVaultQueries::mergeAddsSameNameWithAnotherChord()
{
    auto store = storeWith(
        VaultData{std::nullopt,
                  {},
                  {AppShortcutPack{QStringLiteral("App"),
                                   std::nullopt,
                                   {item(QStringLiteral("Save"), QStringLiteral("⌃ S"))}}}});
    QCOMPARE(store->mergeScannedShortcuts({item(QStringLiteral("Save"), QStringLiteral("⌃ ⇧ S"))},
                                          TrackedApp{QStringLiteral("app"), std::nullopt}),
             1);
    QCOMPARE(store->data().apps.at(0).shortcuts.size(), 2);
    QCOMPARE(store->data().apps.size(), 1);
}

void TestVaultQueries::secondMergeAddsNothingButResortsAndWrites()
{
    // The pack's hand-made order is replaced by the vault order after any scan.
    auto store = storeWith(
        VaultData{std::nullopt,
                  {},
                  {AppShortcutPack{QStringLiteral("App"),
                                   std::nullopt,
                                   {item(QStringLiteral("Zoom"), QStringLiteral("1")),
                                    item(QStringLiteral("Undo"), QStringLiteral("2"))}}}});
    const QList<ShortcutItem> scanned{item(QStringLiteral("Zoom"), QStringLiteral("1")),
                                      item(QStringLiteral("Cut"), QStringLiteral("3"))};
    const TrackedApp app{QStringLiteral("App"), std::nullopt};
    QCOMPARE(store->mergeScannedShortcuts(scanned, app), 1);

    // Put the pack out of order on disk, reload, and scan again.
    VaultData shuffled = store->data();
    std::reverse(shuffled.apps[0].shortcuts.begin(), shuffled.apps[0].shortcuts.end());
    QVERIFY(writeFile(store->dataFilePath(), VaultCodec::encode(shuffled)));
    store->reload();
    QCOMPARE(names(store->data().apps.at(0).shortcuts),
             (QStringList{QStringLiteral("Zoom"), QStringLiteral("Undo"), QStringLiteral("Cut")}));
    QSignalSpy spy(store.get(), &VaultStore::dataChanged);
    QCOMPARE(store->mergeScannedShortcuts(scanned, app), 0);
    QCOMPARE(spy.count(), 1); // the re-sort
    QCOMPARE(names(store->data().apps.at(0).shortcuts),
             (QStringList{QStringLiteral("Cut"), QStringLiteral("Undo"), QStringLiteral("Zoom")}));
    QCOMPARE(fileData(*store), store->data());
}

void TestVaultQueries::emptyMergeCreatesAndWritesNothing()
{
    auto store = storeWith(VaultData{});
    QVERIFY(QFile::remove(store->dataFilePath()));
    QSignalSpy spy(store.get(), &VaultStore::dataChanged);
    QCOMPARE(store->mergeScannedShortcuts({}, TrackedApp{QStringLiteral("App"), std::nullopt}), 0);
    QCOMPARE(spy.count(), 0);
    QVERIFY(store->data().apps.isEmpty());
    QVERIFY(!QFileInfo::exists(store->dataFilePath()));
}

void TestVaultQueries::mergeKeepsFavoritesInFront()
{
    ShortcutItem favorite = item(QStringLiteral("Zoom"), QStringLiteral("1"), true);
    favorite.note = QStringLiteral("mine");
    auto store = storeWith(VaultData{
        std::nullopt,
        {},
        {AppShortcutPack{QStringLiteral("App"),
                         std::nullopt,
                         {item(QStringLiteral("Undo"), QStringLiteral("2")), favorite}}}});
    QCOMPARE(store->mergeScannedShortcuts({item(QStringLiteral("Apply"), QStringLiteral("3")),
                                           item(QStringLiteral("zoom"), QStringLiteral("1"))},
                                          TrackedApp{QStringLiteral("App"), std::nullopt}),
             1);
    const QList<ShortcutItem>& shortcuts = store->data().apps.at(0).shortcuts;
    QCOMPARE(names(shortcuts), (QStringList{QStringLiteral("Zoom"), QStringLiteral("Apply"),
                                            QStringLiteral("Undo")}));
    QCOMPARE(shortcuts.at(0), favorite);
}

void TestVaultQueries::mergeUsesTheBundleIdPackAndIgnoresGlobal()
{
    const ShortcutItem copy = item(QStringLiteral("Copy"), QStringLiteral("⌃ C"));
    auto store = storeWith(VaultData{
        std::nullopt,
        {copy},
        {AppShortcutPack{QStringLiteral("Files"), std::nullopt, {}},
         AppShortcutPack{QStringLiteral("Nautilus"), QStringLiteral("org.gnome.Nautilus"), {}}}});
    QCOMPARE(store->mergeScannedShortcuts(
                 {copy}, TrackedApp{QStringLiteral("Files"), QStringLiteral("org.gnome.Nautilus")}),
             1);
    QCOMPARE(store->data().apps.at(1).shortcuts, QList<ShortcutItem>{copy});
    QVERIFY(store->data().apps.at(0).shortcuts.isEmpty());
    QCOMPARE(store->data().global, QList<ShortcutItem>{copy});
}

QTEST_GUILESS_MAIN(TestVaultQueries)
#include "tst_VaultQueries.moc"
