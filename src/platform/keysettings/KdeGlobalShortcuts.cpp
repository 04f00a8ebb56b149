// SPDX-License-Identifier: MIT
#include "platform/keysettings/KdeGlobalShortcuts.h"

#include "platform/keysettings/XdgConfigDirs.h"

#include <QFile>
#include <QHash>
#include <QTextStream>

#include <utility>

namespace Tessaline {
namespace {

using Action = DesktopKeySettings::Action;

struct Entry
{
    const char* group;
    const char* key;
};

QList<Entry> entries(Action action)
{
    switch (action) {
    case Action::VolumeUpPrecise:
        return {{"kmix", "increase_volume_small"}};
    case Action::VolumeDownPrecise:
        return {{"kmix", "decrease_volume_small"}};
    case Action::BrightnessUpPrecise:
        return {{"org_kde_powerdevil", "Increase Screen Brightness Small"}};
    case Action::BrightnessDownPrecise:
        return {{"org_kde_powerdevil", "Decrease Screen Brightness Small"}};
    case Action::ScreenshotRegion:
        return {{"org.kde.spectacle.desktop", "RectangularRegionScreenShot"}};
    case Action::ScreenshotWindow:
        return {{"org.kde.spectacle.desktop", "ActiveWindowScreenShot"}};
    case Action::MediaPlay:
        return {{"mediacontrol", "playpausemedia"}};
    case Action::MediaNext:
        return {{"mediacontrol", "nextmedia"}};
    case Action::MediaPrevious:
        return {{"mediacontrol", "previousmedia"}};
    }
    return {};
}

const QHash<QString, DesktopKeyBinding::Modifier>& modifierNames()
{
    static const QHash<QString, DesktopKeyBinding::Modifier> names{
        {QStringLiteral("meta"), DesktopKeyBinding::Super},
        {QStringLiteral("ctrl"), DesktopKeyBinding::Ctrl},
        {QStringLiteral("alt"), DesktopKeyBinding::Alt},
        {QStringLiteral("shift"), DesktopKeyBinding::Shift},
    };
    return names;
}

// Qt key names that read differently on a keyboard's caps.
const QHash<QString, QString>& keyNames()
{
    static const QHash<QString, QString> names{
        {QStringLiteral("Monitor Brightness Up"), QStringLiteral("Brightness Up")},
        {QStringLiteral("Monitor Brightness Down"), QStringLiteral("Brightness Down")},
        {QStringLiteral("Volume Mute"), QStringLiteral("Mute")},
        {QStringLiteral("Media Play"), QStringLiteral("Play")},
        {QStringLiteral("Media Pause"), QStringLiteral("Pause")},
        {QStringLiteral("Media Stop"), QStringLiteral("Stop")},
        {QStringLiteral("Media Next"), QStringLiteral("Next")},
        {QStringLiteral("Media Previous"), QStringLiteral("Previous")},
    };
    return names;
}

// Splits a KConfig value at its unescaped commas and undoes the escapes: "\s" space, "\t"
// tab, "\n" newline, "\\" backslash and "\," a comma inside an item.
QStringList splitValue(const QString& value)
{
    QStringList items{QString()};
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c == QLatin1Char(',')) {
            items.append(QString());
            continue;
        }
        if (c != QLatin1Char('\\') || i + 1 == value.size()) {
            items.last().append(c);
            continue;
        }
        const QChar next = value.at(++i);
        switch (next.unicode()) {
        case 's':
            items.last().append(QLatin1Char(' '));
            break;
        case 't':
            items.last().append(QLatin1Char('\t'));
            break;
        case 'n':
            items.last().append(QLatin1Char('\n'));
            break;
        default:
            items.last().append(next);
            break;
        }
    }
    return items;
}

// The raw values of the wanted group and keys, in one pass over the file.
QHash<QString, QString> readValues(const QString& path, const QList<Entry>& wanted)
{
    QHash<QString, QString> values;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return values;
    QTextStream in(&file);
    QString group;
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            group = line.mid(1, line.size() - 2);
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0)
            continue;
        const QString key = line.left(equals).trimmed();
        for (const Entry& entry : wanted) {
            if (group == QLatin1String(entry.group) && key == QLatin1String(entry.key))
                values.insert(group + QLatin1Char('\n') + key, line.mid(equals + 1).trimmed());
        }
    }
    return values;
}

} // namespace

KdeGlobalShortcuts::KdeGlobalShortcuts(QString file) : m_file(std::move(file))
{
    if (m_file.isEmpty())
        m_file = XdgConfigDirs::home() + QLatin1String("/kglobalshortcutsrc");
}

std::optional<DesktopKeyBinding> KdeGlobalShortcuts::parseShortcut(const QString& shortcut)
{
    const QString text = shortcut.trimmed();
    // "none" is how an action without a shortcut is written; ", " separates the chords of a
    // sequence, which no tip names.
    if (text.isEmpty() || text == QLatin1String("none") || text.contains(QLatin1String(", ")))
        return std::nullopt;
    DesktopKeyBinding binding;
    qsizetype start = 0;
    for (;;) {
        const qsizetype plus = text.indexOf(QLatin1Char('+'), start);
        // A "+" that ends the text, or stands first, is the key itself ("Ctrl++").
        if (plus <= start || plus == text.size() - 1)
            break;
        const auto it = modifierNames().constFind(text.mid(start, plus - start).toLower());
        if (it == modifierNames().cend())
            break;
        binding.modifiers |= *it;
        start = plus + 1;
    }
    const QString key = text.mid(start);
    if (key.isEmpty() || modifierNames().contains(key.toLower()))
        return std::nullopt;
    binding.key = keyNames().value(key, key);
    return binding;
}

QList<DesktopKeyBinding> KdeGlobalShortcuts::bindings(Action action) const
{
    const QList<Entry> wanted = entries(action);
    const QHash<QString, QString> values = readValues(m_file, wanted);
    QList<DesktopKeyBinding> result;
    for (const Entry& entry : wanted) {
        const QString value =
            values.value(QLatin1String(entry.group) + QLatin1Char('\n') + QLatin1String(entry.key));
        if (value.isEmpty())
            continue;
        // The first field holds the active shortcuts, separated by tabs.
        const QString active = splitValue(value).first();
        for (const QString& shortcut : active.split(QLatin1Char('\t'), Qt::SkipEmptyParts)) {
            const std::optional<DesktopKeyBinding> binding = parseShortcut(shortcut);
            if (binding && !result.contains(*binding))
                result.append(*binding);
        }
    }
    return result;
}

} // namespace Tessaline
