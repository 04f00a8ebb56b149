// SPDX-License-Identifier: MIT
#pragma once

#include "hotkey/ModifierFlags.h"

#include <QList>
#include <QString>

#include <memory>

namespace HotKey {

/// A menu as far as key combinations are concerned: items with a key equivalent, its modifier
/// mask and an optional submenu.
struct Menu
{
    struct Item
    {
        QString keyEquivalent;
        ModifierFlags keyEquivalentModifierMask;
        std::shared_ptr<const Menu> submenu;
    };

    QList<Item> items;
};

} // namespace HotKey
