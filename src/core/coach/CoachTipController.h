// SPDX-License-Identifier: MIT
#pragma once

#include "coach/CoachTip.h"
#include "coach/CoachTipPresenter.h"
#include "platform/SystemKeyMonitor.h"

#include <QObject>
#include <QRect>

#include <optional>

namespace Tessaline {

class Clock;
class DefaultsStore;
class DesktopKeySettings;
class Scheduler;

/// Shows a coach tip in the bottom-right corner of the screen when the user presses the volume,
/// brightness, media or Print keys: each tip at most once every eight hours, never again after
/// "Don't show again", for nine seconds at most, and only when the desktop really has a
/// binding the tip can name.
class CoachTipController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool monitoring READ isMonitoring NOTIFY monitoringChanged)
    Q_PROPERTY(QString shownTipId READ shownTipId NOTIFY shownTipIdChanged)
    Q_PROPERTY(QString unavailableReason READ unavailableReason NOTIFY unavailableReasonChanged)

public:
    /// Seconds a tip waits after it was shown before it may show again (eight hours).
    static constexpr double minimumRepeatInterval = 28800.0;
    /// How long a panel stays on screen unless closed earlier.
    static constexpr int panelLifetimeMs = 9000;
    static constexpr int panelWidth = 360;
    static constexpr int panelHeight = 132;
    /// Distance of the panel from the right and bottom edges of the screen.
    static constexpr int panelMargin = 22;

    CoachTipController(DefaultsStore& defaults, const Clock& clock, Scheduler& scheduler,
                       SystemKeyMonitor& monitor, CoachTipPresenter& presenter,
                       const DesktopKeySettings& keySettings, QObject* parent = nullptr);
    ~CoachTipController() override;

    /// Installs the key monitor unless it is installed already.
    void start();
    /// Removes the key monitor and takes the tip panel off screen.
    void stop();

    bool isMonitoring() const { return m_monitoring; }
    /// Why the tips could not start, in one line for the user; empty while they run or when
    /// the key monitor gave no reason.
    QString unavailableReason() const { return m_unavailableReason; }
    /// The id of the tip whose panel is on screen; empty when there is none.
    QString shownTipId() const { return m_panel ? m_shownTipId : QString(); }
    /// The panel on screen, if any.
    std::optional<CoachTipPresenter::PanelId> panel() const { return m_panel; }

    /// Where a panel goes: the bottom-right corner of `availableGeometry` (or of a 1440 x 900
    /// screen when there is none), `panelMargin` in from both edges.
    static QRect panelFrame(const std::optional<QRect>& availableGeometry);

    static QString dismissedKey(const QString& tipId);
    static QString lastShownKey(const QString& tipId);

signals:
    void monitoringChanged(bool monitoring);
    void shownTipIdChanged(const QString& tipId);
    void unavailableReasonChanged(const QString& reason);
    /// A tip passed its checks and its panel was put on screen.
    void tipShown(const QString& tipId);

private:
    void route(const SystemKeyEvent& event);
    void handleSystemDefined(const SystemKeyEvent& event);
    void showIfAllowed(CoachTip::Kind kind);
    void show(const CoachTip& tip);
    void closePanel();
    void setPanel(std::optional<CoachTipPresenter::PanelId> panel, const QString& tipId);

    DefaultsStore& m_defaults;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    SystemKeyMonitor& m_monitor;
    CoachTipPresenter& m_presenter;
    const DesktopKeySettings& m_keySettings;
    bool m_monitoring = false;
    QString m_unavailableReason;
    std::optional<CoachTipPresenter::PanelId> m_panel;
    QString m_shownTipId;
};

} // namespace Tessaline
