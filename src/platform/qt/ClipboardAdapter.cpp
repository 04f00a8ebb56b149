// SPDX-License-Identifier: MIT
#include "platform/qt/ClipboardAdapter.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace Tessaline {

std::optional<QString> ClipboardAdapter::text() const
{
    const QMimeData* data = QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
    if (!data || !data->hasText())
        return std::nullopt;
    return data->text();
}

void ClipboardAdapter::clear()
{
    QGuiApplication::clipboard()->clear(QClipboard::Clipboard);
}

void ClipboardAdapter::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

} // namespace Tessaline
