// SPDX-License-Identifier: MIT
// Drives the X11 workspace and the frontmost-app tracker against real applications on a real X
// server with a window manager. The test process plays Tessaline: its own windows carry
// Tessaline's bundle id. Run by run_workspace_tracker.sh, which starts a second process to check
// that the tracked app survives a restart.
#include "context/FrontmostAppTracker.h"
#include "platform/desktop/DesktopEntries.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/XcbReply.h"
#include "platform/x11/XcbWindowProperties.h"
#include "settings/DefaultsStore.h"

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QRasterWindow>
#include <QSignalSpy>
#include <QtTest>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

using namespace Tessaline;

namespace Tessaline {
// Lets failed comparisons print the app.
char* toString(const TrackedApp& app)
{
    return QTest::toString(app.name + QStringLiteral(" / ") +
                           app.bundleID.value_or(QStringLiteral("(none)")));
}
} // namespace Tessaline

namespace {

constexpr int kAppStartMs = 20000;
constexpr int kSwitchMs = 5000;

const QString kMousepadID = QStringLiteral("org.xfce.mousepad");
const QString kXTermID = QStringLiteral("debian-xterm");
const QString kOwnID = QStringLiteral("org.tessaline.Tessaline");

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(10000))
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

/// The first visible window of a process, as xdotool finds it.
QString visibleWindowOf(qint64 pid)
{
    return run(QStringLiteral("xdotool"),
               {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                QString::number(pid)})
        .section(QLatin1Char('\n'), 0, 0);
}

/// Every visible window of a process, as xdotool finds them.
QStringList visibleWindowsOf(qint64 pid)
{
    return run(QStringLiteral("xdotool"),
               {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                QString::number(pid)})
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString activeWindowId()
{
    return run(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow")});
}

bool activateWindow(const QString& window)
{
    return QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowactivate"),
                                                         QStringLiteral("--sync"), window}) == 0;
}

std::optional<RunningApplication> appWithPid(const Workspace& workspace, qint64 pid)
{
    for (const RunningApplication& app : workspace.runningApplications()) {
        if (app.processId == pid)
            return app;
    }
    return std::nullopt;
}

std::optional<QString> frontmostBundleID(const Workspace& workspace)
{
    const std::optional<RunningApplication> front = workspace.frontmostApplication();
    return front ? front->bundleIdentifier : std::nullopt;
}

/// Writes _NET_ACTIVE_WINDOW on the root window directly, as a window manager does, over a
/// connection of its own.
bool writeActiveWindow(xcb_window_t window)
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return false;
    }
    const char* name = "_NET_ACTIVE_WINDOW";
    const auto atom = xcbReply(xcb_intern_atom_reply, connection,
                               xcb_intern_atom(connection, 0, uint16_t(std::strlen(name)), name));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    bool written = false;
    if (atom) {
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(
            connection, xcb_change_property_checked(connection, XCB_PROP_MODE_REPLACE, root,
                                                    atom->atom, XCB_ATOM_WINDOW, 32, 1, &window)));
        written = !error;
    }
    xcb_disconnect(connection);
    return written;
}

/// A window of this process: what Tessaline's own panel is to the tracker.
class OwnWindow : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent*) override {}
};

} // namespace

class TestWorkspaceTracker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void runningApplicationsIdentifyRealApps();
    void trackerFollowsActivationAndIgnoresTessaline();
    void activateBringsTheAppToTheFront();
    void activateBringsBackTheAppsMostRecentWindow();
    void windowTypeDecidesWhetherAnAppIsRegular();
    void clearedOrRepeatedActiveWindowIsNotAnnounced();
    void windowsThatAreGoneAreLeftOut();
    void savedAppIsRestoredAfterRestart();

private:
    void startApps();
    DesktopEntries m_entries;
    std::unique_ptr<X11Workspace> m_workspace;
    QProcess m_mousepad;
    QProcess m_xterm;
    bool m_appsStarted = false;
};

void TestWorkspaceTracker::initTestCase()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    m_workspace = std::make_unique<X11Workspace>(m_entries);
    QVERIFY(m_workspace->isAvailable());
}

