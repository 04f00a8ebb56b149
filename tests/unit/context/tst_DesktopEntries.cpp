// SPDX-License-Identifier: MIT
#include "platform/desktop/DesktopAppIcon.h"
#include "platform/desktop/DesktopEntries.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using Tessaline::DesktopAppIcon;
using Tessaline::DesktopEntries;

/// Reads entries written into a private data folder, the only one GIO is pointed at.
class TestDesktopEntries : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void entryGivesLocalizedNameAndIcon();
    void missingEntryIsAbsent();
    void windowClassMatchesStartupWMClassFirst();
    void windowClassMatchesAnEntryNamedAfterIt_data();
    void windowClassMatchesAnEntryNamedAfterIt();
    void unknownWindowClassHasNoEntry();
    void iconNameComesFromTheEntry();

private:
    QTemporaryDir m_data;
    void writeEntry(const QString& id, const QByteArray& body);
};

void TestDesktopEntries::writeEntry(const QString& id, const QByteArray& body)
{
    QFile file(m_data.filePath(QStringLiteral("applications/") + id + QStringLiteral(".desktop")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\nExec=true\n" + body);
}

void TestDesktopEntries::initTestCase()
{
    QVERIFY(m_data.isValid());
    QVERIFY(QDir(m_data.path()).mkpath(QStringLiteral("applications")));
    // GIO reads these variables once, on first use: set them before any lookup.
    qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
    qputenv("XDG_DATA_DIRS", m_data.filePath(QStringLiteral("none")).toUtf8());
    qputenv("LANGUAGE", "de");
    writeEntry(QStringLiteral("org.example.Notes"),
               "Name=Notes\nName[de]=Notizen\nIcon=org.example.Notes\n");
    writeEntry(QStringLiteral("example-term"), "Name=Example Term\nStartupWMClass=ETerm\n");
    // Named like the window but not claiming it: StartupWMClass must win over the name.
    writeEntry(QStringLiteral("eterm"), "Name=Other\n");
    writeEntry(QStringLiteral("viewer"), "Name=Viewer\nIcon=/opt/viewer/icon.png\n");
}

void TestDesktopEntries::entryGivesLocalizedNameAndIcon()
{
    DesktopEntries entries;
    const auto notes = entries.entry(QStringLiteral("org.example.Notes"));
    QVERIFY(notes.has_value());
    QCOMPARE(notes->id, QStringLiteral("org.example.Notes"));
    QCOMPARE(notes->icon, QStringLiteral("org.example.Notes"));
    // The name in the user's language (LANGUAGE is "de" here).
    QCOMPARE(notes->name, QStringLiteral("Notizen"));
    const auto term = entries.entry(QStringLiteral("example-term"));
    QVERIFY(term.has_value());
    QCOMPARE(term->name, QStringLiteral("Example Term"));
    QCOMPARE(term->icon, QString());
}

void TestDesktopEntries::missingEntryIsAbsent()
{
    DesktopEntries entries;
    QVERIFY(!entries.entry(QStringLiteral("org.example.Missing")).has_value());
    QVERIFY(!entries.entry(QString()).has_value());
}

void TestDesktopEntries::windowClassMatchesStartupWMClassFirst()
{
    DesktopEntries entries;
    QCOMPARE(entries.idForWindowClass(QStringLiteral("eterm"), QStringLiteral("ETerm")),
             std::optional<QString>(QStringLiteral("example-term")));
}

void TestDesktopEntries::windowClassMatchesAnEntryNamedAfterIt_data()
{
    QTest::addColumn<QString>("instance");
    QTest::addColumn<QString>("windowClass");
    QTest::addColumn<QString>("id");
    QTest::addRow("whole id, other case") << "viewer"
                                          << "Viewer"
                                          << "viewer";
    QTest::addRow("last part of a reverse-DNS id") << "notes"
                                                   << "Notes"
                                                   << "org.example.Notes";
}

void TestDesktopEntries::windowClassMatchesAnEntryNamedAfterIt()
{
    QFETCH(QString, instance);
    QFETCH(QString, windowClass);
    QFETCH(QString, id);
    DesktopEntries entries;
    QCOMPARE(entries.idForWindowClass(instance, windowClass), std::optional<QString>(id));
}

void TestDesktopEntries::unknownWindowClassHasNoEntry()
{
    DesktopEntries entries;
    QVERIFY(!entries.idForWindowClass(QStringLiteral("xyzzy"), QStringLiteral("Xyzzy")));
    QVERIFY(!entries.idForWindowClass(QString(), QString()));
}

void TestDesktopEntries::iconNameComesFromTheEntry()
{
    DesktopEntries entries;
    const DesktopAppIcon icons(entries);
    QCOMPARE(icons.iconName(QStringLiteral("org.example.Notes")),
             std::optional<QString>(QStringLiteral("org.example.Notes")));
    QCOMPARE(icons.iconName(QStringLiteral("viewer")),
             std::optional<QString>(QStringLiteral("/opt/viewer/icon.png")));
    QVERIFY(!icons.iconName(QStringLiteral("example-term")).has_value());
    QVERIFY(!icons.iconName(QStringLiteral("org.example.Missing")).has_value());
}

QTEST_GUILESS_MAIN(TestDesktopEntries)
#include "tst_DesktopEntries.moc"
