// SPDX-License-Identifier: MIT
#include "coach/CoachTip.h"

namespace Tessaline {
namespace {

using Action = DesktopKeySettings::Action;

// The desktop's preferred binding of `action` as text; empty when it has none.
QString firstBinding(const DesktopKeySettings& keys, Action action)
{
    const QList<DesktopKeyBinding> bindings = keys.bindings(action);
    return bindings.isEmpty() ? QString() : bindings.first().text();
}

// The sentence of a smaller-step tip: both directions when the desktop binds both, else the
// one it binds.
QString stepMessage(const QString& up, const QString& down, const QString& what)
{
    if (!up.isEmpty() && !down.isEmpty())
        return QStringLiteral("%1 and %2 change the %3 in smaller steps.").arg(up, down, what);
    if (!up.isEmpty())
        return QStringLiteral("%1 raises the %2 in a smaller step.").arg(up, what);
    return QStringLiteral("%1 lowers the %2 in a smaller step.").arg(down, what);
}

QString screenshotMessage(const DesktopKeySettings& keys)
{
    const QString region = firstBinding(keys, Action::ScreenshotRegion);
    const QString window = firstBinding(keys, Action::ScreenshotWindow);
    if (!region.isEmpty() && !window.isEmpty())
        return QStringLiteral("%1 lets you pick a region to capture; %2 captures the active "
                              "window.")
            .arg(region, window);
    if (!region.isEmpty())
        return QStringLiteral("%1 lets you pick a region of the screen to capture.").arg(region);
    if (!window.isEmpty())
        return QStringLiteral("%1 captures just the active window.").arg(window);
    return {};
}

QString volumeMessage(const DesktopKeySettings& keys)
{
    const QString up = firstBinding(keys, Action::VolumeUpPrecise);
    const QString down = firstBinding(keys, Action::VolumeDownPrecise);
    if (up.isEmpty() && down.isEmpty())
        return {};
    return stepMessage(up, down, QStringLiteral("volume"));
}

QString brightnessMessage(const DesktopKeySettings& keys)
{
    const QString up = firstBinding(keys, Action::BrightnessUpPrecise);
    const QString down = firstBinding(keys, Action::BrightnessDownPrecise);
    if (up.isEmpty() && down.isEmpty())
        return {};
    return stepMessage(up, down, QStringLiteral("brightness"));
}

QString mediaMessage(const DesktopKeySettings& keys)
{
    // The desktop itself answers the media keys and hands them to the player, wherever its
    // window is; without such a binding only the player in front would see them.
    for (const Action action : {Action::MediaPlay, Action::MediaNext, Action::MediaPrevious}) {
        if (!keys.bindings(action).isEmpty())
            return QStringLiteral("Play/pause and skip usually work even when the player is in "
                                  "the background.");
    }
    return {};
}

} // namespace

QList<CoachTip::Kind> CoachTip::allKinds()
{
    return {Kind::ScreenshotToolbar, Kind::VolumePrecision, Kind::BrightnessPrecision,
            Kind::MediaKeys};
}

QString CoachTip::idOf(Kind kind)
{
    switch (kind) {
    case Kind::ScreenshotToolbar:
        return QStringLiteral("screenshot-toolbar");
    case Kind::VolumePrecision:
        return QStringLiteral("volume-precision");
    case Kind::BrightnessPrecision:
        return QStringLiteral("brightness-precision");
    case Kind::MediaKeys:
        return QStringLiteral("media-keys");
    }
    return {};
}

QString CoachTip::titleOf(Kind kind)
{
    switch (kind) {
    case Kind::ScreenshotToolbar:
        return QStringLiteral("Screenshot toolbar");
    case Kind::VolumePrecision:
        return QStringLiteral("Tiny volume steps");
    case Kind::BrightnessPrecision:
        return QStringLiteral("Tiny brightness steps");
    case Kind::MediaKeys:
        return QStringLiteral("Media keys are global");
    }
    return {};
}

std::optional<CoachTip> CoachTip::compose(Kind kind, const DesktopKeySettings& keys)
{
    QString message;
    switch (kind) {
    case Kind::ScreenshotToolbar:
        message = screenshotMessage(keys);
        break;
    case Kind::VolumePrecision:
        message = volumeMessage(keys);
        break;
    case Kind::BrightnessPrecision:
        message = brightnessMessage(keys);
        break;
    case Kind::MediaKeys:
        message = mediaMessage(keys);
        break;
    }
    if (message.isEmpty())
        return std::nullopt;
    return CoachTip{idOf(kind), titleOf(kind), message};
}

size_t qHash(const CoachTip& tip, size_t seed) noexcept
{
    return qHashMulti(seed, tip.id, tip.title, tip.message);
}

} // namespace Tessaline
