// SPDX-License-Identifier: MIT
#include "lookup/DesktopShortcuts.h"

#include "platform/DesktopKeySettings.h"
#include "vault/ChordText.h"

#include <QSet>

#include <array>

namespace Tessaline::DesktopShortcuts {

namespace {

using Action = DesktopKeySettings::Action;

struct ActionName
{
    Action action;
    QLatin1String name;
};

constexpr std::array<ActionName, 9> kActionNames{{
    {Action::VolumeUpPrecise, QLatin1String("Volume up in small steps")},
    {Action::VolumeDownPrecise, QLatin1String("Volume down in small steps")},
    {Action::BrightnessUpPrecise, QLatin1String("Brightness up in small steps")},
    {Action::BrightnessDownPrecise, QLatin1String("Brightness down in small steps")},
    {Action::ScreenshotRegion, QLatin1String("Screenshot of a region")},
    {Action::ScreenshotWindow, QLatin1String("Screenshot of a window")},
    {Action::MediaPlay, QLatin1String("Play or pause")},
    {Action::MediaNext, QLatin1String("Next track")},
    {Action::MediaPrevious, QLatin1String("Previous track")},
}};

// "switch-to-workspace-1" -> "Switch to workspace 1".
QString spelledOut(QString key)
{
    key.replace(QLatin1Char('-'), QLatin1Char(' ')).replace(QLatin1Char('_'), QLatin1Char(' '));
    if (!key.isEmpty())
        key[0] = key.at(0).toUpper();
    return key;
}

// The chord of a desktop binding: its modifiers as symbols, then its key's name.
std::optional<QString> chordOf(const DesktopKeyBinding& binding)
{
    QString chord;
    if (binding.modifiers & DesktopKeyBinding::Ctrl)
        chord += QStringLiteral("⌃ ");
    if (binding.modifiers & DesktopKeyBinding::Alt)
        chord += QStringLiteral("⌥ ");
    if (binding.modifiers & DesktopKeyBinding::Shift)
        chord += QStringLiteral("⇧ ");
    if (binding.modifiers & DesktopKeyBinding::Super)
        chord += QStringLiteral("⌘ ");
    chord += binding.key;
    return ChordText::normalized(chord);
}

} // namespace

QList<DesktopShortcut> fromKeyCombos(const QList<HotKey::NamedKeyCombo>& combos)
{
    QList<DesktopShortcut> shortcuts;
    for (const HotKey::NamedKeyCombo& named : combos) {
        const std::optional<QString> chord =
            ChordText::fromKeyCode(named.combo.carbonKeyCode, named.combo.carbonModifiers);
        if (!chord)
            continue;
        DesktopShortcut shortcut{QStringLiteral("Desktop shortcut"), QStringLiteral("Desktop"),
                                 *chord};
        const QString name = named.name.trimmed();
        const qsizetype space = name.lastIndexOf(QLatin1Char(' '));
        if (space > 0) {
            shortcut.source = QStringLiteral("Desktop: ") + name.left(space);
            shortcut.name = spelledOut(name.mid(space + 1));
        } else if (!name.isEmpty()) {
            shortcut.name = spelledOut(name);
        }
        shortcuts.append(shortcut);
    }
    return shortcuts;
}

QList<DesktopShortcut> fromKeySettings(const DesktopKeySettings& settings)
{
    const QString where = settings.settingsName();
    const QString source =
        where.isEmpty() ? QStringLiteral("Desktop settings") : QStringLiteral("Desktop: ") + where;
    QList<DesktopShortcut> shortcuts;
    for (const ActionName& action : kActionNames) {
        for (const DesktopKeyBinding& binding : settings.bindings(action.action)) {
            if (const std::optional<QString> chord = chordOf(binding))
                shortcuts.append({action.name, source, *chord});
        }
    }
    return shortcuts;
}

QList<DesktopShortcut> merged(QList<DesktopShortcut> first, const QList<DesktopShortcut>& more)
{
    QSet<QString> chords;
    for (const DesktopShortcut& shortcut : std::as_const(first))
        chords.insert(shortcut.chord);
    for (const DesktopShortcut& shortcut : more) {
        if (!chords.contains(shortcut.chord))
            first.append(shortcut);
    }
    return first;
}

QList<DesktopShortcut> current(const DesktopKeySettings* settings)
{
    QList<DesktopShortcut> shortcuts = fromKeyCombos(HotKey::KeyCombo::namedSystemKeyCombos());
    if (settings != nullptr)
        shortcuts = merged(std::move(shortcuts), fromKeySettings(*settings));
    return shortcuts;
}

} // namespace Tessaline::DesktopShortcuts
