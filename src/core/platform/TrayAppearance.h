// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <optional>

namespace Tessaline {

/// What the desktop shows Tessaline's tray icon on, so that the icon's one-colour keyboard
/// glyph is drawn in a colour that reads on the panel.
class TrayAppearance
{
public:
    /// A colour, each channel from 0 to 255.
    struct Rgb
    {
        int red = 0;
        int green = 0;
        int blue = 0;
        friend bool operator==(const Rgb&, const Rgb&) = default;
    };

    /// Drawn on a dark panel, on a light one, and when the panel cannot be seen (a mid grey
    /// that reads on either).
    static constexpr Rgb kLightGlyph{238, 238, 236};
    static constexpr Rgb kDarkGlyph{46, 52, 54};
    static constexpr Rgb kNeutralGlyph{136, 136, 136};

    virtual ~TrayAppearance() = default;

    /// True when the tray host takes icons by name (a StatusNotifierItem host), which lets it
    /// recolour a symbolic icon to suit its panel itself.
    virtual bool hostTakesIconNames() const = 0;
    /// The colour the tray host asks its icons to draw in, when it names one.
    virtual std::optional<Rgb> trayForeground() const = 0;
    /// The panel's colour right around `iconGeometry` (screen coordinates), when it can be read.
    virtual std::optional<Rgb> panelColor(const QRect& iconGeometry) const = 0;

    /// The glyph's colour: the tray host's foreground when it names one; else light on a dark
    /// panel and dark on a light one; the neutral grey when the icon has no place on screen yet
    /// or its panel cannot be read.
    Rgb glyphColor(const QRect& iconGeometry) const;
    /// Whether a glyph on `background` should be light: the background's perceived brightness
    /// (ITU-R BT.601 weights) is below the middle.
    static bool isDark(const Rgb& background);
};

} // namespace Tessaline
