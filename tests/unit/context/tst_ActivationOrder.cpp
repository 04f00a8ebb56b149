// SPDX-License-Identifier: MIT
#include "context/ActivationOrder.h"

#include <QTest>

using namespace Tessaline;

class TestActivationOrder : public QObject
{
    Q_OBJECT

private slots:
    void latestActivationIsInFront()
    {
        ActivationOrder order;
        QVERIFY(!order.front());
        QVERIFY(order.activated(QStringLiteral("editor")));
        QVERIFY(order.activated(QStringLiteral("viewer")));
        QCOMPARE(order.front(), QStringLiteral("viewer"));
        // The same application again changes nothing.
        QVERIFY(!order.activated(QStringLiteral("viewer")));
    }

    // The order a Qt application reports in when the editor takes the focus from it: the
    // editor's activation first, then the Qt application's own late "active" and its loss.
    void lateActivationOfTheLosingWindowDoesNotWin()
    {
        ActivationOrder order;
        order.activated(QStringLiteral("qtapp"));
        QVERIFY(order.activated(QStringLiteral("editor")));
        QVERIFY(order.activated(QStringLiteral("qtapp")));
        QVERIFY(order.deactivated(QStringLiteral("qtapp")));
        QCOMPARE(order.front(), QStringLiteral("editor"));
    }

    void deactivatingAnotherApplicationKeepsTheFront()
    {
        ActivationOrder order;
        order.activated(QStringLiteral("qtapp"));
        order.activated(QStringLiteral("editor"));
        QVERIFY(!order.deactivated(QStringLiteral("qtapp")));
        QCOMPARE(order.front(), QStringLiteral("editor"));
    }

    // Tessaline's own window takes the focus: the editor reports its loss and nothing else is
    // active, so the editor stays the application the user came from.
    void withNothingActiveTheLastFrontStays()
    {
        ActivationOrder order;
        order.activated(QStringLiteral("editor"));
        QVERIFY(!order.deactivated(QStringLiteral("editor")));
        QCOMPARE(order.front(), QStringLiteral("editor"));
        // An application deactivated earlier is no fallback later.
        order.activated(QStringLiteral("viewer"));
        QVERIFY(!order.deactivated(QStringLiteral("viewer")));
        QCOMPARE(order.front(), QStringLiteral("viewer"));
    }

    void fallsBackToTheLatestStillActive()
    {
        ActivationOrder order;
        order.activated(QStringLiteral("a"));
        order.activated(QStringLiteral("b"));
        order.activated(QStringLiteral("c"));
        QVERIFY(order.deactivated(QStringLiteral("c")));
        QCOMPARE(order.front(), QStringLiteral("b"));
        QVERIFY(order.deactivated(QStringLiteral("b")));
        QCOMPARE(order.front(), QStringLiteral("a"));
    }
};

QTEST_APPLESS_MAIN(TestActivationOrder)
#include "tst_ActivationOrder.moc"
