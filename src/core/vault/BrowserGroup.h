// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultShortcutRow.h"

#include <QList>
#include <QString>

namespace Tessaline {

/// One app's rows in the all-shortcuts browser.
struct BrowserGroup
{
    QString name;
    QList<VaultShortcutRow> rows;

    friend bool operator==(const BrowserGroup&, const BrowserGroup&) = default;
};

} // namespace Tessaline
