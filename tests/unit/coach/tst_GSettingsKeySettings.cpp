// SPDX-License-Identifier: MIT
// Reads the desktops' real schemas (as Debian installs them), compiled into a private folder,
// with GSettings keeping its values in memory: the defaults are the desktops' own, and a value
// a test writes is what the next read finds.
#include "FakeDesktopKeySettings.h"
#include "platform/keysettings/CurrentDesktopKeySettings.h"
#include "platform/keysettings/GSettingsKeySettings.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <gio/gio.h>

#include <memory>

using namespace Tessaline;
using Tessaline::Testing::FakeDesktopKeySettings;
using Action = DesktopKeySettings::Action;
using Family = GSettingsKeySettings::Family;

namespace {

const QString kSystemSchemas = QStringLiteral("/usr/share/glib-2.0/schemas");

const QStringList kSchemaFiles{
    QStringLiteral("org.gnome.settings-daemon.plugins.media-keys.gschema.xml"),
    QStringLiteral("org.gnome.shell.gschema.xml"),
    QStringLiteral("org.cinnamon.desktop.keybindings.media-keys.gschema.xml"),
    QStringLiteral("org.mate.SettingsDaemon.plugins.media-keys.gschema.xml"),
};

} // namespace

class TestGSettingsKeySettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void gnomeReadsItsDefaults();
    void cinnamonReadsItsDefaults();
    void mateReadsItsDefaults();
    void changedValuesAreReadAtOnce();
    void emptiedValuesReadAsNoBinding();
    void missingSchemasReadAsNoBinding();
    void desktopFallsBackToTheInstalledSchema();

private:
    void write(const char* schemaId, const char* key, const QStringList& accelerators);
    void writeString(const char* schemaId, const char* key, const QString& accelerator);
    GSettingsSchema* lookup(const char* schemaId) const;

    QTemporaryDir m_schemas;
    QTemporaryDir m_empty;
};

void TestGSettingsKeySettings::initTestCase()
{
    // Values live in memory, so nothing of the user's settings is read or changed.
    qputenv("GSETTINGS_BACKEND", "memory");
    QVERIFY(m_schemas.isValid());
    QVERIFY(m_empty.isValid());
    for (const QString& name : kSchemaFiles) {
        const QString source = kSystemSchemas + QLatin1Char('/') + name;
        QVERIFY2(QFile::exists(source),
                 qPrintable(source + QLatin1String(" is missing: scripts/deps installs it")));
        QVERIFY(QFile::copy(source, m_schemas.filePath(name)));
    }
    QProcess compiler;
    compiler.start(QStringLiteral("glib-compile-schemas"),
                   {QStringLiteral("--strict"), m_schemas.path()});
    QVERIFY(compiler.waitForFinished(30000));
    QVERIFY2(compiler.exitCode() == 0, compiler.readAllStandardError().constData());
}

void TestGSettingsKeySettings::init()
{
    // Every test starts from the desktops' defaults.
    for (const char* schemaId :
         {"org.gnome.settings-daemon.plugins.media-keys", "org.gnome.shell.keybindings",
          "org.cinnamon.desktop.keybindings.media-keys",
          "org.mate.SettingsDaemon.plugins.media-keys"}) {
        GSettingsSchema* schema = lookup(schemaId);
        QVERIFY(schema);
        GSettings* settings = g_settings_new_full(schema, nullptr, nullptr);
        gchar** keys = g_settings_schema_list_keys(schema);
        for (gchar** key = keys; *key; ++key)
            g_settings_reset(settings, *key);
        g_strfreev(keys);
        g_object_unref(settings);
        g_settings_schema_unref(schema);
    }
}

GSettingsSchema* TestGSettingsKeySettings::lookup(const char* schemaId) const
{
    GSettingsSchemaSource* source = g_settings_schema_source_new_from_directory(
        m_schemas.path().toLocal8Bit().constData(), nullptr, TRUE, nullptr);
    if (!source)
        return nullptr;
    GSettingsSchema* schema = g_settings_schema_source_lookup(source, schemaId, FALSE);
    g_settings_schema_source_unref(source);
    return schema;
}

void TestGSettingsKeySettings::write(const char* schemaId, const char* key,
                                     const QStringList& accelerators)
{
    GSettingsSchema* schema = lookup(schemaId);
    QVERIFY(schema);
    GSettings* settings = g_settings_new_full(schema, nullptr, nullptr);
    QList<QByteArray> bytes;
    std::vector<const gchar*> strv;
    for (const QString& accelerator : accelerators)
        bytes.append(accelerator.toUtf8());
    for (const QByteArray& item : bytes)
        strv.push_back(item.constData());
    strv.push_back(nullptr);
    QVERIFY(g_settings_set_strv(settings, key, strv.data()));
    g_object_unref(settings);
    g_settings_schema_unref(schema);
}

