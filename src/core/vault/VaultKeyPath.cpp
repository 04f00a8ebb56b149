// SPDX-License-Identifier: MIT
#include "vault/VaultKeyPath.h"

#include <QJsonParseError>

namespace Tessaline {

QString VaultKeyPath::toString() const
{
    QString text = parent ? parent->toString() : QString();
    if (index >= 0)
        return text + QLatin1Char('[') + QString::number(index) + QLatin1Char(']');
    if (!text.isEmpty())
        text += QLatin1Char('.');
    return text + key;
}

QString VaultKeyPath::problem(const char* problem) const
{
    const QString where = toString();
    return QStringLiteral("%1: %2").arg(where.isEmpty() ? QStringLiteral("the document") : where,
                                        QLatin1StringView(problem));
}

QString VaultKeyPath::syntaxError(const QJsonParseError& error)
{
    return QStringLiteral("syntax error at byte offset %1: %2")
        .arg(error.offset)
        .arg(error.errorString());
}

} // namespace Tessaline
