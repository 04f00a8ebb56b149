// SPDX-License-Identifier: MIT
#include "coach/CoachTip.h"

namespace Tessaline {

CoachTip CoachTip::screenshotToolbar()
{
    return {QStringLiteral("screenshot-toolbar"), QStringLiteral("Screenshot toolbar"),
            QStringLiteral("Cmd + Shift + 5 opens the full screenshot panel, including "
                           "recording controls.")};
}

CoachTip CoachTip::volumePrecision()
{
    return {QStringLiteral("volume-precision"), QStringLiteral("Tiny volume steps"),
            QStringLiteral("Hold Option + Shift while pressing volume up/down for quarter-step "
                           "changes.")};
}

CoachTip CoachTip::brightnessPrecision()
{
    return {QStringLiteral("brightness-precision"), QStringLiteral("Tiny brightness steps"),
            QStringLiteral("Hold Option + Shift while pressing brightness up/down for "
                           "quarter-step changes.")};
}

CoachTip CoachTip::mediaKeys()
{
    return {QStringLiteral("media-keys"), QStringLiteral("Media keys are global"),
            QStringLiteral("Play/pause and skip usually work even when Music or Spotify is not "
                           "the front app.")};
}

QList<CoachTip> CoachTip::all()
{
    return {screenshotToolbar(), volumePrecision(), brightnessPrecision(), mediaKeys()};
}

size_t qHash(const CoachTip& tip, size_t seed) noexcept
{
    return qHashMulti(seed, tip.id, tip.title, tip.message);
}

} // namespace Tessaline