void TestWorkspaceTracker::startApps()
{
    if (m_appsStarted)
        return;
    m_appsStarted = true;
    m_mousepad.start(QStringLiteral("mousepad"), {QStringLiteral("--disable-server")});
    m_xterm.start(QStringLiteral("xterm"), {});
    QVERIFY(m_mousepad.waitForStarted());
    QVERIFY(m_xterm.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(appWithPid(*m_workspace, m_mousepad.processId()).has_value() &&
                                 appWithPid(*m_workspace, m_xterm.processId()).has_value() &&
                                 !visibleWindowOf(m_mousepad.processId()).isEmpty() &&
                                 !visibleWindowOf(m_xterm.processId()).isEmpty(),
                             kAppStartMs);
}

void TestWorkspaceTracker::cleanupTestCase()
{
    for (QProcess* process : {&m_mousepad, &m_xterm}) {
        if (process->state() != QProcess::NotRunning) {
            process->terminate();
            if (!process->waitForFinished(3000))
                process->kill();
            process->waitForFinished(3000);
        }
    }
}

void TestWorkspaceTracker::runningApplicationsIdentifyRealApps()
{
    startApps();
    const auto mousepad = appWithPid(*m_workspace, m_mousepad.processId());
    QVERIFY(mousepad);
    QCOMPARE(mousepad->bundleIdentifier, std::optional<QString>(kMousepadID));
    QCOMPARE(mousepad->localizedName, std::optional<QString>(QStringLiteral("Mousepad")));
    QVERIFY(mousepad->isRegular);

    const auto xterm = appWithPid(*m_workspace, m_xterm.processId());
    QVERIFY(xterm);
    QCOMPARE(xterm->bundleIdentifier, std::optional<QString>(kXTermID));
    QCOMPARE(xterm->localizedName, std::optional<QString>(QStringLiteral("XTerm")));
    QVERIFY(xterm->isRegular);

    QCOMPARE(m_workspace->runningApplications(kXTermID).size(), 1);
    QCOMPARE(m_workspace->runningApplications(kXTermID).first().processId, m_xterm.processId());
}

void TestWorkspaceTracker::trackerFollowsActivationAndIgnoresTessaline()
{
    startApps();
    const QString mousepadWindow = visibleWindowOf(m_mousepad.processId());
    const QString xtermWindow = visibleWindowOf(m_xterm.processId());

    // Start from XTerm in front, with every pending focus change of the start-up handled.
    QVERIFY(activateWindow(xtermWindow));
    QTRY_COMPARE_WITH_TIMEOUT(frontmostBundleID(*m_workspace), std::optional<QString>(kXTermID),
                              kSwitchMs);
    QTest::qWait(300);

    // A fresh user: nothing saved yet, so a restored app can only come from this run.
    DefaultsStore defaults;
    QVERIFY(!QFile::exists(defaults.filePath()) ||
            !defaults.contains(QStringLiteral("FrontmostAppTracker.lastAppName")));
    FrontmostAppTracker tracker(*m_workspace, defaults);
    QCOMPARE(tracker.current(), TrackedApp::placeholder());
    tracker.start();
    QCOMPARE(tracker.current(), (TrackedApp{QStringLiteral("XTerm"), kXTermID}));

    // From here on every change reaches the tracker through activation notifications.
    QSignalSpy activations(m_workspace.get(), &Workspace::applicationActivated);
    QVERIFY(activateWindow(mousepadWindow));
    QTRY_COMPARE_WITH_TIMEOUT(tracker.current(),
                              (TrackedApp{QStringLiteral("Mousepad"), kMousepadID}), kSwitchMs);

    activations.clear();
    QVERIFY(activateWindow(xtermWindow));
    QTRY_COMPARE_WITH_TIMEOUT(tracker.current(), (TrackedApp{QStringLiteral("XTerm"), kXTermID}),
                              kSwitchMs);
    // The window manager clears the property between two windows and may write a value twice;
    // the switch is still announced once.
    QTest::qWait(300);
    QCOMPARE(activations.size(), 1);
    QCOMPARE(activations.first().first().value<std::optional<RunningApplication>>()->processId,
             m_xterm.processId());

    // Tessaline's own window becomes active: the workspace says so, the tracker keeps XTerm.
    OwnWindow own;
    own.resize(200, 120);
    own.show();
    QVERIFY(QTest::qWaitForWindowExposed(&own));
    activations.clear();
    QVERIFY(activateWindow(QString::number(own.winId())));
    QTRY_COMPARE_WITH_TIMEOUT(frontmostBundleID(*m_workspace), std::optional<QString>(kOwnID),
                              kSwitchMs);
    QTRY_VERIFY_WITH_TIMEOUT(!activations.isEmpty(), kSwitchMs);
    QCOMPARE(
        activations.last().first().value<std::optional<RunningApplication>>()->bundleIdentifier,
        std::optional<QString>(kOwnID));
    QTest::qWait(100);
    QCOMPARE(tracker.current(), (TrackedApp{QStringLiteral("XTerm"), kXTermID}));
    own.hide();

    QCOMPARE(defaults.stringValue(QStringLiteral("FrontmostAppTracker.lastAppName")),
             std::optional<QString>(QStringLiteral("XTerm")));
    QCOMPARE(defaults.stringValue(QStringLiteral("FrontmostAppTracker.lastBundleID")),
             std::optional<QString>(kXTermID));
}

void TestWorkspaceTracker::activateBringsTheAppToTheFront()
{
    startApps();
    QVERIFY(activateWindow(visibleWindowOf(m_xterm.processId())));
    QTRY_COMPARE_WITH_TIMEOUT(frontmostBundleID(*m_workspace), std::optional<QString>(kXTermID),
                              kSwitchMs);

    const auto mousepad = appWithPid(*m_workspace, m_mousepad.processId());
    QVERIFY(mousepad);
    QVERIFY(m_workspace->activate(*mousepad));
    QTRY_COMPARE_WITH_TIMEOUT(frontmostBundleID(*m_workspace), std::optional<QString>(kMousepadID),
                              kSwitchMs);
    QCOMPARE(m_workspace->frontmostApplication()->processId, m_mousepad.processId());

    const auto xterm = appWithPid(*m_workspace, m_xterm.processId());
    QVERIFY(xterm);
    QVERIFY(m_workspace->activate(*xterm));
    QTRY_COMPARE_WITH_TIMEOUT(frontmostBundleID(*m_workspace), std::optional<QString>(kXTermID),
                              kSwitchMs);

    // An app that is not running cannot be activated.
    RunningApplication gone = *xterm;
    gone.processId = 999999;
    QVERIFY(!m_workspace->activate(gone));
}

void TestWorkspaceTracker::activateBringsBackTheAppsMostRecentWindow()
{
    startApps();
    const QString first = visibleWindowOf(m_mousepad.processId());
    const QString xtermWindow = visibleWindowOf(m_xterm.processId());
    QVERIFY(activateWindow(first));
    QTRY_COMPARE_WITH_TIMEOUT(activeWindowId(), first, kSwitchMs);
    // Mousepad opens a second window of the same process.
    QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                               {QStringLiteral("key"), QStringLiteral("ctrl+shift+n")}),
             0);
    QTRY_COMPARE_WITH_TIMEOUT(visibleWindowsOf(m_mousepad.processId()).size(), 2, kSwitchMs);
    QStringList windows = visibleWindowsOf(m_mousepad.processId());
    windows.removeAll(first);
    QCOMPARE(windows.size(), 1);
    const QString second = windows.first();

    const auto mousepad = appWithPid(*m_workspace, m_mousepad.processId());
    QVERIFY(mousepad);
    for (const QString& recent : {first, second, first}) {
        // The workspace learns the order from the notifications: give the event loop time to
        // deliver each switch, as it has between a user's clicks.
        QVERIFY(activateWindow(recent));
        QTRY_COMPARE_WITH_TIMEOUT(activeWindowId(), recent, kSwitchMs);
        QTest::qWait(200);
        QVERIFY(activateWindow(xtermWindow));
        QTRY_COMPARE_WITH_TIMEOUT(activeWindowId(), xtermWindow, kSwitchMs);
        // The other window is raised above it without being activated: being on top is not
        // what counts.
        const QString other = recent == first ? second : first;
        QCOMPARE(
            QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowraise"), other}),
            0);
        QTest::qWait(200);
        QCOMPARE(activeWindowId(), xtermWindow);
        QVERIFY(m_workspace->activate(*mousepad));
        QTRY_COMPARE_WITH_TIMEOUT(activeWindowId(), recent, kSwitchMs);
    }
}

