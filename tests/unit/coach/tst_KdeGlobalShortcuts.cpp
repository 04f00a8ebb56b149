// SPDX-License-Identifier: MIT
#include "FakeDesktopKeySettings.h"
#include "platform/keysettings/KdeGlobalShortcuts.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Tessaline;
using Tessaline::Testing::FakeDesktopKeySettings;
using Action = DesktopKeySettings::Action;

namespace {

// Entries as Plasma 6 writes them for its out-of-the-box shortcuts, among others it keeps.
const char* const kPlasmaFile = R"([ActivityManager]
_k_friendly_name=Activity Manager
switch-to-activity-1=none,none,Switch to activity "Default"

[kmix]
_k_friendly_name=Audio Volume
decrease_volume=Volume Down,Volume Down,Decrease Volume
decrease_volume_small=Shift+Volume Down,Shift+Volume Down,Decrease Volume by 1%
increase_volume=Volume Up,Volume Up,Increase Volume
increase_volume_small=Shift+Volume Up,Shift+Volume Up,Increase Volume by 1%
mic_mute=Microphone Mute\tMeta+Volume Mute,Microphone Mute\tMeta+Volume Mute,Mute Microphone

[mediacontrol]
_k_friendly_name=Media Controller
nextmedia=Media Next,Media Next,Media Next
playpausemedia=Media Play,Media Play,Play/Pause media playback
previousmedia=Media Previous,Media Previous,Media Previous
stopmedia=Media Stop,Media Stop,Stop media playback

[org.kde.spectacle.desktop]
ActiveWindowScreenShot=Meta+Print,Meta+Print,Capture Active Window
FullScreenScreenShot=Shift+Print,Shift+Print,Capture Entire Desktop
RectangularRegionScreenShot=Meta+Shift+Print,Meta+Shift+Print,Capture Rectangular Region
_launch=Print,Print,Launch Spectacle

[org_kde_powerdevil]
Decrease Screen Brightness=Monitor Brightness Down,Monitor Brightness Down,Decrease Screen Brightness
Decrease Screen Brightness Small=Shift+Monitor Brightness Down,Shift+Monitor Brightness Down,Decrease Screen Brightness by 1%
Increase Screen Brightness=Monitor Brightness Up,Monitor Brightness Up,Increase Screen Brightness
Increase Screen Brightness Small=Shift+Monitor Brightness Up,Shift+Monitor Brightness Up,Increase Screen Brightness by 1%
)";

} // namespace

class TestKdeGlobalShortcuts : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void readsPlasmasShortcuts();
    void userChangesAreReadAtOnce();
    void noneAndMissingEntriesAreNoBinding();
    void aMissingFileHasNoBindings();
    void olderPlasmaWithoutSmallStepsHasNone();
    void shortcutsParse_data();
    void shortcutsParse();
    void defaultFileIsInTheUsersConfigFolder();

private:
    void writeFile(const QByteArray& text);
    QString path() const { return m_dir->filePath(QStringLiteral("kglobalshortcutsrc")); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestKdeGlobalShortcuts::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestKdeGlobalShortcuts::writeFile(const QByteArray& text)
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(text), text.size());
}

void TestKdeGlobalShortcuts::readsPlasmasShortcuts()
{
    writeFile(kPlasmaFile);
    const KdeGlobalShortcuts kde(path());
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::VolumeUpPrecise)),
             QStringList{QStringLiteral("Shift+Volume Up")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::VolumeDownPrecise)),
             QStringList{QStringLiteral("Shift+Volume Down")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::BrightnessUpPrecise)),
             QStringList{QStringLiteral("Shift+Brightness Up")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::BrightnessDownPrecise)),
             QStringList{QStringLiteral("Shift+Brightness Down")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Super+Shift+Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::ScreenshotWindow)),
             QStringList{QStringLiteral("Super+Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::MediaPlay)),
             QStringList{QStringLiteral("Play")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::MediaNext)),
             QStringList{QStringLiteral("Next")});
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::MediaPrevious)),
             QStringList{QStringLiteral("Previous")});
}

void TestKdeGlobalShortcuts::userChangesAreReadAtOnce()
{
    writeFile(kPlasmaFile);
    const KdeGlobalShortcuts kde(path());
    QCOMPARE(kde.bindings(Action::ScreenshotWindow).size(), 1);
    // The user gives the region capture two shortcuts and moves the window capture; only the
    // active field counts, never the default beside it.
    QByteArray text(kPlasmaFile);
    text.replace("RectangularRegionScreenShot=Meta+Shift+Print,",
                 "RectangularRegionScreenShot=Ctrl+Alt+R\\tMeta+Shift+Print,");
    text.replace("ActiveWindowScreenShot=Meta+Print,", "ActiveWindowScreenShot=Alt+Print,");
    writeFile(text);
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::ScreenshotRegion)),
             (QStringList{QStringLiteral("Ctrl+Alt+R"), QStringLiteral("Super+Shift+Print")}));
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::ScreenshotWindow)),
             QStringList{QStringLiteral("Alt+Print")});
}

