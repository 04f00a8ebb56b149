// SPDX-License-Identifier: MIT
#include "FakeDesktopEntryLookup.h"
#include "platform/desktop/DesktopEntryLookup.h"
#include "platform/x11/WindowAppResolver.h"

#include <QHash>
#include <QtTest>

using Tessaline::ClientWindow;
using Tessaline::DesktopEntryInfo;
using Tessaline::DesktopEntryLookup;
using Tessaline::RunningApplication;
using Tessaline::WindowApp;
using Tessaline::WindowAppResolver;

namespace {

using TableLookup = Tessaline::Testing::FakeDesktopEntryLookup;

const QString kOwnID = QStringLiteral("org.tessaline.Tessaline");
constexpr qint64 kOwnPid = 4242;

ClientWindow window(quint32 id, qint64 pid, const QString& instance, const QString& wmClass)
{
    ClientWindow w;
    w.id = id;
    w.pid = pid;
    w.wmInstance = instance;
    w.wmClass = wmClass;
    return w;
}

} // namespace

class TestWindowAppResolver : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void identityFollowsTheFirstSourceThatAnswers_data();
    void identityFollowsTheFirstSourceThatAnswers();
    void windowsOfOneProcessAreOneApplication();
    void separateProcessesOfOneAppStaySeparate();
    void windowsWithoutPidGroupByBundleID();
    void regularNeedsAnOrdinaryTaskbarWindow_data();
    void regularNeedsAnOrdinaryTaskbarWindow();
    void tessalineOwnWindowsCarryItsBundleID_data();
    void tessalineOwnWindowsCarryItsBundleID();
    void windowWithoutAnyIdentityHasNoBundleIDNorName();

private:
    TableLookup m_entries;
};

void TestWindowAppResolver::init()
{
    m_entries = TableLookup{};
    m_entries.names.insert(QStringLiteral("org.xfce.mousepad"), QStringLiteral("Mousepad"));
    m_entries.names.insert(QStringLiteral("debian-xterm"), QStringLiteral("XTerm"));
    m_entries.names.insert(QStringLiteral("org.kde.kate"), QStringLiteral("Kate"));
    m_entries.startupClasses.insert(QStringLiteral("XTerm"), QStringLiteral("debian-xterm"));
}

void TestWindowAppResolver::identityFollowsTheFirstSourceThatAnswers_data()
{
    QTest::addColumn<QString>("gtkID");
    QTest::addColumn<QString>("kdeFile");
    QTest::addColumn<QString>("instance");
    QTest::addColumn<QString>("wmClass");
    QTest::addColumn<std::optional<QString>>("bundleID");
    QTest::addColumn<std::optional<QString>>("name");

    using OS = std::optional<QString>;
    QTest::addRow("GTK application id names the entry")
        << "org.xfce.mousepad"
        << ""
        << "mousepad"
        << "Mousepad" << OS(u"org.xfce.mousepad"_qs) << OS(u"Mousepad"_qs);
    QTest::addRow("GTK id wins over the KDE desktop file")
        << "org.xfce.mousepad"
        << "org.kde.kate"
        << "x"
        << "X" << OS(u"org.xfce.mousepad"_qs) << OS(u"Mousepad"_qs);
    QTest::addRow("KDE desktop file, suffix dropped")
        << ""
        << "org.kde.kate.desktop"
        << "kate"
        << "kate" << OS(u"org.kde.kate"_qs) << OS(u"Kate"_qs);
    QTest::addRow("KDE desktop file without suffix")
        << ""
        << "org.kde.kate"
        << "kate"
        << "kate" << OS(u"org.kde.kate"_qs) << OS(u"Kate"_qs);
    QTest::addRow("WM_CLASS claimed by StartupWMClass")
        << ""
        << ""
        << "xterm"
        << "XTerm" << OS(u"debian-xterm"_qs) << OS(u"XTerm"_qs);
    QTest::addRow("unknown WM_CLASS: class lower-cased, class as name")
        << ""
        << ""
        << "foo-bar"
        << "Foo-Bar" << OS(u"foo-bar"_qs) << OS(u"Foo-Bar"_qs);
    QTest::addRow("GTK id without an installed entry: WM_CLASS class as name")
        << "org.example.Tool"
        << ""
        << "tool"
        << "Tool" << OS(u"org.example.Tool"_qs) << OS(u"Tool"_qs);
    QTest::addRow("only an instance") << ""
                                      << ""
                                      << "solo"
                                      << "" << OS(u"solo"_qs) << OS(u"solo"_qs);
}

