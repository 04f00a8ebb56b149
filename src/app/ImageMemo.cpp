// SPDX-License-Identifier: MIT
#include "ImageMemo.h"

#include <QMutexLocker>

namespace Tessaline {

ImageMemo::ImageMemo(qsizetype limitBytes) : m_images(limitBytes) {}

QImage ImageMemo::image(const QString& key, const std::function<QImage()>& draw)
{
    {
        QMutexLocker lock(&m_mutex);
        if (const QImage* kept = m_images.object(key))
            return *kept;
    }
    // Drawn outside the lock: two threads asking for the same new key both draw it once.
    QImage drawn = draw();
    if (drawn.isNull())
        return drawn;
    QMutexLocker lock(&m_mutex);
    m_images.insert(key, new QImage(drawn), drawn.sizeInBytes());
    return drawn;
}

qsizetype ImageMemo::count() const
{
    QMutexLocker lock(&m_mutex);
    return m_images.count();
}

} // namespace Tessaline
