// SPDX-License-Identifier: MIT
#include "helpers/TextHelperAction.h"

#include <QHashFunctions>

namespace Tessaline {

namespace TextHelperActions {

QList<TextHelperAction> all()
{
    return {TextHelperAction::Bullet, TextHelperAction::Checklist, TextHelperAction::Divider,
            TextHelperAction::PastePlainText};
}

QString rawValue(TextHelperAction action)
{
    switch (action) {
    case TextHelperAction::Bullet:
        return QStringLiteral("bullet");
    case TextHelperAction::Checklist:
        return QStringLiteral("checklist");
    case TextHelperAction::Divider:
        return QStringLiteral("divider");
    case TextHelperAction::PastePlainText:
        return QStringLiteral("pastePlainText");
    }
    Q_UNREACHABLE();
    return QString();
}

std::optional<TextHelperAction> fromRawValue(const QString& rawValue)
{
    for (const TextHelperAction action : all()) {
        if (TextHelperActions::rawValue(action) == rawValue)
            return action;
    }
    return std::nullopt;
}

QString title(TextHelperAction action)
{
    switch (action) {
    case TextHelperAction::Bullet:
        return QStringLiteral("Insert Bullet");
    case TextHelperAction::Checklist:
        return QStringLiteral("Insert Checklist");
    case TextHelperAction::Divider:
        return QStringLiteral("Insert Divider");
    case TextHelperAction::PastePlainText:
        return QStringLiteral("Paste Plain Text");
    }
    Q_UNREACHABLE();
    return QString();
}

QString description(TextHelperAction action)
{
    switch (action) {
    case TextHelperAction::Bullet:
        return QStringLiteral("Drop a clean bullet into any text field.");
    case TextHelperAction::Checklist:
        return QStringLiteral("Start a simple checkbox line without hunting for formatting.");
    case TextHelperAction::Divider:
        return QStringLiteral("Add a lightweight divider for quick notes.");
    case TextHelperAction::PastePlainText:
        return QStringLiteral("Paste clipboard text without rich formatting.");
    }
    Q_UNREACHABLE();
    return QString();
}

std::optional<QString> snippet(TextHelperAction action)
{
    switch (action) {
    case TextHelperAction::Bullet:
        return QStringLiteral("\u2022 ");
    case TextHelperAction::Checklist:
        return QStringLiteral("\u2610 ");
    case TextHelperAction::Divider:
        return QLatin1Char('\n') + QString(30, QLatin1Char('-')) + QLatin1Char('\n');
    case TextHelperAction::PastePlainText:
        return std::nullopt;
    }
    Q_UNREACHABLE();
    return std::nullopt;
}

} // namespace TextHelperActions

size_t qHash(TextHelperAction action, size_t seed) noexcept
{
    return ::qHash(static_cast<int>(action), seed);
}

} // namespace Tessaline
