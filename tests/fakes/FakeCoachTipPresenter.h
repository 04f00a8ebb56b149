// SPDX-License-Identifier: MIT
#pragma once

#include "coach/CoachTipPresenter.h"

#include <QList>
#include <QMap>

namespace Tessaline::Testing {

/// Keeps the panels a controller shows in memory, so that a test can see which are on screen
/// and press their buttons.
class FakeCoachTipPresenter final : public CoachTipPresenter
{
public:
    struct Panel
    {
        PanelId id = 0;
        CoachTip tip;
        QRect frame;
        std::function<void()> onDismiss;
        std::function<void()> onNeverShow;
        bool visible = true;
    };

    std::optional<QRect> screen = QRect(0, 0, 1280, 800);
    /// Every panel ever shown, in order.
    QList<Panel> panels;
    /// Called inside showPanel, before the panel counts as shown.
    std::function<void(const CoachTip&)> onShow;

    std::optional<QRect> availableGeometry() const override { return screen; }

    PanelId showPanel(const CoachTip& tip, const QRect& frame, std::function<void()> onDismiss,
                      std::function<void()> onNeverShow) override
    {
        if (onShow)
            onShow(tip);
        const PanelId id = m_nextId++;
        panels.append(Panel{id, tip, frame, std::move(onDismiss), std::move(onNeverShow), true});
        return id;
    }

    void hidePanel(PanelId id) override
    {
        for (Panel& panel : panels) {
            if (panel.id == id)
                panel.visible = false;
        }
    }

    QList<Panel> visiblePanels() const
    {
        QList<Panel> result;
        for (const Panel& panel : panels) {
            if (panel.visible)
                result.append(panel);
        }
        return result;
    }

    /// The tip ids of every panel ever shown, in order.
    QStringList shownTipIds() const
    {
        QStringList ids;
        for (const Panel& panel : panels)
            ids.append(panel.tip.id);
        return ids;
    }

private:
    PanelId m_nextId = 1;
};

} // namespace Tessaline::Testing