void TestWindowAppResolver::identityFollowsTheFirstSourceThatAnswers()
{
    QFETCH(QString, gtkID);
    QFETCH(QString, kdeFile);
    QFETCH(QString, instance);
    QFETCH(QString, wmClass);
    QFETCH(std::optional<QString>, bundleID);
    QFETCH(std::optional<QString>, name);

    ClientWindow w = window(10, 100, instance, wmClass);
    w.gtkApplicationId = gtkID;
    w.kdeDesktopFile = kdeFile;
    const WindowAppResolver resolver(m_entries, kOwnPid, kOwnID);
    const QList<WindowApp> apps = resolver.applications({w});
    QCOMPARE(apps.size(), 1);
    QCOMPARE(apps[0].application.bundleIdentifier, bundleID);
    QCOMPARE(apps[0].application.localizedName, name);
    QCOMPARE(apps[0].application.processId, qint64(100));
    QCOMPARE(apps[0].windows, QList<quint32>{10});
}

void TestWindowAppResolver::windowsOfOneProcessAreOneApplication()
{
    // A GTK dialog carries no application id; its process's main window does.
    ClientWindow dialog = window(1, 300, QStringLiteral("mousepad"), QStringLiteral("Mousepad"));
    dialog.normalType = false;
    ClientWindow main = window(2, 300, QStringLiteral("mousepad"), QStringLiteral("Mousepad"));
    main.gtkApplicationId = QStringLiteral("org.xfce.mousepad");
    const ClientWindow other = window(3, 301, QStringLiteral("xterm"), QStringLiteral("XTerm"));

    const WindowAppResolver resolver(m_entries, kOwnPid, kOwnID);
    const QList<WindowApp> apps = resolver.applications({dialog, other, main});
    QCOMPARE(apps.size(), 2);
    QCOMPARE(apps[0].application,
             (RunningApplication{u"Mousepad"_qs, u"org.xfce.mousepad"_qs, 300, true}));
    QCOMPARE(apps[0].windows, (QList<quint32>{1, 2}));
    QCOMPARE(apps[1].application, (RunningApplication{u"XTerm"_qs, u"debian-xterm"_qs, 301, true}));
    QCOMPARE(apps[1].windows, QList<quint32>{3});
}

void TestWindowAppResolver::separateProcessesOfOneAppStaySeparate()
{
    const WindowAppResolver resolver(m_entries, kOwnPid, kOwnID);
    const QList<WindowApp> apps = resolver.applications(
        {window(1, 500, u"xterm"_qs, u"XTerm"_qs), window(2, 501, u"xterm"_qs, u"XTerm"_qs)});
    QCOMPARE(apps.size(), 2);
    QCOMPARE(apps[0].application.processId, qint64(500));
    QCOMPARE(apps[1].application.processId, qint64(501));
    QCOMPARE(apps[1].application.bundleIdentifier, std::optional<QString>(u"debian-xterm"_qs));
}

