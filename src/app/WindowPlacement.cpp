// SPDX-License-Identifier: MIT
#include "WindowPlacement.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <cmath>

namespace Tessaline {

QPoint WindowPlacement::centeredOrigin(const QRectF& area, const QSizeF& size)
{
    // std::round rounds halves away from zero.
    return QPoint(static_cast<int>(std::round(area.center().x() - size.width() * 0.5)),
                  static_cast<int>(std::round(area.center().y() - size.height() * 0.5)));
}

QRectF WindowPlacement::areaUnderMouse()
{
    const QPoint mouse = QCursor::pos();
    for (QScreen* screen : QGuiApplication::screens()) {
        if (screen->geometry().contains(mouse))
            return screen->availableGeometry();
    }
    if (QScreen* primary = QGuiApplication::primaryScreen())
        return primary->availableGeometry();
    return QRectF(0, 0, 1440, 900);
}

void WindowPlacement::centerUnderMouse(QWindow& window)
{
    window.setPosition(centeredOrigin(areaUnderMouse(), window.size()));
}

void WindowPlacement::centerOnPrimaryScreen(QWindow& window)
{
    if (QScreen* primary = QGuiApplication::primaryScreen())
        window.setPosition(centeredOrigin(primary->availableGeometry(), window.size()));
}

} // namespace Tessaline
