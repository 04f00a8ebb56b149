// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Tessaline {

/// A key binding the desktop itself holds; the application in front never receives its chord.
struct DesktopShortcut
{
    /// What the binding does, e.g. "Close" or "Volume up in small steps".
    QString name;
    /// The desktop setting it comes from, e.g. "Desktop: org.gnome.desktop.wm.keybindings".
    QString source;
    /// The chord in ChordText::normalized() form.
    QString chord;

    bool operator==(const DesktopShortcut&) const = default;
};

} // namespace Tessaline
