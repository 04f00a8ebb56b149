// SPDX-License-Identifier: MIT
#include "Branding.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPainter>

namespace Tessaline {

QString Branding::resourceImagePath()
{
    const QString path = QCoreApplication::applicationDirPath() +
                         QStringLiteral("/../" TESSALINE_SHARE_SUBDIR "/TessalineLogo.png");
    return QFileInfo::exists(path) ? QFileInfo(path).canonicalFilePath() : QString();
}

QString Branding::developmentImagePath()
{
    const QString path = QStringLiteral(TESSALINE_SOURCE_DIR "/image.png");
    return QFileInfo::exists(path) ? path : QString();
}

std::optional<QImage> Branding::image(std::optional<double> size)
{
    QString candidate = resourceImagePath();
    if (candidate.isEmpty())
        candidate = developmentImagePath();
    if (candidate.isEmpty())
        return std::nullopt;
    // Only the first candidate is tried: a broken installed logo is not replaced by another.
    QImage loaded(candidate);
    if (loaded.isNull())
        return std::nullopt;
    if (!size)
        return loaded;
    const int side = qRound(*size);
    QImage scaled(side, side, QImage::Format_ARGB32_Premultiplied);
    scaled.fill(Qt::transparent);
    QPainter painter(&scaled);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(0, 0, side, side), loaded);
    return scaled;
}

} // namespace Tessaline
