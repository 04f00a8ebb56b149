// SPDX-License-Identifier: MIT
// The text helpers end to end: each helper brings back a real mousepad window that was the
// previous application (through the X11 workspace, as the application does), types its text
// there through the real clipboard and XTest, and the clipboard holds its old text again
// afterwards.

#include "helpers/TextHelperService.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "platform/desktop/DesktopEntries.h"
#include "platform/qt/ClipboardAdapter.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/XTestKeyInjector.h"
#include "platform/x11/XcbReply.h"

#include "FakeAccessibilityTrust.h"
#include "FakeAlertPresenter.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QProcess>
#include <QWidget>
#include <QtTest>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

using namespace Tessaline;
using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(Tessaline::TextHelperAction)

namespace {

const QString kEditorId = u"org.xfce.mousepad"_s;

// Runs xdotool and returns its standard output; fails the test when it fails.
QString xdotool(const QStringList& arguments)
{
    QProcess process;
    process.start(u"xdotool"_s, arguments);
    if (!process.waitForFinished(20000) || process.exitCode() != 0) {
        qWarning() << "xdotool" << arguments << "failed:" << process.readAllStandardError();
        return QString();
    }
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// The application's X11 workspace, counting the activations the helpers ask of it.
class CountingWorkspace final : public Workspace
{
public:
    explicit CountingWorkspace(Workspace& desktop) : m_desktop(desktop) {}

    int activations = 0;

    std::optional<RunningApplication> frontmostApplication() const override
    {
        return m_desktop.frontmostApplication();
    }
    QList<RunningApplication> runningApplications() const override
    {
        return m_desktop.runningApplications();
    }
    bool activate(const RunningApplication& application) override
    {
        ++activations;
        return m_desktop.activate(application);
    }

private:
    Workspace& m_desktop;
};

// Keycodes of every modifier that is down now, from the server's keymap.
QList<int> heldModifiers()
{
    xcb_connection_t* connection = X11Connection::connection();
    if (!connection)
        return {-1};
    const auto mapping =
        xcbReply(xcb_get_modifier_mapping_reply, connection, xcb_get_modifier_mapping(connection));
    const auto keymap = xcbReply(xcb_query_keymap_reply, connection, xcb_query_keymap(connection));
    QList<int> held;
    if (!mapping || !keymap)
        return {-1};
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(mapping.get());
    for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(mapping.get()); ++i) {
        if (codes[i] && (keymap->keys[codes[i] / 8] & (1u << (codes[i] % 8))))
            held.append(codes[i]);
    }
    return held;
}

} // namespace

class TestTextHelpersDesktop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void helperTypesIntoThePreviousApplication_data();
    void helperTypesIntoThePreviousApplication();

private:
    QString editorText();
    void clearEditor();

    QProcess m_editor;
    QString m_notesPath;
    QWidget m_panel; // stands in for the HUD that was in front when the helper was chosen
    QString m_panelWindow;
    QString m_editorWindow;
    DesktopEntries m_entries;
    X11Workspace m_desktop{m_entries};
    CountingWorkspace m_workspace{m_desktop};
    ClipboardAdapter m_clipboard;
    XTestKeyInjector m_keys;
    Testing::FakeAccessibilityTrust m_trust;
    Testing::FakeAlertPresenter m_alerts;
    TimerScheduler m_scheduler;
    std::unique_ptr<TextHelperService> m_service;
};

void TestTextHelpersDesktop::initTestCase()
{
    QCOMPARE(QGuiApplication::platformName(), u"xcb"_s);
    const QString session = qEnvironmentVariable("TESSALINE_SESSION_DIR");
    QVERIFY2(!session.isEmpty(), "run inside scripts/desktop-session");

    // A private home so that the editor starts with default settings and no session.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString home = session + u"/editor-home"_s;
    QVERIFY(QDir().mkpath(home));
    environment.insert(u"HOME"_s, home);
    environment.insert(u"XDG_CONFIG_HOME"_s, home + u"/.config"_s);
    environment.insert(u"XDG_DATA_HOME"_s, home + u"/.local/share"_s);
    environment.insert(u"GSETTINGS_BACKEND"_s, u"memory"_s);
    m_notesPath = session + u"/notes.txt"_s;
    QFile notes(m_notesPath);
    QVERIFY(notes.open(QIODevice::WriteOnly));
    notes.close();
    m_editor.setProcessEnvironment(environment);
    m_editor.start(u"mousepad"_s, {u"--disable-server"_s, notes.fileName()});
    QVERIFY2(m_editor.waitForStarted(10000), "mousepad did not start");
    m_editorWindow = xdotool({u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--pid"_s,
                              QString::number(m_editor.processId())})
                         .section(u'\n', 0, 0);
    QVERIFY2(!m_editorWindow.isEmpty(), "no mousepad window");
    // The workspace knows the editor by its desktop entry, as the tracker would report it.
    QTRY_VERIFY_WITH_TIMEOUT(!m_desktop.runningApplications(kEditorId).isEmpty(), 5000);

    m_panel.setWindowTitle(u"Tessaline helper test panel"_s);
    m_panel.resize(300, 200);
    m_panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_panel));
    m_panelWindow = QString::number(m_panel.winId());

    m_service = std::make_unique<TextHelperService>(
        [] {
            return TrackedApp{u"Mousepad"_s, kEditorId};
        },
        m_workspace, m_clipboard, m_keys, m_trust, m_alerts, m_scheduler);
}

