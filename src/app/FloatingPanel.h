// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QQuickView>

#include <optional>

namespace Tessaline {

/// The HUD's window: frameless, above other windows, 720 × 560, and able to take keyboard focus
/// for its search field and list navigation although it has no title bar. A new panel is built
/// for every showing. Dragging its background (any place where no control takes the press)
/// moves it.
class FloatingPanel : public QQuickView
{
    Q_OBJECT
public:
    static constexpr int kWidth = 720;
    static constexpr int kHeight = 560;

    FloatingPanel(QQmlEngine* engine, QWindow* parent = nullptr);

    /// Whether the panel has had the keyboard focus since it was shown. Until then, news that
    /// Tessaline lost the focus is about the windows before it.
    bool hasBeenActive() const { return m_hasBeenActive; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool m_hasBeenActive = false;
    /// While the background is dragged: the window's position minus the pointer's position on
    /// the screen, kept as the pointer moves.
    std::optional<QPoint> m_dragOffset;
};

} // namespace Tessaline
