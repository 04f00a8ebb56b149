// SPDX-License-Identifier: MIT
#include "lookup/ChordConflicts.h"

#include "lookup/ChordKeys.h"

namespace Tessaline::ChordConflicts {

namespace {

using DesktopIndex = QHash<QString, QList<DesktopShortcut>>;

DesktopIndex indexed(const QList<DesktopShortcut>& desktop, ChordKeys& keys)
{
    DesktopIndex index;
    for (const DesktopShortcut& shortcut : desktop) {
        if (const std::optional<QString> chord = keys.of(shortcut.chord))
            index[*chord].append(shortcut);
    }
    return index;
}

QList<ChordConflict> conflictsOf(const AppShortcutPack& pack, const DesktopIndex& desktop,
                                 ChordKeys& keys)
{
    QList<std::optional<QString>> chords;
    chords.reserve(pack.shortcuts.size());
    QHash<QString, QList<qsizetype>> byChord;
    for (qsizetype i = 0; i < pack.shortcuts.size(); ++i) {
        chords.append(keys.of(pack.shortcuts.at(i).chord));
        if (chords.back())
            byChord[*chords.back()].append(i);
    }
    QList<ChordConflict> conflicts;
    for (qsizetype i = 0; i < pack.shortcuts.size(); ++i) {
        if (!chords.at(i))
            continue;
        const ShortcutItem& item = pack.shortcuts.at(i);
        const auto conflict = [&](ChordConflict::Kind kind, const QString& other,
                                  const QString& source) {
            conflicts.append({kind, pack.name, pack.bundleID, item, other, source});
        };
        for (const qsizetype j : byChord.value(*chords.at(i))) {
            const ShortcutItem& other = pack.shortcuts.at(j);
            if (j != i && other.name != item.name)
                conflict(ChordConflict::Kind::SameApp, other.name, QString());
        }
        for (const DesktopShortcut& taken : desktop.value(*chords.at(i)))
            conflict(ChordConflict::Kind::DesktopTakes, taken.name, taken.source);
    }
    return conflicts;
}

} // namespace

QList<ChordConflict> inPack(const AppShortcutPack& pack, const QList<DesktopShortcut>& desktop)
{
    ChordKeys keys;
    return conflictsOf(pack, indexed(desktop, keys), keys);
}

QList<ChordConflict> inPacks(const QList<AppShortcutPack>& packs,
                             const QList<DesktopShortcut>& desktop)
{
    ChordKeys keys;
    const DesktopIndex index = indexed(desktop, keys);
    QList<ChordConflict> conflicts;
    for (const AppShortcutPack& pack : packs)
        conflicts += conflictsOf(pack, index, keys);
    return conflicts;
}

QHash<QString, QStringList> reasonsByItem(const QList<ChordConflict>& conflicts)
{
    QHash<QString, QStringList> reasons;
    for (const ChordConflict& conflict : conflicts)
        reasons[conflict.item.id()].append(conflict.reason());
    return reasons;
}

} // namespace Tessaline::ChordConflicts
