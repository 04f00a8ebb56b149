// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace Tessaline {

/// The four text helpers, in the order they are offered.
enum class TextHelperAction
{
    Bullet,
    Checklist,
    Divider,
    PastePlainText,
};

namespace TextHelperActions {

/// Every action, in order.
QList<TextHelperAction> all();
/// "bullet", "checklist", "divider" or "pastePlainText"; also the action's id.
QString rawValue(TextHelperAction action);
/// The action with exactly this raw value (case-sensitive); none for any other text.
std::optional<TextHelperAction> fromRawValue(const QString& rawValue);
/// The menu and button title, e.g. "Insert Bullet".
QString title(TextHelperAction action);
/// The one-line description shown in the HUD's helper bar.
QString description(TextHelperAction action);
/// The fixed text a snippet action inserts; none for PastePlainText, which inserts the
/// clipboard's text.
std::optional<QString> snippet(TextHelperAction action);

} // namespace TextHelperActions

size_t qHash(TextHelperAction action, size_t seed = 0) noexcept;

} // namespace Tessaline
