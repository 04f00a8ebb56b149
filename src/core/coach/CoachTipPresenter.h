// SPDX-License-Identifier: MIT
#pragma once

#include "coach/CoachTip.h"

#include <QRect>

#include <functional>
#include <optional>

namespace Tessaline {

/// Puts coach tip panels on screen. Each shown panel has its own id, so that a late request
/// for an earlier panel can never close a newer one.
class CoachTipPresenter
{
public:
    using PanelId = quint64;

    virtual ~CoachTipPresenter() = default;
    /// The usable area of the main screen (without panels and docks), absent without a screen.
    virtual std::optional<QRect> availableGeometry() const = 0;
    /// Shows a panel for `tip` at `frame` without taking focus or activating Tessaline.
    /// `onDismiss` runs for "Not now", `onNeverShow` for "Don't show again".
    virtual PanelId showPanel(const CoachTip& tip, const QRect& frame,
                              std::function<void()> onDismiss,
                              std::function<void()> onNeverShow) = 0;
    /// Takes the panel off screen; unknown or already hidden panels are ignored.
    virtual void hidePanel(PanelId panel) = 0;
};

} // namespace Tessaline
