// SPDX-License-Identifier: MIT
// The desktop's own bindings, gathered from its hot-key settings and its key settings.
#include "lookup/DesktopShortcuts.h"

#include "FakeDesktopKeySettings.h"
#include "FakeHotKeyService.h"

#include <hotkey/HotKeysController.h>

#include <QtTest>

using namespace Tessaline;

namespace {

using Testing::FakeDesktopKeySettings;
using Testing::FakeHotKeyService;
using Action = DesktopKeySettings::Action;

FakeDesktopKeySettings settingsWithNames()
{
    FakeDesktopKeySettings settings;
    settings.name = u"GNOME settings"_qs;
    settings.bind(Action::ScreenshotWindow, DesktopKeyBinding::Alt, u"Print"_qs);
    settings.bind(Action::VolumeUpPrecise, DesktopKeyBinding::Shift, u"Volume Up"_qs);
    settings.bind(Action::VolumeUpPrecise, DesktopKeyBinding::Ctrl | DesktopKeyBinding::Shift,
                  u"Volume Up"_qs);
    return settings;
}

QVariantMap entry(quint32 code, quint32 modifiers, const QString& name)
{
    return {{u"enabled"_qs, true},
            {u"keyCode"_qs, QVariant::fromValue<qint64>(code)},
            {u"modifiers"_qs, QVariant::fromValue<qint64>(modifiers)},
            {u"name"_qs, name}};
}

} // namespace

class TestDesktopShortcuts : public QObject
{
    Q_OBJECT

private slots:
    void keyCombosAreNamedBySchemaAndKey()
    {
        const QList<HotKey::NamedKeyCombo> combos = {
            {HotKey::KeyCombo(118, 0x800), u"org.gnome.desktop.wm.keybindings close"_qs},
            {HotKey::KeyCombo(18, 0x100),
             u"org.gnome.shell.keybindings switch-to-application-1"_qs},
            {HotKey::KeyCombo(4, 0x100), QString()},
            {HotKey::KeyCombo(52, 0x100), u"org.example unnamed-code"_qs},
        };
        const QList<DesktopShortcut> expected = {
            {u"Close"_qs, u"Desktop: org.gnome.desktop.wm.keybindings"_qs, u"⌥ F4"_qs},
            {u"Switch to application 1"_qs, u"Desktop: org.gnome.shell.keybindings"_qs, u"⌘ 1"_qs},
            {u"Desktop shortcut"_qs, u"Desktop"_qs, u"⌘ H"_qs},
        };
        QCOMPARE(DesktopShortcuts::fromKeyCombos(combos), expected);
    }

    void keySettingsNameTheirActions()
    {
        FakeDesktopKeySettings settings = settingsWithNames();
        const QList<DesktopShortcut> expected = {
            {u"Volume up in small steps"_qs, u"Desktop: GNOME settings"_qs, u"⇧ Volume Up"_qs},
            {u"Volume up in small steps"_qs, u"Desktop: GNOME settings"_qs, u"⌃ ⇧ Volume Up"_qs},
            {u"Screenshot of a window"_qs, u"Desktop: GNOME settings"_qs, u"⌥ Print"_qs},
        };
        QCOMPARE(DesktopShortcuts::fromKeySettings(settings), expected);
        settings.name.clear();
        QCOMPARE(DesktopShortcuts::fromKeySettings(settings).at(0).source, u"Desktop settings"_qs);
    }

    void currentJoinsBothWithoutRepeatingAChord()
    {
        FakeHotKeyService service;
        service.symbolic = QList<QVariantMap>{
            entry(105, 0x800, u"org.gnome.shell.keybindings screenshot-window"_qs)};
        HotKey::HotKeysController::setService(&service);
        const FakeDesktopKeySettings settings = settingsWithNames();
        // Key code 105 is F13, another chord than the settings' Alt+Print: all are listed.
        const QList<DesktopShortcut> all = DesktopShortcuts::current(&settings);
        QCOMPARE(all.size(), 4);
        QCOMPARE(all.at(0).chord, u"⌥ F13"_qs);
        QCOMPARE(all.at(0).name, u"Screenshot window"_qs);

        service.symbolic = QList<QVariantMap>{
            entry(96, 0x200, u"org.example shift-f5"_qs), // a chord the settings do not hold
            entry(96, 0x200, u"org.example again"_qs),
        };
        QCOMPARE(DesktopShortcuts::current(nullptr).size(), 2);
        HotKey::HotKeysController::setService(nullptr);
        QCOMPARE(DesktopShortcuts::current(&settings).size(), 3);
    }

    void mergedDropsChordsAlreadyListed()
    {
        const QList<DesktopShortcut> first = {{u"A"_qs, u"Desktop"_qs, u"⌥ F4"_qs}};
        const QList<DesktopShortcut> more = {{u"B"_qs, u"Desktop"_qs, u"⌥ F4"_qs},
                                             {u"C"_qs, u"Desktop"_qs, u"⌥ F5"_qs}};
        const QList<DesktopShortcut> joined = DesktopShortcuts::merged(first, more);
        QCOMPARE(joined.size(), 2);
        QCOMPARE(joined.at(1).name, u"C"_qs);
    }
};

QTEST_GUILESS_MAIN(TestDesktopShortcuts)
#include "tst_DesktopShortcuts.moc"
