// SPDX-License-Identifier: MIT
#include "FloatingPanel.h"

namespace Tessaline {

FloatingPanel::FloatingPanel(QQmlEngine* engine, QWindow* parent) : QQuickView(engine, parent)
{
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setTitle(QStringLiteral("Tessaline"));
    setResizeMode(QQuickView::SizeRootObjectToView);
    setColor(Qt::transparent);
    resize(kWidth, kHeight);
}

} // namespace Tessaline