void TestGSettingsKeySettings::writeString(const char* schemaId, const char* key,
                                           const QString& accelerator)
{
    GSettingsSchema* schema = lookup(schemaId);
    QVERIFY(schema);
    GSettings* settings = g_settings_new_full(schema, nullptr, nullptr);
    QVERIFY(g_settings_set_string(settings, key, accelerator.toUtf8().constData()));
    g_object_unref(settings);
    g_settings_schema_unref(schema);
}

void TestGSettingsKeySettings::gnomeReadsItsDefaults()
{
    const GSettingsKeySettings gnome(Family::Gnome, m_schemas.path());
    QVERIFY(gnome.schemaInstalled());
    QCOMPARE(
        FakeDesktopKeySettings::texts(gnome.bindings(Action::VolumeUpPrecise)),
        (QStringList{QStringLiteral("Shift+Volume Up"), QStringLiteral("Ctrl+Shift+Volume Up")}));
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::VolumeDownPrecise)),
             (QStringList{QStringLiteral("Shift+Volume Down"),
                          QStringLiteral("Ctrl+Shift+Volume Down")}));
    QVERIFY(gnome.bindings(Action::BrightnessUpPrecise).isEmpty());
    QVERIFY(gnome.bindings(Action::BrightnessDownPrecise).isEmpty());
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::ScreenshotWindow)),
             QStringList{QStringLiteral("Alt+Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::MediaPlay)),
             (QStringList{QStringLiteral("Play"), QStringLiteral("Ctrl+Play")}));
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::MediaNext)),
             (QStringList{QStringLiteral("Next"), QStringLiteral("Ctrl+Next")}));
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::MediaPrevious)),
             (QStringList{QStringLiteral("Previous"), QStringLiteral("Ctrl+Previous")}));
}

