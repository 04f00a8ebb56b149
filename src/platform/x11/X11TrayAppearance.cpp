// SPDX-License-Identifier: MIT
#include "platform/x11/X11TrayAppearance.h"

#include "platform/qt/StatusNotifierHost.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbReply.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <xcb/xcb.h>

namespace Tessaline {
namespace {

// How far around the icon the panel is sampled, in pixels.
constexpr int kRing = 3;

xcb_atom_t internAtom(xcb_connection_t* connection, const QByteArray& name)
{
    const auto reply = xcbReply(
        xcb_intern_atom_reply, connection,
        xcb_intern_atom(connection, 1, static_cast<uint16_t>(name.size()), name.constData()));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// The number of the screen whose root window Qt uses; the tray selection is named after it.
int screenNumber(xcb_connection_t* connection)
{
    const xcb_window_t root = X11Connection::rootWindow(connection);
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int number = 0; screens.rem; ++number, xcb_screen_next(&screens)) {
        if (screens.data->root == root)
            return number;
    }
    return 0;
}

} // namespace

bool X11TrayAppearance::hostTakesIconNames() const
{
    return StatusNotifierHost::isRegistered();
}

std::optional<TrayAppearance::Rgb> X11TrayAppearance::trayForeground() const
{
    xcb_connection_t* connection = X11Connection::connection();
    if (!connection)
        return std::nullopt;
    const xcb_atom_t selection =
        internAtom(connection, QByteArrayLiteral("_NET_SYSTEM_TRAY_S") +
                                   QByteArray::number(screenNumber(connection)));
    const xcb_atom_t colors = internAtom(connection, QByteArrayLiteral("_NET_SYSTEM_TRAY_COLORS"));
    if (selection == XCB_ATOM_NONE || colors == XCB_ATOM_NONE)
        return std::nullopt;
    const auto owner = xcbReply(xcb_get_selection_owner_reply, connection,
                                xcb_get_selection_owner(connection, selection));
    if (!owner || owner->owner == XCB_NONE)
        return std::nullopt;
    // Four colours of three 16-bit channels each: foreground, error, warning, success.
    const auto property =
        xcbReply(xcb_get_property_reply, connection,
                 xcb_get_property(connection, 0, owner->owner, colors, XCB_ATOM_CARDINAL, 0, 12));
    if (!property || property->format != 32 ||
        xcb_get_property_value_length(property.get()) < static_cast<int>(3 * sizeof(uint32_t)))
        return std::nullopt;
    const auto* channels = static_cast<const uint32_t*>(xcb_get_property_value(property.get()));
    auto eightBits = [](uint32_t channel) { return static_cast<int>((channel & 0xffff) >> 8); };
    return Rgb{eightBits(channels[0]), eightBits(channels[1]), eightBits(channels[2])};
}

std::optional<TrayAppearance::Rgb> X11TrayAppearance::panelColor(const QRect& iconGeometry) const
{
    if (!X11Connection::isAvailable() || iconGeometry.isEmpty())
        return std::nullopt;
    QScreen* screen = QGuiApplication::screenAt(iconGeometry.center());
    if (!screen)
        return std::nullopt;
    // The ring of panel just outside the icon: the icon's own pixels would include the glyph.
    const QRect area =
        iconGeometry.adjusted(-kRing, -kRing, kRing, kRing).intersected(screen->geometry());
    const QImage image =
        screen
            ->grabWindow(0, area.x() - screen->geometry().x(), area.y() - screen->geometry().y(),
                         area.width(), area.height())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    if (image.isNull())
        return std::nullopt;
    const QRect icon = iconGeometry.translated(-area.topLeft());
    qint64 red = 0, green = 0, blue = 0, count = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (icon.contains(x, y))
                continue;
            red += qRed(line[x]);
            green += qGreen(line[x]);
            blue += qBlue(line[x]);
            ++count;
        }
    }
    if (count == 0)
        return std::nullopt;
    return Rgb{static_cast<int>(red / count), static_cast<int>(green / count),
               static_cast<int>(blue / count)};
}

} // namespace Tessaline
