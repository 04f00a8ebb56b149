// SPDX-License-Identifier: MIT
#pragma once

#include "lookup/DesktopShortcut.h"

#include <hotkey/KeyCombo.h>

#include <QList>

namespace Tessaline {

class DesktopKeySettings;

/// Gathers the desktop's own key bindings from the places that report them.
namespace DesktopShortcuts {

/// The combinations the desktop's hot-key settings use. A combo named "<schema> <key>" comes
/// from "Desktop: <schema>" and is called by its key, spelled as words ("switch-to-workspace-1"
/// -> "Switch to workspace 1"); an unnamed one is "Desktop shortcut". Combos whose code names
/// no key are left out.
QList<DesktopShortcut> fromKeyCombos(const QList<HotKey::NamedKeyCombo>& combos);

/// The bindings `settings` reads for each action it knows, from "Desktop: " + its
/// settingsName() (or "Desktop settings" when it has none).
QList<DesktopShortcut> fromKeySettings(const DesktopKeySettings& settings);

/// `first`, then those of `more` whose chord none of `first` holds.
QList<DesktopShortcut> merged(QList<DesktopShortcut> first, const QList<DesktopShortcut>& more);

/// The desktop's bindings now: the system key combos the installed hot-key service reports,
/// then those `settings` adds (when given).
QList<DesktopShortcut> current(const DesktopKeySettings* settings);

} // namespace DesktopShortcuts

} // namespace Tessaline
