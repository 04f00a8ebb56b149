// SPDX-License-Identifier: MIT
#include "FakeDesktopKeySettings.h"
#include "platform/keysettings/XfconfKeySettings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Tessaline;
using Tessaline::Testing::FakeDesktopKeySettings;
using Action = DesktopKeySettings::Action;

namespace {

// The channel as Xfce 4.18 ships it (commands part, shortened), in its settings store's XML.
const char* const kSystemChannel = R"(<?xml version="1.0" encoding="UTF-8"?>

<channel name="xfce4-keyboard-shortcuts" version="1.0">
  <property name="commands" type="empty">
    <property name="default" type="empty">
      <property name="&lt;Alt&gt;F2" type="string" value="xfce4-appfinder --collapsed">
        <property name="startup-notify" type="bool" value="true"/>
      </property>
      <property name="&lt;Primary&gt;&lt;Alt&gt;t" type="string" value="exo-open --launch TerminalEmulator"/>
      <property name="Print" type="string" value="xfce4-screenshooter"/>
      <property name="&lt;Alt&gt;Print" type="string" value="xfce4-screenshooter -w"/>
      <property name="&lt;Shift&gt;Print" type="string" value="xfce4-screenshooter -r"/>
      <property name="&lt;Super&gt;e" type="string" value="thunar"/>
    </property>
  </property>
  <property name="xfwm4" type="empty">
    <property name="default" type="empty">
      <property name="&lt;Alt&gt;Print" type="string" value="-w"/>
    </property>
  </property>
</channel>
)";

// What the user's file holds once a shortcut was changed: the whole list under "custom".
const char* const kUserChannel = R"(<?xml version="1.0" encoding="UTF-8"?>

<channel name="xfce4-keyboard-shortcuts" version="1.0">
  <property name="commands" type="empty">
    <property name="default" type="empty">
      <property name="&lt;Shift&gt;Print" type="string" value="xfce4-screenshooter -r"/>
    </property>
    <property name="custom" type="empty">
      <property name="&lt;Primary&gt;&lt;Shift&gt;r" type="string" value="/usr/bin/xfce4-screenshooter --region --clipboard"/>
      <property name="&lt;Alt&gt;Print" type="string" value="xfce4-screenshooter -w"/>
      <property name="XF86AudioPlay" type="string" value="playerctl play-pause"/>
      <property name="XF86AudioNext" type="string" value="playerctl next"/>
      <property name="override" type="bool" value="true"/>
    </property>
  </property>
</channel>
)";

} // namespace

class TestXfconfKeySettings : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void systemDefaultsNameTheScreenshooter();
    void usersCustomListWins();
    void missingOrBrokenFilesHaveNoBindings();
    void defaultFilesAreTheUsersThenTheSystems();

private:
    QString writeFile(const QString& name, const QByteArray& text);

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestXfconfKeySettings::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

QString TestXfconfKeySettings::writeFile(const QString& name, const QByteArray& text)
{
    const QString path = m_dir->filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return {};
    file.write(text);
    return path;
}

void TestXfconfKeySettings::systemDefaultsNameTheScreenshooter()
{
    const XfconfKeySettings xfce({writeFile(QStringLiteral("system.xml"), kSystemChannel)});
    QCOMPARE(FakeDesktopKeySettings::texts(xfce.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Shift+Print")});
    // The window manager's own "<Alt>Print" entry is not a command and does not count twice.
    QCOMPARE(FakeDesktopKeySettings::texts(xfce.bindings(Action::ScreenshotWindow)),
             QStringList{QStringLiteral("Alt+Print")});
    for (const Action action : {Action::VolumeUpPrecise, Action::VolumeDownPrecise,
                                Action::BrightnessUpPrecise, Action::BrightnessDownPrecise,
                                Action::MediaPlay, Action::MediaNext, Action::MediaPrevious})
        QVERIFY(xfce.bindings(action).isEmpty());
}

void TestXfconfKeySettings::usersCustomListWins()
{
    const XfconfKeySettings xfce({writeFile(QStringLiteral("user.xml"), kUserChannel),
                                  writeFile(QStringLiteral("system.xml"), kSystemChannel)});
    QCOMPARE(FakeDesktopKeySettings::texts(xfce.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Ctrl+Shift+R")});
    QCOMPARE(FakeDesktopKeySettings::texts(xfce.bindings(Action::ScreenshotWindow)),
             QStringList{QStringLiteral("Alt+Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(xfce.bindings(Action::MediaPlay)),
             QStringList{QStringLiteral("Play")});
    QCOMPARE(FakeDesktopKeySettings::texts(xfce.bindings(Action::MediaNext)),
             QStringList{QStringLiteral("Next")});
    QVERIFY(xfce.bindings(Action::MediaPrevious).isEmpty());
}

void TestXfconfKeySettings::missingOrBrokenFilesHaveNoBindings()
{
    const XfconfKeySettings missing({m_dir->filePath(QStringLiteral("none.xml"))});
    QVERIFY(missing.bindings(Action::ScreenshotRegion).isEmpty());
    const XfconfKeySettings broken({writeFile(QStringLiteral("broken.xml"), "<channel><property")});
    QVERIFY(broken.bindings(Action::ScreenshotRegion).isEmpty());
    // A broken user file leaves the system's defaults in force.
    const XfconfKeySettings fallback({writeFile(QStringLiteral("broken.xml"), "<channel>"),
                                      writeFile(QStringLiteral("system.xml"), kSystemChannel)});
    QCOMPARE(FakeDesktopKeySettings::texts(fallback.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Shift+Print")});
}

void TestXfconfKeySettings::defaultFilesAreTheUsersThenTheSystems()
{
    const QByteArray home = qgetenv("XDG_CONFIG_HOME");
    const QByteArray dirs = qgetenv("XDG_CONFIG_DIRS");
    qputenv("XDG_CONFIG_HOME", m_dir->filePath(QStringLiteral("home")).toLocal8Bit());
    qputenv("XDG_CONFIG_DIRS", (m_dir->filePath(QStringLiteral("a")) + QLatin1String(":relative:") +
                                m_dir->filePath(QStringLiteral("b")))
                                   .toLocal8Bit());
    const XfconfKeySettings xfce;
    qputenv("XDG_CONFIG_HOME", home);
    qputenv("XDG_CONFIG_DIRS", dirs);
    QCOMPARE(
        xfce.files(),
        (QStringList{m_dir->filePath(QStringLiteral("home")) + XfconfKeySettings::channelPath(),
                     m_dir->filePath(QStringLiteral("a")) + XfconfKeySettings::channelPath(),
                     m_dir->filePath(QStringLiteral("b")) + XfconfKeySettings::channelPath()}));
    writeFile(QStringLiteral("b") + XfconfKeySettings::channelPath(), kSystemChannel);
    QCOMPARE(FakeDesktopKeySettings::texts(xfce.bindings(Action::ScreenshotWindow)),
             QStringList{QStringLiteral("Alt+Print")});
}

QTEST_GUILESS_MAIN(TestXfconfKeySettings)
#include "tst_XfconfKeySettings.moc"
