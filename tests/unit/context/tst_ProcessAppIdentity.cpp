// SPDX-License-Identifier: MIT
// Which installed application a process is, from its systemd unit, its Flatpak sandbox, its
// executable or its accessible name, read from a /proc of fixtures.
#include "FakeDesktopEntryLookup.h"
#include "platform/desktop/ProcessAppIdentity.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Tessaline;
using Tessaline::Testing::FakeDesktopEntryLookup;

class TestProcessAppIdentity : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_proc.emplace().isValid());
        m_entries = FakeDesktopEntryLookup{};
        m_entries.names = {{u"org.xfce.mousepad"_qs, u"Mousepad"_qs},
                           {u"org.gnome.TextEditor"_qs, u"Text Editor"_qs},
                           {u"org.example.Sandboxed"_qs, u"Sandboxed"_qs},
                           {u"firefox_firefox"_qs, u"Firefox"_qs},
                           {u"org.kde.kate"_qs, u"Kate"_qs}};
        m_entries.programs = {{u"mousepad"_qs, u"org.xfce.mousepad"_qs}};
        m_entries.startupClasses = {{u"kate"_qs, u"org.kde.kate"_qs}};
    }

    void unitCandidates_data()
    {
        QTest::addColumn<QString>("cgroup");
        QTest::addColumn<QStringList>("candidates");
        QTest::addRow("launched by a desktop")
            << u"0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
               "app-gnome-org.gnome.TextEditor-4242.scope\n"_qs
            << QStringList{u"gnome-org.gnome.TextEditor"_qs, u"org.gnome.TextEditor"_qs};
        QTest::addRow("no launcher word")
            << u"0::/user.slice/user@1000.service/app.slice/app-org.xfce.mousepad-77.scope\n"_qs
            << QStringList{u"org.xfce.mousepad"_qs};
        QTest::addRow("flatpak")
            << u"0::/user.slice/user@1000.service/app.slice/app-flatpak-org.example.Sandboxed-9.scope"_qs
            << QStringList{u"flatpak-org.example.Sandboxed"_qs, u"org.example.Sandboxed"_qs};
        QTest::addRow("service with an instance")
            << u"0::/user.slice/user@1000.service/app.slice/app-org.kde.kate@12ab.service"_qs
            << QStringList{u"org.kde.kate"_qs};
        QTest::addRow("escaped dash")
            << u"0::/app.slice/app-kde-org.example.my\\x2dtool-3.scope"_qs
            << QStringList{u"kde-org.example.my-tool"_qs, u"org.example.my-tool"_qs};
        QTest::addRow("snap")
            << u"0::/user.slice/user@1000.service/app.slice/"
               "snap.firefox.firefox-0a1b2c3d-1111-2222-3333-444455556666.scope"_qs
            << QStringList{u"firefox_firefox"_qs};
        QTest::addRow("a session, not an app")
            << u"0::/user.slice/user-1000.slice/session-2.scope"_qs << QStringList{};
        QTest::addRow("container root") << u"0::/\n"_qs << QStringList{};
        QTest::addRow("empty") << QString() << QStringList{};
    }
    void unitCandidates()
    {
        QFETCH(QString, cgroup);
        QFETCH(QStringList, candidates);
        QCOMPARE(ProcessAppIdentity::unitCandidates(cgroup), candidates);
    }

    void flatpakApplication()
    {
        QCOMPARE(
            ProcessAppIdentity::flatpakApplication(
                u"[Runtime]\nname=org.example.Platform\n\n[Application]\nname=org.example.Sandboxed\nruntime=x\n"_qs),
            std::optional<QString>(u"org.example.Sandboxed"_qs));
        QCOMPARE(
            ProcessAppIdentity::flatpakApplication(u"[Runtime]\nname=org.example.Platform\n"_qs),
            std::nullopt);
        QCOMPARE(ProcessAppIdentity::flatpakApplication(QString()), std::nullopt);
    }

    void theUnitWinsWhenItNamesAnEntry()
    {
        process(10, u"0::/app.slice/app-gnome-org.gnome.TextEditor-4242.scope\n"_qs, {},
                u"mousepad"_qs);
        QCOMPARE(identity().bundleIdentifier(10, u"gnome-text-editor"_qs),
                 std::optional<QString>(u"org.gnome.TextEditor"_qs));
    }

    void aUnitOfNoEntryFallsThroughToTheExecutable()
    {
        process(11, u"0::/app.slice/app-gnome-org.unknown.App-1.scope\n"_qs, {}, u"mousepad"_qs);
        QCOMPARE(identity().bundleIdentifier(11, QString()),
                 std::optional<QString>(u"org.xfce.mousepad"_qs));
    }

    void flatpakSandbox()
    {
        process(12, u"0::/\n"_qs, u"[Application]\nname=org.example.Sandboxed\n"_qs, u"bwrap"_qs);
        QCOMPARE(identity().bundleIdentifier(12, QString()),
                 std::optional<QString>(u"org.example.Sandboxed"_qs));
    }

    void accessibleNameIsTheLastResort()
    {
        process(13, u"0::/\n"_qs, {}, u"kate-bin"_qs);
        QCOMPARE(identity().bundleIdentifier(13, u"kate"_qs),
                 std::optional<QString>(u"org.kde.kate"_qs));
        // A process that is gone leaves only the name.
        QCOMPARE(identity().bundleIdentifier(99, u"kate"_qs),
                 std::optional<QString>(u"org.kde.kate"_qs));
        // An application no entry knows goes by its own name.
        QCOMPARE(identity().bundleIdentifier(99, u"Scratch Pad"_qs),
                 std::optional<QString>(u"scratch pad"_qs));
        QCOMPARE(identity().bundleIdentifier(0, QString()), std::nullopt);
    }

private:
    ProcessAppIdentity identity() const { return ProcessAppIdentity(m_entries, m_proc->path()); }

    // A fixture process folder: its cgroup, its sandbox info and an "exe" link to a program.
    void process(qint64 pid, const QString& cgroup, const QString& flatpakInfo,
                 const QString& program)
    {
        const QString dir = m_proc->filePath(QString::number(pid));
        QVERIFY(QDir().mkpath(dir + u"/root"_qs));
        write(dir + u"/cgroup"_qs, cgroup);
        if (!flatpakInfo.isEmpty())
            write(dir + u"/root/.flatpak-info"_qs, flatpakInfo);
        const QString binary = m_proc->filePath(u"bin/"_qs + program);
        QVERIFY(QDir().mkpath(m_proc->filePath(u"bin"_qs)));
        write(binary, QString());
        QVERIFY(QFile::link(binary, dir + u"/exe"_qs));
    }

    static void write(const QString& path, const QString& text)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    }

    std::optional<QTemporaryDir> m_proc;
    FakeDesktopEntryLookup m_entries;
};

QTEST_GUILESS_MAIN(TestProcessAppIdentity)
#include "tst_ProcessAppIdentity.moc"
