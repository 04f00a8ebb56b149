// SPDX-License-Identifier: MIT
#pragma once

#include "ImageMemo.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QQuickImageProvider>

namespace Tessaline {

/// Serves the interface's symbols to QML as "image://symbol/<name>" or
/// "image://symbol/<name>?color=<#rrggbb>". A symbol is drawn from the desktop's icon theme
/// (its monochrome "-symbolic" icon) when the theme has one, else from the bundled SVG, so a
/// button is never blank. The colour tints the whole symbol. Drawn symbols are remembered.
class SymbolImageProvider : public QQuickImageProvider
{
public:
    SymbolImageProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

    /// The freedesktop icon name standing for a symbol name ("gearshape" ->
    /// "emblem-system-symbolic"); empty when the theme has no counterpart.
    static QString themeIconName(const QString& symbol);
    /// The symbol as an icon for widgets (tray, menus), tinted with `color`.
    static QIcon icon(const QString& symbol, const QColor& color = Qt::black, int side = 64);
    /// Draws the symbol at `side` × `side` pixels, tinted; a null image for unknown symbols.
    static QImage render(const QString& symbol, const QColor& color, int side);
    /// Draws the SVG file at `path` at `side` × `side` pixels, tinted; null when it is missing.
    static QImage renderFile(const QString& path, const QColor& color, int side);
    /// The SVG file at `path` as an icon for widgets, tinted with `color`.
    static QIcon fileIcon(const QString& path, const QColor& color, int side = 64);

private:
    ImageMemo m_drawn;
};

} // namespace Tessaline
