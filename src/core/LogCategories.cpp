// SPDX-License-Identifier: MIT
#include "LogCategories.h"

namespace Tessaline {

Q_LOGGING_CATEGORY(lcVault, "tessaline.vault", QtWarningMsg)
Q_LOGGING_CATEGORY(lcScan, "tessaline.scan", QtWarningMsg)
Q_LOGGING_CATEGORY(lcAtspi, "tessaline.atspi", QtWarningMsg)
Q_LOGGING_CATEGORY(lcWayland, "tessaline.wayland", QtWarningMsg)
Q_LOGGING_CATEGORY(lcX11, "tessaline.x11", QtWarningMsg)
Q_LOGGING_CATEGORY(lcRawKeys, "tessaline.x11.rawkeys", QtWarningMsg)
Q_LOGGING_CATEGORY(lcHotKey, "tessaline.hotkey", QtWarningMsg)
Q_LOGGING_CATEGORY(lcPortalKeys, "tessaline.portal.keys", QtWarningMsg)
Q_LOGGING_CATEGORY(lcCoach, "tessaline.coach", QtWarningMsg)
Q_LOGGING_CATEGORY(lcHud, "tessaline.hud", QtWarningMsg)
Q_LOGGING_CATEGORY(lcHudTiming, "tessaline.hud.timing", QtWarningMsg)
Q_LOGGING_CATEGORY(lcTrackerTiming, "tessaline.tracker.timing", QtWarningMsg)
Q_LOGGING_CATEGORY(lcStall, "tessaline.stall", QtWarningMsg)

} // namespace Tessaline
