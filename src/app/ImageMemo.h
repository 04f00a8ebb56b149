// SPDX-License-Identifier: MIT
#pragma once

#include <QCache>
#include <QImage>
#include <QMutex>
#include <QString>

#include <functional>

namespace Tessaline {

/// Remembers images drawn by an image provider, so that a view built anew (the HUD is built at
/// every showing) reuses them instead of drawing every symbol and icon again. Bounded by the
/// bytes of the images it keeps; the least recently used go first. Safe to call from Qt Quick's
/// image-loading threads.
class ImageMemo
{
public:
    static constexpr qsizetype kDefaultLimitBytes = 4 * 1024 * 1024;

    explicit ImageMemo(qsizetype limitBytes = kDefaultLimitBytes);

    /// The image kept under `key`, or the one `draw` makes, which is then kept. Null images are
    /// not kept, so an icon installed later is found at the next request.
    QImage image(const QString& key, const std::function<QImage()>& draw);

    qsizetype count() const;

private:
    mutable QMutex m_mutex;
    QCache<QString, QImage> m_images;
};

} // namespace Tessaline
