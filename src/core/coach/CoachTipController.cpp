// SPDX-License-Identifier: MIT
#include "coach/CoachTipController.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "settings/DefaultsStore.h"

#include <QPointer>

namespace Tessaline {
namespace {

// The fallback screen when the desktop reports none.
constexpr QRect kFallbackScreen(0, 0, 1440, 900);

// Key types above this one are never auxiliary control buttons that a tip cares about.
constexpr int kHighestKeyType = 18;

// The key that starts the desktop's screenshot tools, whatever modifiers are held with it.
constexpr QLatin1String kPrintKeyName("Print");

} // namespace

CoachTipController::CoachTipController(DefaultsStore& defaults, const Clock& clock,
                                       Scheduler& scheduler, SystemKeyMonitor& monitor,
                                       CoachTipPresenter& presenter,
                                       const DesktopKeySettings& keySettings, QObject* parent)
    : QObject(parent), m_defaults(defaults), m_clock(clock), m_scheduler(scheduler),
      m_monitor(monitor), m_presenter(presenter), m_keySettings(keySettings)
{}

CoachTipController::~CoachTipController()
{
    // The monitor and the panel hold callbacks into this object: take both down with it.
    if (m_monitoring)
        m_monitor.stop();
    if (m_panel)
        m_presenter.hidePanel(*m_panel);
}

QString CoachTipController::dismissedKey(const QString& tipId)
{
    return QStringLiteral("CoachTip.dismissed.") + tipId;
}

QString CoachTipController::lastShownKey(const QString& tipId)
{
    return QStringLiteral("CoachTip.lastShown.") + tipId;
}

QRect CoachTipController::panelFrame(const std::optional<QRect>& availableGeometry)
{
    const QRect screen = availableGeometry.value_or(kFallbackScreen);
    // Screen coordinates grow downwards, so the bottom edge is the larger y.
    const int x = screen.x() + screen.width() - panelWidth - panelMargin;
    const int y = screen.y() + screen.height() - panelHeight - panelMargin;
    return QRect(x, y, panelWidth, panelHeight);
}

void CoachTipController::start()
{
    if (m_monitoring)
        return;
    // The monitor may call from wherever its events arrive; every decision is made later on
    // the main thread, and only while this controller still exists.
    QPointer<CoachTipController> weakSelf(this);
    const bool started = m_monitor.start([weakSelf](const SystemKeyEvent& event) {
        if (!weakSelf)
            return;
        weakSelf->m_scheduler.schedule(0, weakSelf, [weakSelf, event] {
            if (weakSelf)
                weakSelf->route(event);
        });
    });
    const QString reason = started ? QString() : m_monitor.unavailableReason();
    if (reason != m_unavailableReason) {
        m_unavailableReason = reason;
        emit unavailableReasonChanged(reason);
    }
    if (!started)
        return;
    m_monitoring = true;
    emit monitoringChanged(true);
}

void CoachTipController::stop()
{
    if (m_monitoring) {
        m_monitor.stop();
        m_monitoring = false;
        emit monitoringChanged(false);
    }
    closePanel();
}

void CoachTipController::route(const SystemKeyEvent& event)
{
    switch (event.type) {
    case SystemKeyEvent::Type::SystemDefined:
        handleSystemDefined(event);
        return;
    case SystemKeyEvent::Type::KeyDown:
        // Modifiers are not examined: Print, Shift+Print and Alt+Print all start a screenshot.
        if (event.keyName == kPrintKeyName)
            showIfAllowed(CoachTip::Kind::ScreenshotToolbar);
        return;
    }
}

void CoachTipController::handleSystemDefined(const SystemKeyEvent& event)
{
    if (event.subtype != SystemKeyEvent::kAuxControlButtons)
        return;
    const auto data = static_cast<quint32>(event.data1);
    const int keyType = static_cast<int>(data >> 16);
    const int keyState = static_cast<int>((data >> 8) & 0xFF);
    if (keyState != SystemKeyEvent::kKeyStateDown || keyType > kHighestKeyType)
        return;
    // Modifiers are not examined: the tip also shows when the smaller-step modifiers are
    // already held.
    switch (keyType) {
    case SystemKeyEvent::Play:
    case SystemKeyEvent::Next:
    case SystemKeyEvent::Previous:
        showIfAllowed(CoachTip::Kind::MediaKeys);
        return;
    case SystemKeyEvent::SoundUp:
    case SystemKeyEvent::SoundDown:
        showIfAllowed(CoachTip::Kind::VolumePrecision);
        return;
    case SystemKeyEvent::BrightnessUp:
    case SystemKeyEvent::BrightnessDown:
        showIfAllowed(CoachTip::Kind::BrightnessPrecision);
        return;
    default:
        return;
    }
}

void CoachTipController::showIfAllowed(CoachTip::Kind kind)
{
    const QString tipId = CoachTip::idOf(kind);
    if (m_defaults.boolValue(dismissedKey(tipId)).value_or(false))
        return;
    const double now = m_clock.now();
    const double lastShown = m_defaults.doubleValue(lastShownKey(tipId)).value_or(0.0);
    // Strict: exactly eight hours after the last showing the tip may show again.
    if (lastShown > 0 && now - lastShown < minimumRepeatInterval)
        return;
    // The desktop's bindings are read now, so the tip names what is bound at this moment. A
    // desktop without a binding to name gets no tip, and nothing is recorded as shown.
    const std::optional<CoachTip> tip = CoachTip::compose(kind, m_keySettings);
    if (!tip)
        return;
    // Recorded before the panel appears, so a tip closed at once still waits eight hours.
    m_defaults.setDouble(lastShownKey(tipId), now);
    show(*tip);
}

void CoachTipController::show(const CoachTip& tip)
{
    // A new tip replaces the one on screen.
    if (m_panel) {
        m_presenter.hidePanel(*m_panel);
        setPanel(std::nullopt, QString());
    }

    QPointer<CoachTipController> weakSelf(this);
    const QString tipId = tip.id;
    const CoachTipPresenter::PanelId panel = m_presenter.showPanel(
        tip, panelFrame(m_presenter.availableGeometry()),
        [weakSelf] {
            if (weakSelf)
                weakSelf->closePanel();
        },
        [weakSelf, tipId] {
            if (!weakSelf)
                return;
            weakSelf->m_defaults.setBool(dismissedKey(tipId), true);
            weakSelf->closePanel();
        });
    setPanel(panel, tipId);
    emit tipShown(tipId);

    // Closes this very panel only: if another tip replaced it meanwhile, nothing happens.
    m_scheduler.schedule(panelLifetimeMs, this, [weakSelf, panel] {
        if (weakSelf && weakSelf->m_panel == panel)
            weakSelf->closePanel();
    });
}

void CoachTipController::closePanel()
{
    if (!m_panel)
        return;
    m_presenter.hidePanel(*m_panel);
    setPanel(std::nullopt, QString());
}

void CoachTipController::setPanel(std::optional<CoachTipPresenter::PanelId> panel,
                                  const QString& tipId)
{
    const QString before = shownTipId();
    m_panel = panel;
    m_shownTipId = tipId;
    if (shownTipId() != before)
        emit shownTipIdChanged(shownTipId());
}

} // namespace Tessaline
