// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeyBinding.h"

#include <QList>

namespace Tessaline {

/// The key combinations the running desktop has bound to the actions the coach tips talk
/// about, read from the desktop's own settings each time they are asked for.
class DesktopKeySettings
{
public:
    enum class Action
    {
        /// Volume up and down in steps smaller than the plain volume keys take.
        VolumeUpPrecise,
        VolumeDownPrecise,
        /// Screen brightness up and down in smaller steps.
        BrightnessUpPrecise,
        BrightnessDownPrecise,
        /// Lets the user pick a region of the screen to capture.
        ScreenshotRegion,
        /// Captures the active window.
        ScreenshotWindow,
        /// Media player control that works whichever window is in front.
        MediaPlay,
        MediaNext,
        MediaPrevious,
    };

    virtual ~DesktopKeySettings() = default;
    /// The combinations bound to `action` now, the desktop's preferred one first; empty when
    /// the desktop has none (or is not one whose settings can be read).
    virtual QList<DesktopKeyBinding> bindings(Action action) const = 0;
    /// Where the desktop keeps these settings, as its users know it ("GNOME settings",
    /// "kglobalshortcutsrc"); empty when no desktop's settings are read.
    virtual QString settingsName() const { return {}; }
};

} // namespace Tessaline
