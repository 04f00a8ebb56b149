// SPDX-License-Identifier: MIT
// Speed of the vault engine on large vaults:
//   browser filtering and grouping over 100,000 rows per query (goal: under 10 ms),
//   sections(for:) with a query over a 5,000-item pack (goal: under 1 ms),
//   loading and saving a 100,000-item vault (goal: under 150 ms each).
#include "vault/BrowserRows.h"
#include "vault/VaultBrowserIndex.h"
#include "vault/VaultCodec.h"
#include "vault/VaultStore.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace Tessaline;

namespace {

const QStringList kWords{
    QStringLiteral("New"),        QStringLiteral("Slide"),     QStringLiteral("Save"),
    QStringLiteral("As"),         QStringLiteral("Open"),      QStringLiteral("Close"),
    QStringLiteral("Tab"),        QStringLiteral("Window"),    QStringLiteral("Find"),
    QStringLiteral("Replace"),    QStringLiteral("Next"),      QStringLiteral("Previous"),
    QStringLiteral("Zoom"),       QStringLiteral("In"),        QStringLiteral("Out"),
    QStringLiteral("Toggle"),     QStringLiteral("Sidebar"),   QStringLiteral("Bookmark"),
    QStringLiteral("Export"),     QStringLiteral("PDF"),       QStringLiteral("Print"),
    QStringLiteral("Preview"),    QStringLiteral("Layer"),     QStringLiteral("Merge"),
    QStringLiteral("Duplicate"),  QStringLiteral("Selection"), QStringLiteral("Comment"),
    QStringLiteral("Line"),       QStringLiteral("Go"),        QStringLiteral("to"),
    QStringLiteral("Definition"), QStringLiteral("Reload"),    QStringLiteral("Page"),
    QStringLiteral("Insert"),     QStringLiteral("Table"),     QStringLiteral("Format"),
    QStringLiteral("Bold"),       QStringLiteral("Italic"),    QStringLiteral("Show"),
    QStringLiteral("Hidden"),     QStringLiteral("Files"),     QStringLiteral("Folder"),
    QStringLiteral("Terminal"),   QStringLiteral("Split"),     QStringLiteral("View"),
    QStringLiteral("Run"),        QStringLiteral("Debug"),     QStringLiteral("Step"),
    QStringLiteral("Over"),       QStringLiteral("Résumé"),    QStringLiteral("Überblick")};
const QStringList kMenus{QStringLiteral("File"), QStringLiteral("Edit"),  QStringLiteral("View"),
                         QStringLiteral("Go"),   QStringLiteral("Tools"), QStringLiteral("Window"),
                         QStringLiteral("Help"), QStringLiteral("Format")};
const QStringList kKeys{QStringLiteral("A"),   QStringLiteral("S"), QStringLiteral("T"),
                        QStringLiteral("W"),   QStringLiteral("N"), QStringLiteral("F5"),
                        QStringLiteral("Tab"), QStringLiteral("←"), QStringLiteral("Return"),
                        QStringLiteral("1"),   QStringLiteral("/"), QStringLiteral("Page Down")};

QString pick(QRandomGenerator& random, const QStringList& list)
{
    return list.at(random.bounded(list.size()));
}

ShortcutItem makeItem(QRandomGenerator& random)
{
    ShortcutItem item;
    const int words = 1 + random.bounded(4);
    for (int i = 0; i < words; ++i)
        item.name += (i ? QStringLiteral(" ") : QString()) + pick(random, kWords);
    QStringList chord;
    for (const char* modifier : {"⌃", "⌥", "⇧", "⌘"}) {
        if (random.bounded(3) == 0)
            chord << QString::fromUtf8(modifier);
    }
    chord << pick(random, kKeys);
    item.chord = chord.join(QLatin1Char(' '));
    if (random.bounded(2))
        item.menu = pick(random, kMenus) + QStringLiteral(" > ") + item.name;
    if (random.bounded(3) == 0)
        item.note = QStringLiteral("Use it to ") + pick(random, kWords).toLower() +
                    QStringLiteral(" quickly.");
    if (random.bounded(2))
        item.tags = QStringList{pick(random, kMenus).toLower(), pick(random, kWords).toLower()};
    if (random.bounded(10) == 0)
        item.favorite = true;
    if (random.bounded(4) == 0)
        item.source = QStringLiteral("scanned-menu");
    return item;
}

/// A vault of `total` items: 1,000 global ones, the rest in packs of `packSize`.
VaultData makeVault(int total, int packSize)
{
    QRandomGenerator random(20261121);
    VaultData data;
    data.comment = QStringLiteral("benchmark vault");
    const int global = std::min(total, 1000);
    for (int i = 0; i < global; ++i)
        data.global.append(makeItem(random));
    for (int made = global, pack = 0; made < total; ++pack) {
        AppShortcutPack app;
        app.name = pick(random, kWords) + QStringLiteral(" App ") + QString::number(pack);
        app.bundleID = QStringLiteral("org.example.") + app.name.toLower().remove(QLatin1Char(' '));
        for (int i = 0; i < packSize && made < total; ++i, ++made)
            app.shortcuts.append(makeItem(random));
        data.apps.append(std::move(app));
    }
    return data;
}

/// A store over `data` in a private folder.
struct StoreFixture
{
    QTemporaryDir dir;
    std::unique_ptr<VaultStore> store;

