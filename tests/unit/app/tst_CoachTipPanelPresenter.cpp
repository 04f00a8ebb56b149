// SPDX-License-Identifier: MIT
// The coach tip panel: built by the views' engine, frameless and never focused, placed where the
// controller asks, its corners cut round, its lightbulb drawn, and its two buttons reaching the
// callbacks of the tip on screen.
#include "CoachTipPanelPresenter.h"
#include "SymbolImageProvider.h"
#include "coach/CoachTip.h"

#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

using namespace Tessaline;

namespace {

// A tip as the controller composes it for a desktop with a smaller volume step.
Tessaline::CoachTip volumeTip()
{
    return {QStringLiteral("volume-precision"), QStringLiteral("Tiny volume steps"),
            QStringLiteral("Shift+Volume Up and Shift+Volume Down change the volume in smaller "
                           "steps.")};
}

} // namespace

class TestCoachTipPanelPresenter : public QObject
{
    Q_OBJECT

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<CoachTipPanelPresenter> m_presenter;

    static QQuickItem* child(QQuickView& view, const char* name)
    {
        return view.rootObject()->findChild<QQuickItem*>(QLatin1String(name));
    }

    static void click(QQuickView& view, QQuickItem* item)
    {
        QVERIFY(item);
        const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(&view, Qt::LeftButton, {}, centre.toPoint());
    }

private Q_SLOTS:
    void init()
    {
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
        m_presenter = std::make_unique<CoachTipPanelPresenter>(*m_engine);
    }

    void cleanup()
    {
        m_presenter.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_engine.reset();
    }

    void showsTheTipInAnUnfocusedRoundedPanel()
    {
        const QRect frame(120, 80, 360, 132);
        const auto id = m_presenter->showPanel(volumeTip(), frame, {}, {});
        QQuickView* view = m_presenter->window(id);
        QVERIFY(view);
        QVERIFY2(
            view->rootObject(),
            qPrintable(view->errors().isEmpty() ? QString() : view->errors().first().toString()));
        QCOMPARE(view->engine(), m_engine.get());
        QVERIFY(view->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
        QVERIFY(view->flags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(view->flags().testFlag(Qt::WindowStaysOnTopHint));
        QCOMPARE(view->geometry(), frame);
        QVERIFY(!view->mask().contains(QPoint(0, 0)));
        QVERIFY(view->mask().contains(QPoint(frame.width() / 2, frame.height() / 2)));
        QCOMPARE(child(*view, "title")->property("text").toString(), volumeTip().title);
        QCOMPARE(child(*view, "message")->property("text").toString(), volumeTip().message);

        // The lightbulb comes from the engine's symbol images, in yellow.
        QQuickItem* symbol = child(*view, "symbol");
        QVERIFY(symbol);
        QCOMPARE(symbol->property("source").toUrl(),
                 QUrl(QStringLiteral("image://symbol/lightbulb.fill?color=f5c211")));
        QTRY_COMPARE(symbol->property("status").toInt(), 1); // Image.Ready
    }

    void buttonsReachTheirCallbacks()
    {
        int dismissed = 0;
        int neverShow = 0;
        const auto id = m_presenter->showPanel(
            volumeTip(), QRect(0, 0, 360, 132), [&dismissed] { ++dismissed; },
            [&neverShow] { ++neverShow; });
        QQuickView* view = m_presenter->window(id);
        QVERIFY(view && view->rootObject());
        QVERIFY(QTest::qWaitForWindowExposed(view));

        click(*view, child(*view, "notNowButton"));
        QCOMPARE(dismissed, 1);
        QCOMPARE(neverShow, 0);
        click(*view, child(*view, "neverShowButton"));
        QCOMPARE(dismissed, 1);
        QCOMPARE(neverShow, 1);
    }

    void hiddenPanelsAreForgotten()
    {
        int dismissed = 0;
        const auto id = m_presenter->showPanel(volumeTip(), QRect(0, 0, 360, 132),
                                               [&dismissed] { ++dismissed; }, {});
        QPointer<QQuickView> view = m_presenter->window(id);
        QVERIFY(view);
        QObject* root = view->rootObject();
        QVERIFY(root);
        m_presenter->hidePanel(id);
        QVERIFY(!m_presenter->window(id));
        // A button press that was already on its way finds no panel and calls nothing.
        QVERIFY(QMetaObject::invokeMethod(root, "dismiss"));
        QCOMPARE(dismissed, 0);
        QTRY_VERIFY(view.isNull());
    }
};

QTEST_MAIN(TestCoachTipPanelPresenter)
#include "tst_CoachTipPanelPresenter.moc"
