// SPDX-License-Identifier: MIT
#include "platform/TrayAppearance.h"

namespace Tessaline {

TrayAppearance::Rgb TrayAppearance::glyphColor(const QRect& iconGeometry) const
{
    if (const std::optional<Rgb> foreground = trayForeground())
        return *foreground;
    if (iconGeometry.isEmpty())
        return kNeutralGlyph;
    const std::optional<Rgb> panel = panelColor(iconGeometry);
    if (!panel)
        return kNeutralGlyph;
    return isDark(*panel) ? kLightGlyph : kDarkGlyph;
}

bool TrayAppearance::isDark(const Rgb& background)
{
    const int brightness = (299 * background.red + 587 * background.green + 114 * background.blue);
    return brightness < 128 * 1000;
}

} // namespace Tessaline
