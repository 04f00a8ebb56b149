// SPDX-License-Identifier: MIT
#pragma once

#include "coach/CoachTipPresenter.h"

#include <QObject>
#include <QPointer>

#include <map>

class QQmlEngine;
class QQuickView;

namespace Tessaline {

/// Shows each coach tip in its own small window hosting CoachTipView: frameless, above other
/// windows, never taking the keyboard focus or activating Tessaline. The windows are built by
/// the application's QML engine, whose "symbol" images draw the lightbulb.
class CoachTipPanelPresenter final : public QObject, public CoachTipPresenter
{
    Q_OBJECT

public:
    explicit CoachTipPanelPresenter(QQmlEngine& engine, QObject* parent = nullptr);
    ~CoachTipPanelPresenter() override;

    std::optional<QRect> availableGeometry() const override;
    PanelId showPanel(const CoachTip& tip, const QRect& frame, std::function<void()> onDismiss,
                      std::function<void()> onNeverShow) override;
    void hidePanel(PanelId panel) override;

    /// The window of a panel on screen, or null.
    QQuickView* window(PanelId panel) const;

private:
    struct Panel
    {
        QPointer<QQuickView> window;
        std::function<void()> onDismiss;
        std::function<void()> onNeverShow;
    };

    /// Calls the panel's dismiss or never-show callback, if the panel is still on screen.
    void panelAnswered(PanelId id, std::function<void()> Panel::*callback);

    QQmlEngine& m_engine;
    std::map<PanelId, Panel> m_panels;
    PanelId m_nextId = 1;
};

} // namespace Tessaline
