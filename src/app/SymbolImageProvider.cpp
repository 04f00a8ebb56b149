// SPDX-License-Identifier: MIT
#include "SymbolImageProvider.h"

#include <QFile>
#include <QHash>
#include <QPainter>
#include <QUrlQuery>

namespace Tessaline {
namespace {

const QHash<QString, QString>& themeNames()
{
    static const QHash<QString, QString> names{
        {QStringLiteral("keyboard"), QStringLiteral("input-keyboard-symbolic")},
        {QStringLiteral("keyboard.fill"), QStringLiteral("input-keyboard-symbolic")},
        {QStringLiteral("gearshape"), QStringLiteral("emblem-system-symbolic")},
        {QStringLiteral("arrow.clockwise"), QStringLiteral("view-refresh-symbolic")},
        {QStringLiteral("xmark"), QStringLiteral("window-close-symbolic")},
        {QStringLiteral("magnifyingglass"), QStringLiteral("edit-find-symbolic")},
        {QStringLiteral("star"), QStringLiteral("non-starred-symbolic")},
        {QStringLiteral("star.fill"), QStringLiteral("starred-symbolic")},
        {QStringLiteral("info.circle.fill"), QStringLiteral("dialog-information-symbolic")},
        {QStringLiteral("exclamationmark.triangle.fill"),
         QStringLiteral("dialog-warning-symbolic")},
        {QStringLiteral("checkmark.circle.fill"), QStringLiteral("emblem-ok-symbolic")},
        {QStringLiteral("doc.on.doc"), QStringLiteral("edit-copy-symbolic")},
        {QStringLiteral("play.fill"), QStringLiteral("media-playback-start-symbolic")},
    };
    return names;
}

QImage tinted(QImage image, const QColor& color)
{
    image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace

SymbolImageProvider::SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QString SymbolImageProvider::themeIconName(const QString& symbol)
{
    return themeNames().value(symbol);
}

QImage SymbolImageProvider::render(const QString& symbol, const QColor& color, int side)
{
    QImage image;
    const QString themeName = themeIconName(symbol);
    if (!themeName.isEmpty() && QIcon::hasThemeIcon(themeName))
        image = QIcon::fromTheme(themeName).pixmap(side, side).toImage();
    if (image.isNull())
        return renderFile(QStringLiteral(":/symbols/%1.svg").arg(symbol), color, side);
    return tinted(image, color);
}

QImage SymbolImageProvider::renderFile(const QString& path, const QColor& color, int side)
{
    if (!QFile::exists(path))
        return {};
    const QImage image = QIcon(path).pixmap(side, side).toImage();
    return image.isNull() ? image : tinted(image, color);
}

QIcon SymbolImageProvider::fileIcon(const QString& path, const QColor& color, int side)
{
    return QIcon(QPixmap::fromImage(renderFile(path, color, side)));
}

QIcon SymbolImageProvider::icon(const QString& symbol, const QColor& color, int side)
{
    return QIcon(QPixmap::fromImage(render(symbol, color, side)));
}

QImage SymbolImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const qsizetype queryStart = id.indexOf(QLatin1Char('?'));
    const QString symbol = queryStart < 0 ? id : id.left(queryStart);
    QColor color(Qt::black);
    if (queryStart >= 0) {
        const QUrlQuery query(id.mid(queryStart + 1));
        QString name = query.queryItemValue(QStringLiteral("color"));
        // "#" cannot stand unescaped in an image URL, so a bare "rrggbb" is accepted too.
        if (!name.isEmpty() && !name.startsWith(QLatin1Char('#')) && name.size() == 6)
            name.prepend(QLatin1Char('#'));
        const QColor requested(name);
        if (requested.isValid())
            color = requested;
    }
    const int side = std::max({requestedSize.width(), requestedSize.height(), 16});
    const QString key = QStringLiteral("%1|%2|%3").arg(symbol, color.name()).arg(side);
    QImage image = m_drawn.image(key, [&] { return render(symbol, color, side); });
    if (size)
        *size = image.size();
    return image;
}

} // namespace Tessaline