void TestTextHelpersDesktop::cleanupTestCase()
{
    m_service.reset();
    xdotool({u"keyup"_s, u"alt"_s});
    m_editor.kill();
    m_editor.waitForFinished(5000);
}

// Saves the editor's document and returns the file's text: exactly what the editor holds.
QString TestTextHelpersDesktop::editorText()
{
    QFileInfo file(m_notesPath);
    const QDateTime before = file.lastModified();
    xdotool({u"windowactivate"_s, u"--sync"_s, m_editorWindow});
    xdotool({u"key"_s, u"--clearmodifiers"_s, u"ctrl+s"_s});
    for (int i = 0; i < 100; ++i) {
        QTest::qWait(50);
        file.refresh();
        if (file.lastModified() != before)
            break;
    }
    QTest::qWait(100); // let the write finish
    QFile notes(m_notesPath);
    if (!notes.open(QIODevice::ReadOnly))
        return u"(unreadable)"_s;
    return QString::fromUtf8(notes.readAll());
}

void TestTextHelpersDesktop::clearEditor()
{
    xdotool({u"windowactivate"_s, u"--sync"_s, m_editorWindow});
    xdotool({u"key"_s, u"--clearmodifiers"_s, u"ctrl+a"_s, u"Delete"_s});
    QTest::qWait(100);
}

void TestTextHelpersDesktop::helperTypesIntoThePreviousApplication_data()
{
    QTest::addColumn<TextHelperAction>("action");
    QTest::addColumn<QString>("clipboardText");
    QTest::addColumn<QString>("clipboardHtml");
    QTest::addColumn<bool>("holdAlt");
    QTest::addColumn<QString>("inserted");

    QTest::addRow("bullet") << TextHelperAction::Bullet << u"old clipboard text"_s << QString()
                            << false << u"\u2022 "_s;
    QTest::addRow("checklist") << TextHelperAction::Checklist << u"another old text"_s << QString()
                               << false << u"\u2610 "_s;
    QTest::addRow("divider") << TextHelperAction::Divider << u"old"_s << QString() << false
                             << u"\n------------------------------\n"_s;
    QTest::addRow("plain text of rich clipboard")
        << TextHelperAction::PastePlainText << u"Bold words, plain"_s
        << u"<b>Bold words</b>, plain"_s << false << u"Bold words, plain"_s;
    // Alt still held from the hotkey that opened the HUD must not turn Control+V into
    // Control+Alt+V.
    QTest::addRow("bullet with Alt held")
        << TextHelperAction::Bullet << u"kept"_s << QString() << true << u"\u2022 "_s;
}

void TestTextHelpersDesktop::helperTypesIntoThePreviousApplication()
{
    QFETCH(TextHelperAction, action);
    QFETCH(QString, clipboardText);
    QFETCH(QString, clipboardHtml);
    QFETCH(bool, holdAlt);
    QFETCH(QString, inserted);

    clearEditor();
    QCOMPARE(editorText(), QString());

    auto* data = new QMimeData;
    data->setText(clipboardText);
    if (!clipboardHtml.isEmpty())
        data->setHtml(clipboardHtml);
    QGuiApplication::clipboard()->setMimeData(data);

    // Our panel is in front, as the HUD is when a helper is chosen.
    xdotool({u"windowactivate"_s, u"--sync"_s, m_panelWindow});
    if (holdAlt)
        xdotool({u"keydown"_s, u"alt"_s});
    const int activations = m_workspace.activations;

    m_service->perform(action);
    QCOMPARE(m_workspace.activations, activations + 1);
    QTest::qWait(TextHelperService::kRestoreDelayMs + 400);
    if (holdAlt)
        xdotool({u"keyup"_s, u"alt"_s});

    QVERIFY(m_alerts.shown.isEmpty());
    QCOMPARE(heldModifiers(), QList<int>());
    // The clipboard has its old text back, as plain text only.
    const QMimeData* after = QGuiApplication::clipboard()->mimeData();
    QVERIFY(after);
    QCOMPARE(after->text(), clipboardText);
    QVERIFY(!after->hasHtml());

    QCOMPARE(editorText(), inserted);
}

QTEST_MAIN(TestTextHelpersDesktop)
#include "tst_texthelpers.moc"
