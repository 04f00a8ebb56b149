// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeySettings.h"

#include <QHashFunctions>
#include <QList>
#include <QString>

#include <optional>

namespace Tessaline {

/// One passive hint shown when the user presses certain system keys. `id` is the stable key
/// used in the user-defaults keys. The message names only key combinations the running desktop
/// really has bound, so it is composed from the desktop's settings each time a tip is shown.
struct CoachTip
{
    enum class Kind
    {
        /// Shown on the Print key: names the region and window capture bindings.
        ScreenshotToolbar,
        /// Shown on the volume up and down keys: names the smaller-step bindings.
        VolumePrecision,
        /// Shown on the brightness up and down keys: names the smaller-step bindings.
        BrightnessPrecision,
        /// Shown on the play, next and previous keys when the desktop binds them globally.
        MediaKeys,
    };

    QString id;
    QString title;
    QString message;

    /// The four kinds in the order above.
    static QList<Kind> allKinds();
    static QString idOf(Kind kind);
    static QString titleOf(Kind kind);
    /// The tip as the desktop's bindings make it true; absent when the desktop has no binding
    /// the tip could name.
    static std::optional<CoachTip> compose(Kind kind, const DesktopKeySettings& keys);

    friend bool operator==(const CoachTip&, const CoachTip&) = default;
};

size_t qHash(const CoachTip& tip, size_t seed = 0) noexcept;

} // namespace Tessaline