void TestKdeGlobalShortcuts::noneAndMissingEntriesAreNoBinding()
{
    QByteArray text(kPlasmaFile);
    text.replace("increase_volume_small=Shift+Volume Up,", "increase_volume_small=none,");
    text.replace("decrease_volume_small=Shift+Volume Down,", "decrease_volume_small=,");
    text.replace("ActiveWindowScreenShot=", "X-ActiveWindowScreenShot=");
    writeFile(text);
    const KdeGlobalShortcuts kde(path());
    QVERIFY(kde.bindings(Action::VolumeUpPrecise).isEmpty());
    QVERIFY(kde.bindings(Action::VolumeDownPrecise).isEmpty());
    QVERIFY(kde.bindings(Action::ScreenshotWindow).isEmpty());
    // An entry of the same name in another group is not the one meant.
    writeFile("[kwin]\nincrease_volume_small=Meta+Up,none,Something else\n");
    QVERIFY(kde.bindings(Action::VolumeUpPrecise).isEmpty());
}

void TestKdeGlobalShortcuts::aMissingFileHasNoBindings()
{
    const KdeGlobalShortcuts kde(path());
    for (const Action action :
         {Action::VolumeUpPrecise, Action::ScreenshotRegion, Action::MediaPlay})
        QVERIFY(kde.bindings(action).isEmpty());
}

void TestKdeGlobalShortcuts::olderPlasmaWithoutSmallStepsHasNone()
{
    // Plasma 5.27's volume applet and power management have no smaller step.
    writeFile("[kmix]\n"
              "increase_volume=Volume Up,Volume Up,Increase Volume\n"
              "decrease_volume=Volume Down,Volume Down,Decrease Volume\n"
              "[org_kde_powerdevil]\n"
              "Increase Screen Brightness=Monitor Brightness Up,Monitor Brightness Up,Increase "
              "Screen Brightness\n");
    const KdeGlobalShortcuts kde(path());
    QVERIFY(kde.bindings(Action::VolumeUpPrecise).isEmpty());
    QVERIFY(kde.bindings(Action::BrightnessUpPrecise).isEmpty());
}

void TestKdeGlobalShortcuts::shortcutsParse_data()
{
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QString>("text"); // empty: no binding

    QTest::addRow("key alone") << QStringLiteral("Print") << QStringLiteral("Print");
    QTest::addRow("meta is super") << QStringLiteral("Meta+Print") << QStringLiteral("Super+Print");
    QTest::addRow("modifier order")
        << QStringLiteral("Shift+Alt+Ctrl+Meta+F5") << QStringLiteral("Super+Ctrl+Alt+Shift+F5");
    QTest::addRow("plus key") << QStringLiteral("Ctrl++") << QStringLiteral("Ctrl++");
    QTest::addRow("plus alone") << QStringLiteral("+") << QStringLiteral("+");
    QTest::addRow("comma key") << QStringLiteral("Ctrl+,") << QStringLiteral("Ctrl+,");
    QTest::addRow("media") << QStringLiteral("Media Previous") << QStringLiteral("Previous");
    QTest::addRow("brightness") << QStringLiteral("Shift+Monitor Brightness Up")
                                << QStringLiteral("Shift+Brightness Up");
    QTest::addRow("none") << QStringLiteral("none") << QString();
    QTest::addRow("empty") << QString() << QString();
    QTest::addRow("modifier alone") << QStringLiteral("Ctrl+Shift") << QString();
    QTest::addRow("sequence") << QStringLiteral("Meta+A, B") << QString();
}

void TestKdeGlobalShortcuts::shortcutsParse()
{
    QFETCH(QString, shortcut);
    QFETCH(QString, text);
    const std::optional<DesktopKeyBinding> binding = KdeGlobalShortcuts::parseShortcut(shortcut);
    QCOMPARE(binding ? binding->text() : QString(), text);
}

void TestKdeGlobalShortcuts::defaultFileIsInTheUsersConfigFolder()
{
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", m_dir->path().toLocal8Bit());
    const KdeGlobalShortcuts kde;
    qputenv("XDG_CONFIG_HOME", before);
    QCOMPARE(kde.file(), path());
    writeFile(kPlasmaFile);
    QCOMPARE(FakeDesktopKeySettings::texts(kde.bindings(Action::MediaPlay)),
             QStringList{QStringLiteral("Play")});
}

QTEST_GUILESS_MAIN(TestKdeGlobalShortcuts)
#include "tst_KdeGlobalShortcuts.moc"
