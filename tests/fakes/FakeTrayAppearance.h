// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TrayAppearance.h"

#include <QList>

namespace Tessaline::Testing {

/// A tray whose host, named foreground and panel colour the test sets; records where the
/// panel was looked at.
class FakeTrayAppearance final : public TrayAppearance
{
public:
    bool takesIconNames = false;
    std::optional<Rgb> foreground;
    std::optional<Rgb> panel;
    mutable QList<QRect> panelLookups;

    bool hostTakesIconNames() const override { return takesIconNames; }
    std::optional<Rgb> trayForeground() const override { return foreground; }
    std::optional<Rgb> panelColor(const QRect& iconGeometry) const override
    {
        panelLookups.append(iconGeometry);
        return panel;
    }
};

} // namespace Tessaline::Testing
