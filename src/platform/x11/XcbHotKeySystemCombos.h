// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace Tessaline {

/// Reads the key bindings the desktop already uses from its settings (the GSettings key-binding
/// schemas of GNOME-family desktops: window manager, shell and media keys).
class XcbHotKeySystemCombos
{
public:
    XcbHotKeySystemCombos() = delete;

    /// The schemas that are read, when installed.
    static QStringList schemaIds();

    /// One entry per binding that names a key with a Carbon code, in the form the hot-key
    /// service reports them ("enabled", "keyCode", "modifiers", and "name": the schema id and
    /// the key, "org.gnome.desktop.wm.keybindings close"); none when no schema is
    /// installed.
    static std::optional<QList<QVariantMap>> read();
};

} // namespace Tessaline
