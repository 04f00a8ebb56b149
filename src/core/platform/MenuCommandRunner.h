// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"

#include <QList>
#include <QString>

#include <memory>

namespace Tessaline {

class MenuEntry;
using MenuEntryPtr = std::shared_ptr<MenuEntry>;
using MenuEntryList = QList<MenuEntryPtr>;

/// One entry of a running application's menus (a menu, a submenu or an item), read from the
/// application when it is asked for, so that it shows the menus as they are at that moment.
class MenuEntry
{
public:
    virtual ~MenuEntry();

    /// The entry's title, surrounding white space trimmed; empty for untitled entries.
    virtual QString title() const = 0;
    /// False for an item the application has greyed out.
    virtual bool isEnabled() const = 0;
    /// True when the entry holds further entries (a menu or submenu).
    virtual bool hasChildren() const = 0;
    /// The entries under this one, in menu order. Fails when the application did not answer.
    virtual Expected<MenuEntryList> children() const = 0;
    /// Runs the entry's action, as a click on it would. Fails with the reason.
    virtual Expected<void> activate() = 0;
};

/// Reaches the menus of running applications to run their items.
class MenuCommandRunner
{
public:
    virtual ~MenuCommandRunner() = default;
    /// The top-level entries of the menu bar of the application running as `processId`.
    /// Fails with the reason when the menus cannot be read.
    virtual Expected<MenuEntryList> menuBar(qint64 processId) = 0;
};

} // namespace Tessaline
