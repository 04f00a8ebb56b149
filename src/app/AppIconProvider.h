// SPDX-License-Identifier: MIT
#pragma once

#include "ImageMemo.h"

#include <QQuickImageProvider>

#include <functional>
#include <optional>

namespace Tessaline {

/// Serves "image://appicon/<bundle id>": the application's icon named by its desktop entry,
/// from the icon theme or the file the entry names. An app without an icon yields a blank 1 × 1
/// image, and the view then shows its fallback symbol. Drawn icons are remembered.
class AppIconProvider : public QQuickImageProvider
{
public:
    /// `iconName` gives the desktop entry's Icon value for a bundle id.
    explicit AppIconProvider(std::function<std::optional<QString>(const QString&)> iconName);

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    QImage draw(const QString& bundleID, int side) const;

    std::function<std::optional<QString>(const QString&)> m_iconName;
    ImageMemo m_drawn;
};

} // namespace Tessaline
