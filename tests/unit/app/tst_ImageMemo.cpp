// SPDX-License-Identifier: MIT
// Drawn images are kept for the next view: each key is drawn once, missing images are looked
// for again, and the least recently used images leave first when the byte limit is reached.
#include "ImageMemo.h"

#include <QTest>

using Tessaline::ImageMemo;

namespace {

QImage filled(int side, QColor color)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

} // namespace

class TestImageMemo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawsEachKeyOnce()
    {
        ImageMemo memo;
        int draws = 0;
        auto red = [&] {
            ++draws;
            return filled(8, Qt::red);
        };
        const QImage first = memo.image(QStringLiteral("star|#ff0000|32"), red);
        const QImage second = memo.image(QStringLiteral("star|#ff0000|32"), red);
        QCOMPARE(draws, 1);
        QCOMPARE(second.cacheKey(), first.cacheKey());
        QCOMPARE(second.pixel(0, 0), QColor(Qt::red).rgb());

        const QImage blue =
            memo.image(QStringLiteral("star|#0000ff|32"), [] { return filled(8, Qt::blue); });
        QCOMPARE(blue.pixel(0, 0), QColor(Qt::blue).rgb());
        QCOMPARE(memo.count(), 2);
    }

    void missingImagesAreLookedForAgain()
    {
        ImageMemo memo;
        int draws = 0;
        auto nothing = [&] {
            ++draws;
            return QImage();
        };
        QVERIFY(memo.image(QStringLiteral("org.example.NoIcon|32"), nothing).isNull());
        QVERIFY(memo.image(QStringLiteral("org.example.NoIcon|32"), nothing).isNull());
        QCOMPARE(draws, 2);
        QCOMPARE(memo.count(), 0);
    }

    void leastRecentlyUsedLeaveAtTheByteLimit()
    {
        // An 8 × 8 ARGB image takes 256 bytes; room for three.
        ImageMemo memo(3 * 256);
        int draws = 0;
        auto draw = [&] {
            ++draws;
            return filled(8, Qt::green);
        };
        memo.image(QStringLiteral("a"), draw);
        memo.image(QStringLiteral("b"), draw);
        memo.image(QStringLiteral("c"), draw);
        memo.image(QStringLiteral("a"), draw); // "a" is now the most recent
        QCOMPARE(draws, 3);
        memo.image(QStringLiteral("d"), draw); // "b" leaves
        QCOMPARE(memo.count(), 3);
        memo.image(QStringLiteral("a"), draw);
        memo.image(QStringLiteral("c"), draw);
        QCOMPARE(draws, 4);
        memo.image(QStringLiteral("b"), draw);
        QCOMPARE(draws, 5);
    }

    void anImageLargerThanTheLimitIsStillReturned()
    {
        ImageMemo memo(100);
        const QImage big = memo.image(QStringLiteral("big"), [] { return filled(16, Qt::red); });
        QCOMPARE(big.size(), QSize(16, 16));
        QCOMPARE(memo.count(), 0);
    }
};

QTEST_MAIN(TestImageMemo)
#include "tst_ImageMemo.moc"
