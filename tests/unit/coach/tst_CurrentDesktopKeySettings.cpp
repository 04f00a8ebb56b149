// SPDX-License-Identifier: MIT
#include "platform/keysettings/CurrentDesktopKeySettings.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Tessaline;
using Family = CurrentDesktopKeySettings::Family;
using Action = DesktopKeySettings::Action;

class TestCurrentDesktopKeySettings : public QObject
{
    Q_OBJECT

private slots:
    void sessionNamesTheDesktop_data();
    void sessionNamesTheDesktop();
    void namedDesktopIsReadEvenWithOthersPresent();
    void unnamedDesktopIsFoundByItsFiles();
};

void TestCurrentDesktopKeySettings::sessionNamesTheDesktop_data()
{
    QTest::addColumn<QString>("currentDesktop");
    QTest::addColumn<Family>("family");

    QTest::addRow("GNOME") << QStringLiteral("GNOME") << Family::Gnome;
    QTest::addRow("Ubuntu") << QStringLiteral("ubuntu:GNOME") << Family::Gnome;
    QTest::addRow("classic") << QStringLiteral("GNOME-Classic:GNOME") << Family::Gnome;
    QTest::addRow("Cinnamon") << QStringLiteral("X-Cinnamon") << Family::Cinnamon;
    QTest::addRow("MATE") << QStringLiteral("MATE") << Family::Mate;
    QTest::addRow("KDE") << QStringLiteral("KDE") << Family::Kde;
    QTest::addRow("Xfce") << QStringLiteral("XFCE") << Family::Xfce;
    QTest::addRow("lower case") << QStringLiteral("xfce") << Family::Xfce;
    QTest::addRow("first known wins") << QStringLiteral("Budgie:GNOME") << Family::Gnome;
    QTest::addRow("unknown") << QStringLiteral("openbox") << Family::None;
    QTest::addRow("empty") << QString() << Family::None;
}

void TestCurrentDesktopKeySettings::sessionNamesTheDesktop()
{
    QFETCH(QString, currentDesktop);
    QFETCH(Family, family);
    QCOMPARE(CurrentDesktopKeySettings::familyNamed(currentDesktop), family);
}

void TestCurrentDesktopKeySettings::namedDesktopIsReadEvenWithOthersPresent()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QFile kde(dir.filePath(QStringLiteral("kglobalshortcutsrc")));
    QVERIFY(kde.open(QIODevice::WriteOnly));
    kde.write("[org.kde.spectacle.desktop]\n"
              "ActiveWindowScreenShot=Meta+Print,Meta+Print,Capture Active Window\n");
    kde.close();

    CurrentDesktopKeySettings::Sources sources;
    sources.kdeFile = kde.fileName();
    sources.xfceFiles = {dir.filePath(QStringLiteral("missing.xml"))};
    sources.schemaDirectory = dir.filePath(QStringLiteral("no-schemas"));
    sources.currentDesktop = QStringLiteral("XFCE");
    const CurrentDesktopKeySettings xfce(sources);
    QCOMPARE(xfce.family(), Family::Xfce);
    QVERIFY(xfce.bindings(Action::ScreenshotWindow).isEmpty());

    sources.currentDesktop = QStringLiteral("KDE");
    const CurrentDesktopKeySettings plasma(sources);
    QCOMPARE(plasma.family(), Family::Kde);
    QCOMPARE(plasma.bindings(Action::ScreenshotWindow),
             (QList<DesktopKeyBinding>{{DesktopKeyBinding::Super, QStringLiteral("Print")}}));
}

void TestCurrentDesktopKeySettings::unnamedDesktopIsFoundByItsFiles()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    CurrentDesktopKeySettings::Sources sources;
    sources.kdeFile = dir.filePath(QStringLiteral("kglobalshortcutsrc"));
    sources.xfceFiles = {dir.filePath(QStringLiteral("user.xml")),
                         dir.filePath(QStringLiteral("system.xml"))};
    sources.schemaDirectory = dir.filePath(QStringLiteral("no-schemas"));
    const CurrentDesktopKeySettings keys(sources);
    QCOMPARE(keys.family(), Family::None);

    // The system's Xfce file alone does not make an Xfce session.
    QFile system(sources.xfceFiles.at(1));
    QVERIFY(system.open(QIODevice::WriteOnly));
    system.close();
    QCOMPARE(keys.family(), Family::None);

    // Files that appear later are found at the next read.
    QFile user(sources.xfceFiles.at(0));
    QVERIFY(user.open(QIODevice::WriteOnly));
    user.close();
    QCOMPARE(keys.family(), Family::Xfce);
    QFile kde(sources.kdeFile);
    QVERIFY(kde.open(QIODevice::WriteOnly));
    kde.close();
    QCOMPARE(keys.family(), Family::Kde);
}

QTEST_GUILESS_MAIN(TestCurrentDesktopKeySettings)
#include "tst_CurrentDesktopKeySettings.moc"
