// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace Tessaline {

/// The folders desktops keep their settings files in, after the XDG base directory rules.
class XdgConfigDirs
{
public:
    /// $XDG_CONFIG_HOME, or ~/.config when it is unset or not absolute.
    static QString home();
    /// The system folders of $XDG_CONFIG_DIRS, or /etc/xdg when it is unset.
    static QStringList system();
};

} // namespace Tessaline
