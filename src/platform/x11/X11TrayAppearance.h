// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TrayAppearance.h"

namespace Tessaline {

/// The tray of an X11 session: the colours an XEmbed tray manager publishes for its icons
/// (_NET_SYSTEM_TRAY_COLORS on the owner of the tray selection), and the panel's pixels around
/// the icon when it publishes none.
class X11TrayAppearance final : public TrayAppearance
{
public:
    bool hostTakesIconNames() const override;
    std::optional<Rgb> trayForeground() const override;
    std::optional<Rgb> panelColor(const QRect& iconGeometry) const override;
};

} // namespace Tessaline