    explicit StoreFixture(const VaultData& data)
    {
        VaultStore::Configuration configuration;
        configuration.dataFilePath = dir.filePath(QStringLiteral("Tessaline/keybinds.json"));
        QDir().mkpath(dir.filePath(QStringLiteral("Tessaline")));
        QFile file(configuration.dataFilePath);
        if (file.open(QIODevice::WriteOnly))
            file.write(VaultCodec::encode(data));
        file.close();
        store = std::make_unique<VaultStore>(configuration);
        if (store->lastError())
            qFatal("benchmark store failed: %s", qPrintable(*store->lastError()));
    }
};

const QStringList kQueries{QStringLiteral("ns"),      QStringLiteral("save as"),
                           QStringLiteral("ctw"),     QStringLiteral("zoom"),
                           QStringLiteral("example"), QStringLiteral("qqq")};

void setLocale()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
}

const VaultBrowserIndex& browserIndex()
{
    static const VaultBrowserIndex index(
        StoreFixture(makeVault(100000, 500)).store->allShortcutRows());
    return index;
}

// What the browser does at a keystroke: filter and group, reading rows in place.
void BM_BrowserGroupedRows(benchmark::State& state)
{
    setLocale();
    const VaultBrowserIndex& index = browserIndex();
    const QString query = kQueries.at(state.range(0));
    qsizetype shown = 0;
    for (auto _ : state) {
        const QList<VaultBrowserIndex::RowGroup> groups = index.groupedRowPositions(query);
        shown = 0;
        for (const VaultBrowserIndex::RowGroup& group : groups)
            shown += group.rows.size();
        benchmark::DoNotOptimize(shown);
    }
    state.SetLabel(QStringLiteral("\"%1\" -> %2 rows").arg(query).arg(shown).toStdString());
}
BENCHMARK(BM_BrowserGroupedRows)->DenseRange(0, 5)->Unit(benchmark::kMillisecond);

// The same with copies of the rows, as the command line prints them.
void BM_BrowserGroupedRowCopies(benchmark::State& state)
{
    setLocale();
    const VaultBrowserIndex& index = browserIndex();
    const QString query = kQueries.at(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(index.groupedRows(query).size());
}
BENCHMARK(BM_BrowserGroupedRowCopies)->Arg(0)->Arg(4)->Unit(benchmark::kMillisecond);

void BM_BrowserIndexBuild(benchmark::State& state)
{
    setLocale();
    static const QList<VaultShortcutRow> rows =
        StoreFixture(makeVault(100000, 500)).store->allShortcutRows();
    for (auto _ : state) {
        VaultBrowserIndex index(rows);
        benchmark::DoNotOptimize(index.allRows().size());
    }
}
BENCHMARK(BM_BrowserIndexBuild)->Unit(benchmark::kMillisecond);

void BM_BrowserPlainAlgorithm(benchmark::State& state)
{
    setLocale();
    static const QList<VaultShortcutRow> rows =
        StoreFixture(makeVault(100000, 500)).store->allShortcutRows();
    const QString query = kQueries.at(state.range(0));
    for (auto _ : state) {
        const QList<BrowserGroup> groups = BrowserRows::groupedRows(BrowserRows::rows(rows, query));
        benchmark::DoNotOptimize(groups.size());
    }
}
BENCHMARK(BM_BrowserPlainAlgorithm)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Sections(benchmark::State& state)
{
    setLocale();
    static StoreFixture fixture(makeVault(6000, 5000));
    VaultStore& store = *fixture.store;
    const AppShortcutPack& pack = store.data().apps.at(0);
    const TrackedApp app{pack.name, pack.bundleID};
    store.setFilter(kQueries.at(state.range(0)));
    qsizetype shown = 0;
    for (auto _ : state) {
        const QList<ShortcutSection> sections = store.sections(app);
        shown = 0;
        for (const ShortcutSection& section : sections)
            shown += section.shortcuts.size();
        benchmark::DoNotOptimize(shown);
    }
    state.SetLabel(QStringLiteral("\"%1\" -> %2 items of %3")
                       .arg(store.filter())
                       .arg(shown)
                       .arg(pack.shortcuts.size() + store.data().global.size())
                       .toStdString());
}
BENCHMARK(BM_Sections)->DenseRange(0, 5)->Unit(benchmark::kMicrosecond);

void BM_LoadVault(benchmark::State& state)
{
    setLocale();
    static StoreFixture fixture(makeVault(100000, 500));
    for (auto _ : state) {
        fixture.store->reload();
        if (fixture.store->lastError())
            state.SkipWithError("reload failed");
    }
    state.SetLabel(QStringLiteral("%1 bytes")
                       .arg(QFileInfo(fixture.store->dataFilePath()).size())
                       .toStdString());
}
BENCHMARK(BM_LoadVault)->Unit(benchmark::kMillisecond);

void BM_SaveVault(benchmark::State& state)
{
    setLocale();
    static StoreFixture fixture(makeVault(100000, 500));
    for (auto _ : state) {
        fixture.store->persistQuietly();
        if (fixture.store->lastError())
            state.SkipWithError("write failed");
    }
}
BENCHMARK(BM_SaveVault)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
