// SPDX-License-Identifier: MIT
#pragma once

#include "vault/AppShortcutPack.h"
#include "vault/ShortcutItem.h"

#include <QList>
#include <QMetaType>
#include <QString>

#include <optional>

namespace Tessaline {

/// The whole vault: the shortcuts that apply everywhere and one pack per application.
struct VaultData
{
    /// Free text kept in the file under "_comment"; never shown.
    std::optional<QString> comment;
    QList<ShortcutItem> global;
    QList<AppShortcutPack> apps;

    /// No comment and two empty lists: the store's value before anything is loaded.
    static VaultData empty() { return {}; }

    friend bool operator==(const VaultData&, const VaultData&) = default;
};

} // namespace Tessaline

Q_DECLARE_METATYPE(Tessaline::VaultData)