void TestWindowAppResolver::windowsWithoutPidGroupByBundleID()
{
    const WindowAppResolver resolver(m_entries, kOwnPid, kOwnID);
    const QList<WindowApp> apps = resolver.applications({window(1, 0, u"xterm"_qs, u"XTerm"_qs),
                                                         window(2, 0, u"remote"_qs, u"Remote"_qs),
                                                         window(3, 0, u"xterm"_qs, u"XTerm"_qs)});
    QCOMPARE(apps.size(), 2);
    QCOMPARE(apps[0].windows, (QList<quint32>{1, 3}));
    QCOMPARE(apps[0].application.processId, qint64(0));
    QCOMPARE(apps[1].application.bundleIdentifier, std::optional<QString>(u"remote"_qs));
}

void TestWindowAppResolver::regularNeedsAnOrdinaryTaskbarWindow_data()
{
    QTest::addColumn<QList<bool>>("normalTypes");
    QTest::addColumn<QList<bool>>("skipTaskbar");
    QTest::addColumn<bool>("regular");

    QTest::addRow("normal window") << QList<bool>{true} << QList<bool>{false} << true;
    QTest::addRow("dock or dialog only") << QList<bool>{false} << QList<bool>{false} << false;
    QTest::addRow("normal but skips the taskbar")
        << QList<bool>{true} << QList<bool>{true} << false;
    QTest::addRow("a dialog and a normal window")
        << QList<bool>{false, true} << QList<bool>{false, false} << true;
    QTest::addRow("skipped normal and a utility")
        << QList<bool>{true, false} << QList<bool>{true, false} << false;
}

void TestWindowAppResolver::regularNeedsAnOrdinaryTaskbarWindow()
{
    QFETCH(QList<bool>, normalTypes);
    QFETCH(QList<bool>, skipTaskbar);
    QFETCH(bool, regular);

    QList<ClientWindow> windows;
    for (qsizetype i = 0; i < normalTypes.size(); ++i) {
        ClientWindow w = window(quint32(i + 1), 700, u"panel"_qs, u"Panel"_qs);
        w.normalType = normalTypes[i];
        w.skipTaskbar = skipTaskbar[i];
        windows.append(w);
    }
    const WindowAppResolver resolver(m_entries, kOwnPid, kOwnID);
    const QList<WindowApp> apps = resolver.applications(windows);
    QCOMPARE(apps.size(), 1);
    QCOMPARE(apps[0].application.isRegular, regular);
}

void TestWindowAppResolver::tessalineOwnWindowsCarryItsBundleID_data()
{
    QTest::addColumn<qint64>("pid");
    QTest::addColumn<QString>("wmClass");

    QTest::addRow("own process, any class") << kOwnPid << u"tst_tracker"_qs;
    QTest::addRow("own process with an entry's class") << kOwnPid << u"XTerm"_qs;
    QTest::addRow("another process with Tessaline's class")
        << qint64(9) << u"org.tessaline.Tessaline"_qs;
}

void TestWindowAppResolver::tessalineOwnWindowsCarryItsBundleID()
{
    QFETCH(qint64, pid);
    QFETCH(QString, wmClass);
    const WindowAppResolver resolver(m_entries, kOwnPid, kOwnID);
    const QList<WindowApp> apps =
        resolver.applications({window(5, pid, wmClass.toLower(), wmClass)});
    QCOMPARE(apps.size(), 1);
    QCOMPARE(apps[0].application.bundleIdentifier, std::optional<QString>(kOwnID));
}

void TestWindowAppResolver::windowWithoutAnyIdentityHasNoBundleIDNorName()
{
    const WindowAppResolver resolver(m_entries, kOwnPid, kOwnID);
    const QList<WindowApp> apps = resolver.applications({window(8, 800, QString(), QString())});
    QCOMPARE(apps.size(), 1);
    QVERIFY(!apps[0].application.bundleIdentifier.has_value());
    QVERIFY(!apps[0].application.localizedName.has_value());
    QVERIFY(apps[0].application.isRegular);
}

QTEST_GUILESS_MAIN(TestWindowAppResolver)
#include "tst_WindowAppResolver.moc"
