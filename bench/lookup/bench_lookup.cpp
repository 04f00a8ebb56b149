// SPDX-License-Identifier: MIT
// Speed of key lookup over a generated 100,000-item vault (goal: a lookup answers in under
// 5 ms): indexing the vault's chords once, one lookup on that index, both together (what one
// run of `tessaline-vault which` costs), and finding every conflict. Each prints its median
// over repeated runs.
#include "lookup/ChordConflicts.h"
#include "lookup/ShortcutLookup.h"

#include <QRandomGenerator>

#include <benchmark/benchmark.h>

using namespace Tessaline;

namespace {

constexpr int kPacks = 199;
constexpr int kItemsPerPack = 500;
constexpr int kGlobalItems = 500; // 199 * 500 + 500 = 100,000 items

const QStringList kKeys{
    QStringLiteral("A"),         QStringLiteral("S"),   QStringLiteral("T"),
    QStringLiteral("W"),         QStringLiteral("N"),   QStringLiteral("F5"),
    QStringLiteral("F11"),       QStringLiteral("Tab"), QStringLiteral("←"),
    QStringLiteral("Return"),    QStringLiteral("1"),   QStringLiteral("/"),
    QStringLiteral("Page Down"), QStringLiteral("+"),   QStringLiteral("Delete")};

ShortcutItem makeItem(QRandomGenerator& random, int number)
{
    ShortcutItem item;
    item.name = QStringLiteral("Command %1").arg(number);
    QStringList chord;
    for (const char* modifier : {"⌃", "⌥", "⇧", "⌘"}) {
        if (random.bounded(3) == 0)
            chord << QString::fromUtf8(modifier);
    }
    chord << kKeys.at(random.bounded(kKeys.size()));
    // A fifth of the chords are written in words, as hand-written seed files may have them.
    item.chord = random.bounded(5) == 0 ? QString() : chord.join(QLatin1Char(' '));
    if (item.chord.isEmpty()) {
        static const QHash<QString, QString> words = {
            {QStringLiteral("⌃"), QStringLiteral("Ctrl")},
            {QStringLiteral("⌥"), QStringLiteral("Alt")},
            {QStringLiteral("⇧"), QStringLiteral("Shift")},
            {QStringLiteral("⌘"), QStringLiteral("Super")}};
        QStringList written;
        for (const QString& part : std::as_const(chord))
            written << words.value(part, part);
        item.chord = written.join(QLatin1Char('+'));
    }
    return item;
}

struct Vault
{
    QList<AppShortcutPack> packs;
    QList<ShortcutItem> global;
    QList<DesktopShortcut> desktop;
};

const Vault& vault()
{
    static const Vault generated = [] {
        QRandomGenerator random(7);
        Vault made;
        int number = 0;
        for (int p = 0; p < kPacks; ++p) {
            AppShortcutPack pack;
            pack.name = QStringLiteral("App %1").arg(p);
            pack.bundleID = QStringLiteral("org.example.app%1").arg(p);
            for (int i = 0; i < kItemsPerPack; ++i)
                pack.shortcuts.append(makeItem(random, number++));
            made.packs.append(pack);
        }
        for (int i = 0; i < kGlobalItems; ++i)
            made.global.append(makeItem(random, number++));
        for (int i = 0; i < 60; ++i)
            made.desktop.append({QStringLiteral("Desktop action %1").arg(i),
                                 QStringLiteral("Desktop: org.example.keys"),
                                 makeItem(random, number++).chord});
        return made;
    }();
    return generated;
}

void BM_IndexVault(benchmark::State& state)
{
    const Vault& v = vault();
    for (auto _ : state) {
        ShortcutLookup lookup(v.packs, v.global, v.desktop);
        benchmark::DoNotOptimize(lookup.size());
    }
}

void BM_LookupOnIndex(benchmark::State& state)
{
    const Vault& v = vault();
    const ShortcutLookup lookup(v.packs, v.global, v.desktop);
    qsizetype found = 0;
    for (auto _ : state) {
        const QList<BoundShortcut> bound = lookup.which(QStringLiteral("Ctrl+Shift+S"));
        found = bound.size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["found"] = double(found);
}

void BM_IndexAndLookup(benchmark::State& state)
{
    const Vault& v = vault();
    for (auto _ : state) {
        const ShortcutLookup lookup(v.packs, v.global, v.desktop);
        benchmark::DoNotOptimize(lookup.which(QStringLiteral("⌃ ⇧ S")).size());
    }
}

void BM_AllConflicts(benchmark::State& state)
{
    const Vault& v = vault();
    qsizetype found = 0;
    for (auto _ : state) {
        found = ChordConflicts::inPacks(v.packs, v.desktop).size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["conflicts"] = double(found);
}

} // namespace

BENCHMARK(BM_IndexVault)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_LookupOnIndex)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_IndexAndLookup)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_AllConflicts)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

BENCHMARK_MAIN();