void TestWorkspaceTracker::windowTypeDecidesWhetherAnAppIsRegular()
{
    startApps();
    const QString xtermWindow = visibleWindowOf(m_xterm.processId());
    auto setType = [&](const char* type) {
        return QProcess::execute(QStringLiteral("xprop"),
                                 {QStringLiteral("-id"), xtermWindow, QStringLiteral("-f"),
                                  QStringLiteral("_NET_WM_WINDOW_TYPE"), QStringLiteral("32a"),
                                  QStringLiteral("-set"), QStringLiteral("_NET_WM_WINDOW_TYPE"),
                                  QString::fromLatin1(type)}) == 0;
    };
    QVERIFY(setType("_NET_WM_WINDOW_TYPE_DOCK"));
    QTRY_VERIFY_WITH_TIMEOUT(!appWithPid(*m_workspace, m_xterm.processId())->isRegular, kSwitchMs);
    QVERIFY(appWithPid(*m_workspace, m_mousepad.processId())->isRegular);
    QVERIFY(setType("_NET_WM_WINDOW_TYPE_NORMAL"));
    QTRY_VERIFY_WITH_TIMEOUT(appWithPid(*m_workspace, m_xterm.processId())->isRegular, kSwitchMs);
}

void TestWorkspaceTracker::clearedOrRepeatedActiveWindowIsNotAnnounced()
{
    startApps();
    const QString xtermWindow = visibleWindowOf(m_xterm.processId());
    QVERIFY(activateWindow(xtermWindow));
    QTRY_COMPARE_WITH_TIMEOUT(frontmostBundleID(*m_workspace), std::optional<QString>(kXTermID),
                              kSwitchMs);
    QTest::qWait(200);

    QSignalSpy activations(m_workspace.get(), &Workspace::applicationActivated);
    // Each write is its own notification: the window manager's "none" between two windows,
    // then the same window again.
    QVERIFY(writeActiveWindow(XCB_WINDOW_NONE));
    QTest::qWait(200);
    QVERIFY(writeActiveWindow(xtermWindow.toUInt()));
    QTest::qWait(200);
    QVERIFY(writeActiveWindow(xtermWindow.toUInt()));
    QTest::qWait(200);
    QCOMPARE(activations.size(), 0);

    // A real switch is still announced.
    QVERIFY(activateWindow(visibleWindowOf(m_mousepad.processId())));
    QTRY_COMPARE_WITH_TIMEOUT(activations.size(), 1, kSwitchMs);
    QCOMPARE(activations.first().first().value<std::optional<RunningApplication>>()->processId,
             m_mousepad.processId());
}

