// SPDX-License-Identifier: MIT
#include "FloatingPanel.h"

namespace Tessaline {

FloatingPanel::FloatingPanel(QQmlEngine* engine, QWindow* parent) : QQuickView(engine, parent)
{
    // An ordinary top-level window, not a tool window: the window manager takes a tool window
    // for a dialog of all of Tessaline's windows, and with the settings or browser window open
    // it gave the focus straight back to the app the user came from, which closed the HUD
    // before anyone could use it. The window hints keep the panel off the taskbar.
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setTitle(QStringLiteral("Tessaline"));
    setResizeMode(QQuickView::SizeRootObjectToView);
    setColor(Qt::transparent);
    // The panel is not resizable; a tiling compositor also floats a window of fixed size
    // instead of tiling it.
    setMinimumSize(QSize(kWidth, kHeight));
    setMaximumSize(QSize(kWidth, kHeight));
    resize(kWidth, kHeight);
    connect(this, &QWindow::activeChanged, this, [this] {
        if (isActive())
            m_hasBeenActive = true;
    });
}

} // namespace Tessaline
