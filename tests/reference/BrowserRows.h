// SPDX-License-Identifier: MIT
#pragma once

#include "vault/BrowserGroup.h"
#include "vault/VaultShortcutRow.h"

#include <QList>
#include <QString>

namespace Tessaline {

/// The browser's filtering and grouping over the rows of VaultStore::allShortcutRows(), done
/// the plain way at every call: what VaultBrowserIndex must give, and what it is measured
/// against.
namespace BrowserRows {

/// The rows that the trimmed `query` finds by app name, bundle id or the shortcut's own
/// fields, in their given order; every row for an empty query. Scores only filter here.
QList<VaultShortcutRow> rows(const QList<VaultShortcutRow>& allRows, const QString& query);

/// Whether the trimmed, non-empty `query` finds `row`.
bool matches(const QString& trimmedQuery, const VaultShortcutRow& row);

/// Groups rows by exact app name: each group's rows by name (case-insensitive, stable), the
/// global group first and the others by name.
QList<BrowserGroup> groupedRows(const QList<VaultShortcutRow>& rows);

} // namespace BrowserRows
} // namespace Tessaline