void TestWorkspaceTracker::windowsThatAreGoneAreLeftOut()
{
    startApps();
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    QVERIFY(!xcb_connection_has_error(connection));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    XcbWindowProperties properties(connection, root);

    const xcb_window_t xterm = visibleWindowOf(m_xterm.processId()).toUInt();
    // A window id that no client owns, as when a window closes after the list was read.
    const xcb_window_t gone = xcb_generate_id(connection);
    const QList<ClientWindow> described = properties.describe({gone, xterm});
    xcb_disconnect(connection);

    QCOMPARE(described.size(), 1);
    QCOMPARE(described.first().id, xterm);
    QCOMPARE(described.first().wmClass, QStringLiteral("XTerm"));
    QCOMPARE(described.first().pid, m_xterm.processId());
}

void TestWorkspaceTracker::savedAppIsRestoredAfterRestart()
{
    // Run as a second process after the others: Tessaline's own window is in front, so start()
    // keeps the app read back from the defaults.
    OwnWindow own;
    own.resize(200, 120);
    own.show();
    QVERIFY(QTest::qWaitForWindowExposed(&own));
    QVERIFY(activateWindow(QString::number(own.winId())));
    QTRY_COMPARE_WITH_TIMEOUT(frontmostBundleID(*m_workspace), std::optional<QString>(kOwnID),
                              kSwitchMs);

    DefaultsStore defaults;
    FrontmostAppTracker tracker(*m_workspace, defaults);
    QCOMPARE(tracker.current(), (TrackedApp{QStringLiteral("XTerm"), kXTermID}));
    tracker.start();
    QTest::qWait(100);
    QCOMPARE(tracker.current(), (TrackedApp{QStringLiteral("XTerm"), kXTermID}));
}

QTEST_MAIN(TestWorkspaceTracker)
#include "tst_WorkspaceTracker.moc"
