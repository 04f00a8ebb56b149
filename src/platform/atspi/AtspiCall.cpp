// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiCall.h"

#include "platform/atspi/AtspiWalkState.h"

#include <glib.h>

namespace Tessaline::AtspiCall {

bool isTimeout(const GError* error)
{
    if (!error || !error->message)
        return false;
    const QString message = QString::fromUtf8(error->message);
    return message.contains(QStringLiteral("timeout"), Qt::CaseInsensitive) ||
           message.contains(QStringLiteral("timed out"), Qt::CaseInsensitive) ||
           message.contains(QStringLiteral("NoReply"), Qt::CaseInsensitive) ||
           message.contains(QStringLiteral("receive a reply"), Qt::CaseInsensitive);
}

bool check(GError*& error, AtspiWalkState& state)
{
    if (!error)
        return false;
    if (isTimeout(error))
        state.failed = true;
    g_clear_error(&error);
    return true;
}

QString takeString(char* text)
{
    if (!text)
        return QString();
    QString result = QString::fromUtf8(text);
    g_free(text);
    return result;
}

} // namespace Tessaline::AtspiCall
