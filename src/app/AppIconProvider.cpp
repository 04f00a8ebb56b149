// SPDX-License-Identifier: MIT
#include "AppIconProvider.h"

#include <QFileInfo>
#include <QIcon>
#include <QImageReader>

namespace Tessaline {

AppIconProvider::AppIconProvider(std::function<std::optional<QString>(const QString&)> iconName)
    : QQuickImageProvider(QQuickImageProvider::Image), m_iconName(std::move(iconName))
{}

QImage AppIconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const int side = std::max({requestedSize.width(), requestedSize.height(), 32});
    QImage image =
        m_drawn.image(QStringLiteral("%1|%2").arg(id).arg(side), [&] { return draw(id, side); });
    if (image.isNull()) {
        // Qt Quick logs a warning for every null image; a blank pixel says "no icon" quietly.
        image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    if (size)
        *size = image.size();
    return image;
}

QImage AppIconProvider::draw(const QString& bundleID, int side) const
{
    QImage image;
    if (const std::optional<QString> name = m_iconName ? m_iconName(bundleID) : std::nullopt) {
        if (QFileInfo(*name).isAbsolute()) {
            QImageReader reader(*name);
            reader.setScaledSize(QSize(side, side));
            image = reader.read();
        } else if (QIcon::hasThemeIcon(*name)) {
            image = QIcon::fromTheme(*name).pixmap(side, side).toImage();
        }
    }
    return image;
}

} // namespace Tessaline
