// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRectF>
#include <QSizeF>

class QWindow;

namespace Tessaline {

/// Where Tessaline's windows go on screen: centred in a screen's available area.
class WindowPlacement
{
public:
    WindowPlacement() = delete;

    /// Where a window of `size` goes to stand in the middle of `area`, rounded half away from
    /// zero.
    static QPoint centeredOrigin(const QRectF& area, const QSizeF& size);
    /// The available area of the screen under the mouse, else of the primary screen, else
    /// 1440 × 900 at the origin.
    static QRectF areaUnderMouse();
    /// Places a window in the middle of the screen under the mouse (the HUD).
    static void centerUnderMouse(QWindow& window);
    /// Places a window in the middle of the primary screen (settings, browser, welcome); leaves
    /// it where it is when there is no screen.
    static void centerOnPrimaryScreen(QWindow& window);
};

} // namespace Tessaline
