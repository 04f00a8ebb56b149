// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QList>
#include <QString>

#include <optional>

namespace Tessaline {

/// The shortcuts of one application, keyed by its bundle id (the desktop-file id) when known
/// and by its display name otherwise.
struct AppShortcutPack
{
    QString name;
    std::optional<QString> bundleID;
    QList<ShortcutItem> shortcuts;

    /// The bundle id when present, otherwise the name.
    QString id() const { return bundleID.value_or(name); }

    friend bool operator==(const AppShortcutPack&, const AppShortcutPack&) = default;
};

size_t qHash(const AppShortcutPack& pack, size_t seed = 0) noexcept;

} // namespace Tessaline
