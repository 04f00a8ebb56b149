// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QString>

namespace Tessaline {

/// One shortcut bound to a chord, with where it comes from: an app's pack, the global list or
/// the desktop's own bindings.
struct BoundShortcut
{
    enum class Origin
    {
        App,
        Global,
        Desktop,
    };

    Origin origin = Origin::App;
    /// Where it comes from as the user reads it: the pack's name, "Global", or the desktop
    /// setting ("Desktop: org.gnome.desktop.wm.keybindings").
    QString source;
    /// The vault's item as it is stored; for a desktop binding, its name and chord with
    /// ShortcutLookup::desktopNote().
    ShortcutItem item;

    bool operator==(const BoundShortcut&) const = default;
};

} // namespace Tessaline
