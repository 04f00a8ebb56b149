// SPDX-License-Identifier: MIT
#include "FloatingPanel.h"

#include <QMouseEvent>
#include <QQuickItem>

namespace Tessaline {
namespace {

// Whether `item` or one of its descendants takes left-button presses at `scenePoint`: a row,
// a button, the list or the search field. Anywhere else is the panel's background.
bool takesPresses(const QQuickItem* item, const QPointF& scenePoint)
{
    if (!item || !item->isVisible() || !item->isEnabled())
        return false;
    const QList<QQuickItem*> children = item->childItems();
    for (const QQuickItem* child : children) {
        if (takesPresses(child, scenePoint))
            return true;
    }
    return item->acceptedMouseButtons().testFlag(Qt::LeftButton) &&
           item->contains(item->mapFromScene(scenePoint));
}

} // namespace

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

void FloatingPanel::mousePressEvent(QMouseEvent* event)
{
    m_dragOffset.reset();
    const bool onBackground =
        event->button() == Qt::LeftButton && !takesPresses(contentItem(), event->scenePosition());
    QQuickView::mousePressEvent(event);
    if (!onBackground)
        return;
    // The panel moves itself by the pointer's travel rather than handing the move to the window
    // manager: a manager's move takes the pointer and the focus for its duration, and the HUD
    // closes as soon as the application stops being active.
    m_dragOffset = position() - event->globalPosition().toPoint();
    event->accept();
}

void FloatingPanel::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragOffset && event->buttons().testFlag(Qt::LeftButton)) {
        setPosition(event->globalPosition().toPoint() + *m_dragOffset);
        event->accept();
        return;
    }
    m_dragOffset.reset();
    QQuickView::mouseMoveEvent(event);
}

void FloatingPanel::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_dragOffset && event->button() == Qt::LeftButton) {
        m_dragOffset.reset();
        event->accept();
        return;
    }
    QQuickView::mouseReleaseEvent(event);
}

} // namespace Tessaline
