// SPDX-License-Identifier: MIT
#pragma once

#include <QHashFunctions>
#include <QList>
#include <QString>

namespace Tessaline {

/// One passive hint shown when the user presses certain system keys. `id` is the stable key
/// used in the user-defaults keys.
struct CoachTip
{
    QString id;
    QString title;
    QString message;

    /// Shown on Super + Shift + 3 or 4.
    static CoachTip screenshotToolbar();
    /// Shown on the volume up and down keys.
    static CoachTip volumePrecision();
    /// Shown on the brightness up and down keys.
    static CoachTip brightnessPrecision();
    /// Shown on the play, next and previous keys.
    static CoachTip mediaKeys();
    /// The four tips in the order above.
    static QList<CoachTip> all();

    friend bool operator==(const CoachTip&, const CoachTip&) = default;
};

size_t qHash(const CoachTip& tip, size_t seed = 0) noexcept;

} // namespace Tessaline
