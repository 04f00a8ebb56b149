// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "platform/MenuCommandRunner.h"

#include <QStringList>

namespace Tessaline {

/// Finds a menu item again in an application's live menus by the path a scan filed it under
/// and its name, the way the scanner built both: untitled levels (a toolkit's popup inside a
/// menu) are passed through, and so is a level titled like the level above it or like the item.
namespace MenuItemLocator {

/// The item named `name` under the menus `path` (from the menu bar down) among `menuBar`'s
/// entries; null when there is none. An enabled match wins over a greyed-out one of the same
/// name. Fails when the application stopped answering during the search.
Expected<MenuEntryPtr> find(const MenuEntryList& menuBar, const QStringList& path,
                            const QString& name);

} // namespace MenuItemLocator

} // namespace Tessaline
