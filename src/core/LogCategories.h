// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace Tessaline {

// One logging category per subsystem, quiet below warnings unless QT_LOGGING_RULES asks for
// more (for example "tessaline.hud.timing.debug=true").

/// The vault file: reading, writing, merging.
Q_DECLARE_LOGGING_CATEGORY(lcVault)
/// Reading applications' menus.
Q_DECLARE_LOGGING_CATEGORY(lcScan)
/// The accessibility bus.
Q_DECLARE_LOGGING_CATEGORY(lcAtspi)
Q_DECLARE_LOGGING_CATEGORY(lcWayland)
/// X11: the workspace, window properties, key injection.
Q_DECLARE_LOGGING_CATEGORY(lcX11)
/// X11 raw key events watched for the coach tips.
Q_DECLARE_LOGGING_CATEGORY(lcRawKeys)
/// System-wide hot keys.
Q_DECLARE_LOGGING_CATEGORY(lcHotKey)
/// Keys typed through the desktop portal's remote-desktop session (Wayland).
Q_DECLARE_LOGGING_CATEGORY(lcPortalKeys)
/// The coach tips and their panel.
Q_DECLARE_LOGGING_CATEGORY(lcCoach)
/// The HUD panel.
Q_DECLARE_LOGGING_CATEGORY(lcHud)
/// How long the HUD takes to show and close.
Q_DECLARE_LOGGING_CATEGORY(lcHudTiming)
/// When the app in front changed, as a wall-clock time, for the focus-change benchmark.
Q_DECLARE_LOGGING_CATEGORY(lcTrackerTiming)
/// Turns of the event loop that came late: how long the interface could not answer.
Q_DECLARE_LOGGING_CATEGORY(lcStall)

} // namespace Tessaline
