// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TrayAppearance.h"
#include "platform/qt/StatusNotifierHost.h"

namespace Tessaline {

/// The tray of a session Tessaline has no window-system backend for: a StatusNotifierItem host
/// may take the icon by name; the panel itself cannot be looked at.
class InertTrayAppearance final : public TrayAppearance
{
public:
    bool hostTakesIconNames() const override { return StatusNotifierHost::isRegistered(); }
    std::optional<Rgb> trayForeground() const override { return std::nullopt; }
    std::optional<Rgb> panelColor(const QRect&) const override { return std::nullopt; }
};

} // namespace Tessaline
