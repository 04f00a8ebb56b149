// SPDX-License-Identifier: MIT
// The tray glyph's colour: the tray host's foreground when it names one, else a colour that
// stands out from the panel around the icon.
#include "FakeTrayAppearance.h"

#include <QTest>

using namespace Tessaline;
using Tessaline::Testing::FakeTrayAppearance;
using Rgb = TrayAppearance::Rgb;

Q_DECLARE_METATYPE(Rgb)

class TestTrayAppearance : public QObject
{
    Q_OBJECT

    const QRect m_icon{1200, 770, 24, 24};

private Q_SLOTS:
    void glyphStandsOutFromThePanel_data()
    {
        QTest::addColumn<Rgb>("panel");
        QTest::addColumn<Rgb>("glyph");
        QTest::addRow("black panel") << Rgb{0, 0, 0} << TrayAppearance::kLightGlyph;
        QTest::addRow("dark blue-grey panel (tint2's default)")
            << Rgb{30, 32, 40} << TrayAppearance::kLightGlyph;
        QTest::addRow("mid-dark grey") << Rgb{110, 110, 110} << TrayAppearance::kLightGlyph;
        QTest::addRow("mid-light grey") << Rgb{150, 150, 150} << TrayAppearance::kDarkGlyph;
        QTest::addRow("white panel") << Rgb{255, 255, 255} << TrayAppearance::kDarkGlyph;
        // Green weighs most in what the eye sees as bright, blue least.
        QTest::addRow("saturated blue") << Rgb{0, 0, 255} << TrayAppearance::kLightGlyph;
        QTest::addRow("saturated green") << Rgb{0, 255, 0} << TrayAppearance::kDarkGlyph;
    }

    void glyphStandsOutFromThePanel()
    {
        QFETCH(Rgb, panel);
        QFETCH(Rgb, glyph);
        FakeTrayAppearance tray;
        tray.panel = panel;
        QCOMPARE(tray.glyphColor(m_icon), glyph);
        QCOMPARE(tray.panelLookups, QList<QRect>{m_icon});
    }

    void theTraysOwnForegroundWins()
    {
        FakeTrayAppearance tray;
        tray.foreground = Rgb{200, 10, 20};
        tray.panel = Rgb{255, 255, 255};
        QCOMPARE(tray.glyphColor(m_icon), (Rgb{200, 10, 20}));
        QVERIFY(tray.panelLookups.isEmpty());
    }

    void anUnseenPanelGetsTheNeutralGrey()
    {
        FakeTrayAppearance tray;
        QCOMPARE(tray.glyphColor(m_icon), TrayAppearance::kNeutralGlyph);
        // Without a place on screen, there is no panel to look at.
        tray.panel = Rgb{0, 0, 0};
        tray.panelLookups.clear();
        QCOMPARE(tray.glyphColor(QRect()), TrayAppearance::kNeutralGlyph);
        QVERIFY(tray.panelLookups.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTrayAppearance)
#include "tst_TrayAppearance.moc"
