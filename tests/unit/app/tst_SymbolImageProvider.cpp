// SPDX-License-Identifier: MIT
// The interface's symbols as tinted images: every symbol the views use can be drawn, in the
// colour asked for.
#include "SymbolImageProvider.h"

#include <QTest>

using Tessaline::SymbolImageProvider;

namespace {

/// The colours of the image's visible pixels, without their coverage.
QSet<QRgb> visibleColors(const QImage& image)
{
    QSet<QRgb> colors;
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            const QRgb pixel = plain.pixel(x, y);
            if (qAlpha(pixel) == 255)
                colors.insert(pixel & 0x00ffffff);
        }
    }
    return colors;
}

} // namespace

class TestSymbolImageProvider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyBundledSymbolIsDrawn_data()
    {
        QTest::addColumn<QString>("symbol");
        for (const char* name :
             {"app.dashed", "archivebox.fill", "arrow.clockwise", "gearshape", "hourglass",
              "info.circle.fill", "keyboard", "keyboard.fill", "lightbulb.fill", "magnifyingglass",
              "menubar.rectangle", "rectangle.grid.1x2", "square.stack.3d.up", "star", "star.fill",
              "text.badge.checkmark", "text.magnifyingglass", "text.viewfinder", "xmark"})
            QTest::addRow("%s", name) << QString::fromLatin1(name);
    }

    void everyBundledSymbolIsDrawn()
    {
        QFETCH(QString, symbol);
        SymbolImageProvider provider;
        QSize size;
        const QImage image =
            provider.requestImage(symbol + QStringLiteral("?color=ff0000"), &size, QSize(32, 32));
        QVERIFY(!image.isNull());
        QCOMPARE(size, image.size());
        QVERIFY(image.width() >= 32 || image.height() >= 32);
        const QSet<QRgb> colors = visibleColors(image);
        QVERIFY2(!colors.isEmpty(), "nothing is drawn");
        QCOMPARE(colors, QSet<QRgb>{0xff0000});
    }

    void colorWithHashAndDefaultBlack()
    {
        SymbolImageProvider provider;
        QSize size;
        const QImage green =
            provider.requestImage(QStringLiteral("xmark?color=%2300ff00"), &size, QSize(24, 24));
        QCOMPARE(visibleColors(green), QSet<QRgb>{0x00ff00});
        const QImage black = provider.requestImage(QStringLiteral("xmark"), &size, QSize());
        QVERIFY(!black.isNull());
        QCOMPARE(visibleColors(black), QSet<QRgb>{0x000000});
        // Too small a request still yields a legible 16-pixel symbol.
        QVERIFY(black.width() >= 16 || black.height() >= 16);
    }

    void aSymbolIsDrawnOncePerColourAndSize()
    {
        SymbolImageProvider provider;
        QSize size;
        const QImage first =
            provider.requestImage(QStringLiteral("star?color=ff0000"), &size, QSize(32, 32));
        const QImage again =
            provider.requestImage(QStringLiteral("star?color=ff0000"), &size, QSize(32, 32));
        QCOMPARE(again.cacheKey(), first.cacheKey());
        const QImage blue =
            provider.requestImage(QStringLiteral("star?color=0000ff"), &size, QSize(32, 32));
        QVERIFY(blue.cacheKey() != first.cacheKey());
        QCOMPARE(visibleColors(blue), QSet<QRgb>{0x0000ff});
        const QImage larger =
            provider.requestImage(QStringLiteral("star?color=ff0000"), &size, QSize(64, 64));
        QVERIFY(larger.width() >= 64 || larger.height() >= 64);
    }

    void unknownSymbolGivesNoImage()
    {
        SymbolImageProvider provider;
        QSize size(1, 1);
        const QImage image =
            provider.requestImage(QStringLiteral("no.such.symbol"), &size, QSize(16, 16));
        QVERIFY(image.isNull());
        QVERIFY(SymbolImageProvider::icon(QStringLiteral("no.such.symbol")).isNull());
        QVERIFY(!SymbolImageProvider::icon(QStringLiteral("keyboard.fill")).isNull());
    }
};

QTEST_MAIN(TestSymbolImageProvider)
#include "tst_SymbolImageProvider.moc"
