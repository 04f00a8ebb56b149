// SPDX-License-Identifier: MIT
// Where Tessaline's windows go on a screen: centred in the available area, rounded half away
// from zero.
#include "WindowPlacement.h"

#include <QTest>

using Tessaline::WindowPlacement;

class TestWindowPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void centeredOrigin_data()
    {
        QTest::addColumn<QRectF>("area");
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QPoint>("origin");

        QTest::addRow("even sizes")
            << QRectF(0, 0, 1440, 900) << QSizeF(720, 560) << QPoint(360, 170);
        // 25 + 527.5 - 280 = 272.5 rounds to 273.
        QTest::addRow("second screen to the right")
            << QRectF(1440, 25, 1920, 1055) << QSizeF(720, 560) << QPoint(2040, 273);
        QTest::addRow("odd panel halves round up")
            << QRectF(0, 0, 1000, 800) << QSizeF(721, 561) << QPoint(140, 120);
        QTest::addRow("odd area halves round up")
            << QRectF(0, 0, 1001, 801) << QSizeF(720, 560) << QPoint(141, 121);
        // Screens left of and above the primary one have negative coordinates: halves round
        // away from zero there too.
        QTest::addRow("negative halves round down")
            << QRectF(-1000, -800, 1000, 800) << QSizeF(721, 561) << QPoint(-861, -681);
        QTest::addRow("panel larger than the area")
            << QRectF(0, 0, 600, 400) << QSizeF(721, 561) << QPoint(-61, -81);
        QTest::addRow("fractional area")
            << QRectF(0.25, 0, 100, 100) << QSizeF(50, 50) << QPoint(25, 25);
    }

    void centeredOrigin()
    {
        QFETCH(QRectF, area);
        QFETCH(QSizeF, size);
        QFETCH(QPoint, origin);
        QCOMPARE(WindowPlacement::centeredOrigin(area, size), origin);
    }
};

QTEST_MAIN(TestWindowPlacement)
#include "tst_WindowPlacement.moc"
