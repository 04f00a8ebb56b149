// SPDX-License-Identifier: MIT
// The accessibility bus's applications joined with the compositor's window list.
#include "context/ToplevelApplications.h"

#include <QtTest>

using namespace Tessaline;

namespace {

RunningApplication app(const char* id, const char* name, qint64 pid = 0)
{
    RunningApplication application;
    application.bundleIdentifier = QString::fromUtf8(id);
    application.localizedName = QString::fromUtf8(name);
    application.processId = pid;
    return application;
}

} // namespace

class TestToplevelApplications : public QObject
{
    Q_OBJECT

private slots:
    void sameByIdOrName()
    {
        QVERIFY(ToplevelApplications::same(app("org.xfce.mousepad", "Mousepad", 7),
                                           app("org.xfce.mousepad", "mousepad")));
        // A Qt application whose window id is its program name, known on the bus by its name.
        QVERIFY(ToplevelApplications::same(app("scan_qt_menu_app", "scan_qt_menu_app", 9),
                                           app("scan-qt", "Scan_Qt_Menu_App")));
        QVERIFY(!ToplevelApplications::same(app("foot", "Foot"),
                                            app("org.xfce.mousepad", "Mousepad", 7)));
        RunningApplication nameless;
        QVERIFY(!ToplevelApplications::same(nameless, nameless));
        RunningApplication emptyName = app("a", "");
        QVERIFY(!ToplevelApplications::same(emptyName, app("b", "")));
    }

    void mergedAddsOnlyWhatTheBusDoesNotKnow()
    {
        const QList<RunningApplication> accessible{app("org.xfce.mousepad", "Mousepad", 7)};
        const QList<RunningApplication> windows{app("org.xfce.mousepad", "Mousepad"),
                                                app("foot", "Foot"), app("foot", "Foot")};
        const QList<RunningApplication> all = ToplevelApplications::merged(accessible, windows);
        QCOMPARE(all.size(), 2);
        QCOMPARE(all.at(0), accessible.first()); // the bus's, with its process id
        QCOMPARE(all.at(1), app("foot", "Foot"));
        QCOMPARE(ToplevelApplications::merged({}, {}).size(), 0);
    }

    void frontPrefersTheBusView()
    {
        const RunningApplication mousepad = app("org.xfce.mousepad", "Mousepad", 7);
        const RunningApplication qtApp = app("scan_qt_menu_app", "scan_qt_menu_app", 9);
        const QList<RunningApplication> accessible{mousepad, qtApp};
        // The compositor and the bus agree.
        QCOMPARE(
            ToplevelApplications::front(app("org.xfce.mousepad", "Mousepad"), mousepad, accessible),
            mousepad);
        // The bus's last event is late: the compositor's front wins, as the bus knows it.
        QCOMPARE(ToplevelApplications::front(app("scan_qt_menu_app", "scan_qt_menu_app"), mousepad,
                                             accessible),
                 qtApp);
        // An application the bus does not know.
        QCOMPARE(ToplevelApplications::front(app("foot", "Foot"), mousepad, accessible),
                 app("foot", "Foot"));
        QCOMPARE(ToplevelApplications::front(app("foot", "Foot"), std::nullopt, {}),
                 app("foot", "Foot"));
    }
};

QTEST_GUILESS_MAIN(TestToplevelApplications)
#include "tst_ToplevelApplications.moc"
