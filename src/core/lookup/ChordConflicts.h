// SPDX-License-Identifier: MIT
#pragma once

#include "lookup/ChordConflict.h"
#include "lookup/DesktopShortcut.h"
#include "vault/AppShortcutPack.h"

#include <QHash>
#include <QList>
#include <QStringList>

namespace Tessaline {

/// Finds the chords of app packs that clash: bound to more than one item of the same pack, or
/// taken by the desktop itself. Chords are compared in ChordText::normalized() form, so "⌃ S"
/// and "Ctrl+S" clash. Items with the same name and chord are one shortcut, not a clash.
namespace ChordConflicts {

/// The clashes of `pack`, item by item in stored order: for each affected item, first one
/// entry per other item bound to its chord (in stored order), then one per desktop binding.
QList<ChordConflict> inPack(const AppShortcutPack& pack, const QList<DesktopShortcut>& desktop);

/// inPack() of each of `packs` in turn.
QList<ChordConflict> inPacks(const QList<AppShortcutPack>& packs,
                             const QList<DesktopShortcut>& desktop);

/// The reasons of `conflicts`, by the affected item's id (ShortcutItem::id()), in order.
QHash<QString, QStringList> reasonsByItem(const QList<ChordConflict>& conflicts);

} // namespace ChordConflicts

} // namespace Tessaline
