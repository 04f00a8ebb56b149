// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QString>

#include <optional>

namespace Tessaline {

/// One app shortcut whose chord does not do what the vault says: another item of the same
/// app's pack is bound to it too, or the desktop takes the chord before the app sees it.
struct ChordConflict
{
    enum class Kind
    {
        SameApp,
        DesktopTakes,
    };

    Kind kind = Kind::SameApp;
    QString appName;
    std::optional<QString> bundleID;
    /// The app's item that is affected.
    ShortcutItem item;
    /// The other item's name, or the name of the desktop binding.
    QString other;
    /// Where the desktop binding comes from (empty for SameApp).
    QString otherSource;

    /// Why, as the user reads it: "Also bound to “Other” in this app" or "The desktop takes
    /// this key: Other".
    QString reason() const;

    bool operator==(const ChordConflict&) const = default;
};

} // namespace Tessaline
