// SPDX-License-Identifier: MIT
// The HUD's window moves when its background is dragged, and only then: a press that a control
// takes stays that control's.
#include "FloatingPanel.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>

using Tessaline::FloatingPanel;

namespace {

// A background with one control on it, which counts its clicks.
constexpr char kView[] = R"(
import QtQuick
Item {
    property int clicks: 0
    MouseArea {
        x: 200; y: 200; width: 100; height: 40
        onClicked: parent.clicks = parent.clicks + 1
    }
}
)";

} // namespace

class TestFloatingPanel : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QQmlEngine m_engine;
    std::unique_ptr<FloatingPanel> m_panel;

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        const QString path = m_dir.filePath(QStringLiteral("View.qml"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(kView);
        file.close();
        m_panel = std::make_unique<FloatingPanel>(&m_engine);
        m_panel->setSource(QUrl::fromLocalFile(path));
        QVERIFY(m_panel->rootObject());
        m_panel->setPosition(100, 100);
        m_panel->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_panel.get()));
        QTRY_COMPARE(m_panel->position(), QPoint(100, 100));
    }

    void cleanup() { m_panel.reset(); }

    // The pointer is followed on the screen, as a real pointer moves; QTest takes positions in
    // the window, which moves under it.
    QPoint at(const QPoint& onScreen) const { return onScreen - m_panel->position(); }

    void draggingTheBackgroundMovesThePanel()
    {
        QTest::mousePress(m_panel.get(), Qt::LeftButton, {}, at({120, 120}));
        QTest::mouseMove(m_panel.get(), at({150, 140}));
        QTRY_COMPARE(m_panel->position(), QPoint(130, 120));
        QTest::mouseMove(m_panel.get(), at({110, 90}));
        QTRY_COMPARE(m_panel->position(), QPoint(90, 70));
        QTest::mouseRelease(m_panel.get(), Qt::LeftButton, {}, at({110, 90}));
        // Once released, moving the pointer moves nothing.
        QTest::mouseMove(m_panel.get(), at({200, 200}));
        QTest::qWait(50);
        QCOMPARE(m_panel->position(), QPoint(90, 70));
    }

    void aPressOnAControlIsTheControls()
    {
        QTest::mousePress(m_panel.get(), Qt::LeftButton, {}, at({310, 310}));
        QTest::mouseMove(m_panel.get(), at({360, 330}));
        QTest::mouseRelease(m_panel.get(), Qt::LeftButton, {}, at({360, 330}));
        QTest::qWait(50);
        QCOMPARE(m_panel->position(), QPoint(100, 100));
        QCOMPARE(m_panel->rootObject()->property("clicks").toInt(), 1);
    }

    void otherButtonsMoveNothing()
    {
        QTest::mousePress(m_panel.get(), Qt::RightButton, {}, QPoint(20, 20));
        QTest::mouseMove(m_panel.get(), QPoint(60, 60));
        QTest::mouseRelease(m_panel.get(), Qt::RightButton, {}, QPoint(60, 60));
        QTest::qWait(50);
        QCOMPARE(m_panel->position(), QPoint(100, 100));
    }
};

QTEST_MAIN(TestFloatingPanel)
#include "tst_FloatingPanel.moc"
