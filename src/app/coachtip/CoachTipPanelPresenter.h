// SPDX-License-Identifier: MIT
#pragma once

#include "coach/CoachTipPresenter.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>

#include <map>

class QQuickView;

namespace Tessaline {

/// Shows each coach tip in its own small window hosting CoachTipView: frameless, above other
/// windows, never taking the keyboard focus or activating Tessaline.
class CoachTipPanelPresenter final : public QObject, public CoachTipPresenter
{
    Q_OBJECT

public:
    /// The freedesktop icon tried first for the lightbulb; a bundled drawing stands in when
    /// the icon theme has none.
    static constexpr auto kSymbolIconName = "help-hint";

    explicit CoachTipPanelPresenter(QObject* parent = nullptr);
    ~CoachTipPanelPresenter() override;

    std::optional<QRect> availableGeometry() const override;
    PanelId showPanel(const CoachTip& tip, const QRect& frame, std::function<void()> onDismiss,
                      std::function<void()> onNeverShow) override;
    void hidePanel(PanelId panel) override;

    /// The window of a panel on screen, or null.
    QQuickView* window(PanelId panel) const;

private slots:
    void panelDismissed();
    void panelNeverShow();

private:
    struct Panel
    {
        QPointer<QQuickView> window;
        std::function<void()> onDismiss;
        std::function<void()> onNeverShow;
    };

    std::optional<PanelId> panelOf(const QObject* root) const;

    QQmlEngine m_engine;
    std::map<PanelId, Panel> m_panels;
    PanelId m_nextId = 1;
};

} // namespace Tessaline