void TestGSettingsKeySettings::cinnamonReadsItsDefaults()
{
    const GSettingsKeySettings cinnamon(Family::Cinnamon, m_schemas.path());
    QVERIFY(cinnamon.schemaInstalled());
    QVERIFY(cinnamon.bindings(Action::VolumeUpPrecise).isEmpty());
    QVERIFY(cinnamon.bindings(Action::BrightnessDownPrecise).isEmpty());
    QCOMPARE(FakeDesktopKeySettings::texts(cinnamon.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Shift+Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(cinnamon.bindings(Action::ScreenshotWindow)),
             QStringList{QStringLiteral("Alt+Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(cinnamon.bindings(Action::MediaPlay)),
             QStringList{QStringLiteral("Play")});
    QCOMPARE(FakeDesktopKeySettings::texts(cinnamon.bindings(Action::MediaNext)),
             QStringList{QStringLiteral("Next")});
    QCOMPARE(FakeDesktopKeySettings::texts(cinnamon.bindings(Action::MediaPrevious)),
             QStringList{QStringLiteral("Previous")});
}

void TestGSettingsKeySettings::mateReadsItsDefaults()
{
    const GSettingsKeySettings mate(Family::Mate, m_schemas.path());
    QVERIFY(mate.schemaInstalled());
    // MATE keeps one accelerator per key, as a plain string.
    QCOMPARE(FakeDesktopKeySettings::texts(mate.bindings(Action::MediaPlay)),
             QStringList{QStringLiteral("Play")});
    QCOMPARE(FakeDesktopKeySettings::texts(mate.bindings(Action::MediaNext)),
             QStringList{QStringLiteral("Next")});
    QCOMPARE(FakeDesktopKeySettings::texts(mate.bindings(Action::MediaPrevious)),
             QStringList{QStringLiteral("Previous")});
    QVERIFY(mate.bindings(Action::VolumeUpPrecise).isEmpty());
    QVERIFY(mate.bindings(Action::ScreenshotRegion).isEmpty());
    // The window manager's schema is not among the compiled ones: no window capture to name.
    QVERIFY(mate.bindings(Action::ScreenshotWindow).isEmpty());

    writeString("org.mate.SettingsDaemon.plugins.media-keys", "next", QStringLiteral("disabled"));
    QVERIFY(mate.bindings(Action::MediaNext).isEmpty());
    writeString("org.mate.SettingsDaemon.plugins.media-keys", "next", QStringLiteral("<Mod4>n"));
    QCOMPARE(FakeDesktopKeySettings::texts(mate.bindings(Action::MediaNext)),
             QStringList{QStringLiteral("Super+N")});
}

void TestGSettingsKeySettings::changedValuesAreReadAtOnce()
{
    const GSettingsKeySettings gnome(Family::Gnome, m_schemas.path());
    // The user's own binding comes first, then the fixed ones.
    write("org.gnome.settings-daemon.plugins.media-keys", "volume-up-precise",
          {QStringLiteral("<Super>XF86AudioRaiseVolume")});
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::VolumeUpPrecise)),
             (QStringList{QStringLiteral("Super+Volume Up"), QStringLiteral("Shift+Volume Up"),
                          QStringLiteral("Ctrl+Shift+Volume Up")}));
    write("org.gnome.shell.keybindings", "screenshot-window",
          {QStringLiteral("<Primary><Alt>w"), QStringLiteral("<Alt>Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::ScreenshotWindow)),
             (QStringList{QStringLiteral("Ctrl+Alt+W"), QStringLiteral("Alt+Print")}));
}

void TestGSettingsKeySettings::emptiedValuesReadAsNoBinding()
{
    const GSettingsKeySettings gnome(Family::Gnome, m_schemas.path());
    write("org.gnome.settings-daemon.plugins.media-keys", "volume-up-precise-static", {});
    write("org.gnome.settings-daemon.plugins.media-keys", "volume-down-precise-static",
          {QString()});
    QVERIFY(gnome.bindings(Action::VolumeUpPrecise).isEmpty());
    QVERIFY(gnome.bindings(Action::VolumeDownPrecise).isEmpty());
    // Unreadable accelerators are left out; readable ones beside them still count.
    write(
        "org.gnome.shell.keybindings", "show-screenshot-ui",
        {QStringLiteral("<Hyper>Print"), QStringLiteral("<Shift"), QStringLiteral("<Ctrl>Print")});
    QCOMPARE(FakeDesktopKeySettings::texts(gnome.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Ctrl+Print")});
}

void TestGSettingsKeySettings::missingSchemasReadAsNoBinding()
{
    for (const Family family : {Family::Gnome, Family::Cinnamon, Family::Mate}) {
        const GSettingsKeySettings keys(family, m_empty.path());
        QVERIFY(!keys.schemaInstalled());
        for (const Action action : {Action::VolumeUpPrecise, Action::ScreenshotRegion,
                                    Action::ScreenshotWindow, Action::MediaPlay})
            QVERIFY(keys.bindings(action).isEmpty());
    }
}

void TestGSettingsKeySettings::desktopFallsBackToTheInstalledSchema()
{
    QTemporaryDir config;
    QVERIFY(config.isValid());
    CurrentDesktopKeySettings::Sources sources;
    sources.kdeFile = config.filePath(QStringLiteral("kglobalshortcutsrc"));
    sources.xfceFiles = {config.filePath(QStringLiteral("xfce4-keyboard-shortcuts.xml"))};
    sources.schemaDirectory = m_schemas.path();

    // Named by the session: that desktop, whatever else is installed.
    sources.currentDesktop = QStringLiteral("X-Cinnamon");
    const CurrentDesktopKeySettings cinnamon(sources);
    QCOMPARE(cinnamon.family(), CurrentDesktopKeySettings::Family::Cinnamon);
    QCOMPARE(FakeDesktopKeySettings::texts(cinnamon.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Shift+Print")});

    // Not named: the first desktop whose settings are there, GNOME's schemas here.
    sources.currentDesktop = QStringLiteral("openbox");
    const CurrentDesktopKeySettings unnamed(sources);
    QCOMPARE(unnamed.family(), CurrentDesktopKeySettings::Family::Gnome);
    QCOMPARE(FakeDesktopKeySettings::texts(unnamed.bindings(Action::ScreenshotRegion)),
             QStringList{QStringLiteral("Print")});

    // Nothing at all: no bindings.
    sources.schemaDirectory = m_empty.path();
    const CurrentDesktopKeySettings nothing(sources);
    QCOMPARE(nothing.family(), CurrentDesktopKeySettings::Family::None);
    QVERIFY(nothing.bindings(Action::MediaPlay).isEmpty());
}

QTEST_GUILESS_MAIN(TestGSettingsKeySettings)
#include "tst_GSettingsKeySettings.moc"
