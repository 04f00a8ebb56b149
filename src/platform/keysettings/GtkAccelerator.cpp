// SPDX-License-Identifier: MIT
#include "platform/keysettings/GtkAccelerator.h"

#include <QHash>

namespace Tessaline {
namespace {

// Modifier names GTK accepts between angle brackets, in lower case.
const QHash<QString, DesktopKeyBinding::Modifier>& modifierNames()
{
    static const QHash<QString, DesktopKeyBinding::Modifier> names{
        {QStringLiteral("control"), DesktopKeyBinding::Ctrl},
        {QStringLiteral("ctrl"), DesktopKeyBinding::Ctrl},
        {QStringLiteral("ctl"), DesktopKeyBinding::Ctrl},
        {QStringLiteral("primary"), DesktopKeyBinding::Ctrl},
        {QStringLiteral("alt"), DesktopKeyBinding::Alt},
        {QStringLiteral("mod1"), DesktopKeyBinding::Alt},
        {QStringLiteral("shift"), DesktopKeyBinding::Shift},
        {QStringLiteral("shft"), DesktopKeyBinding::Shift},
        {QStringLiteral("super"), DesktopKeyBinding::Super},
        {QStringLiteral("mod4"), DesktopKeyBinding::Super},
        {QStringLiteral("meta"), DesktopKeyBinding::Super},
    };
    return names;
}

// Keys whose X names are not what their caps say.
const QHash<QString, QString>& keyNames()
{
    static const QHash<QString, QString> names{
        {QStringLiteral("XF86AudioRaiseVolume"), QStringLiteral("Volume Up")},
        {QStringLiteral("XF86AudioLowerVolume"), QStringLiteral("Volume Down")},
        {QStringLiteral("XF86AudioMute"), QStringLiteral("Mute")},
        {QStringLiteral("XF86MonBrightnessUp"), QStringLiteral("Brightness Up")},
        {QStringLiteral("XF86MonBrightnessDown"), QStringLiteral("Brightness Down")},
        {QStringLiteral("XF86AudioPlay"), QStringLiteral("Play")},
        {QStringLiteral("XF86AudioPause"), QStringLiteral("Pause")},
        {QStringLiteral("XF86AudioStop"), QStringLiteral("Stop")},
        {QStringLiteral("XF86AudioNext"), QStringLiteral("Next")},
        {QStringLiteral("XF86AudioPrev"), QStringLiteral("Previous")},
    };
    return names;
}

} // namespace

QString GtkAccelerator::keyName(const QString& keysymName)
{
    if (const auto it = keyNames().constFind(keysymName); it != keyNames().cend())
        return *it;
    if (keysymName.size() == 1)
        return keysymName.toUpper();
    return keysymName;
}

std::optional<DesktopKeyBinding> GtkAccelerator::parse(const QString& accelerator)
{
    QString rest = accelerator.trimmed();
    if (rest.isEmpty() || rest == QLatin1String("disabled"))
        return std::nullopt;
    DesktopKeyBinding binding;
    while (rest.startsWith(QLatin1Char('<'))) {
        const qsizetype close = rest.indexOf(QLatin1Char('>'));
        if (close < 0)
            return std::nullopt;
        const auto it = modifierNames().constFind(rest.mid(1, close - 1).toLower());
        // Hyper, Mod3 and friends: a combination no tip could name in words people know.
        if (it == modifierNames().cend())
            return std::nullopt;
        binding.modifiers |= *it;
        rest = rest.mid(close + 1);
    }
    if (rest.isEmpty() || rest.contains(QLatin1Char(' ')))
        return std::nullopt;
    binding.key = keyName(rest);
    return binding;
}

} // namespace Tessaline
