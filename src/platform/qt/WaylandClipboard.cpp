// SPDX-License-Identifier: MIT
#include "platform/qt/WaylandClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QWindow>

namespace Tessaline {

WaylandClipboard::WaylandClipboard(QObject* parent) : QObject(parent)
{
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &WaylandClipboard::remember);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &WaylandClipboard::remember);
    remember();
}

std::optional<QString> WaylandClipboard::liveText()
{
    const QMimeData* data = QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
    if (!data || !data->hasText())
        return std::nullopt;
    return data->text();
}

void WaylandClipboard::remember()
{
    // Losing the focus empties the clipboard Tessaline sees; keep what it saw before.
    if (QGuiApplication::focusWindow())
        m_seen = liveText();
}

std::optional<QString> WaylandClipboard::text() const
{
    return QGuiApplication::focusWindow() ? liveText() : m_seen;
}

void WaylandClipboard::clear()
{
    QGuiApplication::clipboard()->clear(QClipboard::Clipboard);
    m_seen.reset();
}

void WaylandClipboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
    m_seen = text;
}

} // namespace Tessaline
