// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElement.h"
#include "vault/ShortcutItem.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Tessaline {

/// Turns an application's menu tree into shortcuts: each titled item with a keyboard
/// equivalent becomes one item, named after its title, filed under the path of menus above it.
/// Reads only the elements it is given; it asks nothing of the desktop.
class MenuReader
{
public:
    /// The shortcuts of every menu of `menuBar`, deduplicated and sorted by name.
    static QList<ShortcutItem> readMenuBar(const AccessibilityElementPtr& menuBar);
    /// The shortcuts of `element` and everything under it, the element's own first.
    static QList<ShortcutItem> readMenuElement(const AccessibilityElementPtr& element,
                                               const QStringList& path);
    /// The shortcut `element` stands for, if it is a titled item with a keyboard equivalent.
    static std::optional<ShortcutItem> shortcutItem(const AccessibilityElementPtr& element,
                                                    const QStringList& path);

    /// The key name of a menu command character.
    static QString normalizedKey(const QString& character);
    /// The key name of a virtual key code, for the few keys that have one.
    static std::optional<QString> virtualKeySymbol(int code);
    /// Modifier symbols (⌃ ⌥ ⇧ ⌘) then the key, single spaces, from a menu modifier mask.
    static QString displayChord(const QString& keySymbol, int modifiers);
    /// The menu titles from the menu bar down to an item, read back from the `menu` a scan gave
    /// it ("File > Recent" -> "File", "Recent"); empty for an item straight in the menu bar.
    static QStringList menuPath(const QString& menu);
    /// A title as item names show it: "…" written as "...".
    static QString itemName(const QString& title);
    /// Keeps the first item of each lower-cased name and chord.
    static QList<ShortcutItem> dedupe(const QList<ShortcutItem>& items);
};

} // namespace Tessaline
