// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickView>

namespace Tessaline {

/// The HUD's window: frameless, above other windows, 720 × 560, and able to take keyboard focus
/// for its search field and list navigation although it has no title bar. A new panel is built
/// for every showing.
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

private:
    bool m_hasBeenActive = false;
};

} // namespace Tessaline
