// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutItem.h"

#include <QList>
#include <QString>

namespace Tessaline {

/// A titled group of shortcuts as the cheat sheet shows it; built on demand, never stored.
struct ShortcutSection
{
    QString title;
    QList<ShortcutItem> shortcuts;

    /// Sections are identified by their title.
    QString id() const { return title; }

    friend bool operator==(const ShortcutSection&, const ShortcutSection&) = default;
};

} // namespace Tessaline
