// SPDX-License-Identifier: MIT
#include "FloatingPanel.h"

namespace Tessaline {

FloatingPanel::FloatingPanel(QQmlEngine* engine, QWindow* parent) : QQuickView(engine, parent)
{
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setTitle(QStringLiteral("Tessaline"));
    setResizeMode(QQuickView::SizeRootObjectToView);
    setColor(Qt::transparent);
    // The panel is not resizable; a tiling compositor also floats a window of fixed size
    // instead of tiling it.
    setMinimumSize(QSize(kWidth, kHeight));
    setMaximumSize(QSize(kWidth, kHeight));
    resize(kWidth, kHeight);
}

} // namespace Tessaline
