// SPDX-License-Identifier: MIT
#include "platform/keysettings/XfconfKeySettings.h"

#include "platform/keysettings/GtkAccelerator.h"
#include "platform/keysettings/XdgConfigDirs.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <utility>

namespace Tessaline {
namespace {

using Action = DesktopKeySettings::Action;

struct Command
{
    QString accelerator;
    QString commandLine;
};

struct CommandLists
{
    QList<Command> custom;
    QList<Command> defaults;
};

// The accelerator-to-command entries under /commands/custom and /commands/default.
CommandLists readCommands(const QString& path)
{
    CommandLists lists;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return lists;
    QXmlStreamReader xml(&file);
    QStringList names; // the property path down to the current element
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement && xml.name() == QLatin1String("property")) {
            if (!names.isEmpty())
                names.removeLast();
            continue;
        }
        if (token != QXmlStreamReader::StartElement || xml.name() != QLatin1String("property"))
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        const QString name = attributes.value(QLatin1String("name")).toString();
        names.append(name);
        if (names.size() != 3 || names.at(0) != QLatin1String("commands") ||
            attributes.value(QLatin1String("type")) != QLatin1String("string"))
            continue;
        const Command command{name, attributes.value(QLatin1String("value")).toString()};
        if (names.at(1) == QLatin1String("custom"))
            lists.custom.append(command);
        else if (names.at(1) == QLatin1String("default"))
            lists.defaults.append(command);
    }
    return lists;
}

bool runsScreenshooterWith(const QString& commandLine, const QStringList& options)
{
    const QStringList words = commandLine.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty() ||
        QFileInfo(words.first()).fileName() != QLatin1String("xfce4-screenshooter"))
        return false;
    for (const QString& option : options) {
        if (words.contains(option))
            return true;
    }
    return false;
}

bool matches(Action action, const Command& command)
{
    const auto keyIs = [&command](std::initializer_list<const char*> keysyms) {
        const std::optional<DesktopKeyBinding> binding = GtkAccelerator::parse(command.accelerator);
        if (!binding)
            return false;
        for (const char* keysym : keysyms) {
            if (binding->key == GtkAccelerator::keyName(QLatin1String(keysym)))
                return true;
        }
        return false;
    };
    switch (action) {
    case Action::ScreenshotRegion:
        return runsScreenshooterWith(command.commandLine,
                                     {QStringLiteral("-r"), QStringLiteral("--region")});
    case Action::ScreenshotWindow:
        return runsScreenshooterWith(command.commandLine,
                                     {QStringLiteral("-w"), QStringLiteral("--window")});
    case Action::MediaPlay:
        return keyIs({"XF86AudioPlay", "XF86AudioPause"});
    case Action::MediaNext:
        return keyIs({"XF86AudioNext"});
    case Action::MediaPrevious:
        return keyIs({"XF86AudioPrev"});
    default:
        return false;
    }
}

} // namespace

XfconfKeySettings::XfconfKeySettings(QStringList files) : m_files(std::move(files))
{
    if (!m_files.isEmpty())
        return;
    m_files.append(XdgConfigDirs::home() + channelPath());
    for (const QString& dir : XdgConfigDirs::system())
        m_files.append(dir + channelPath());
}

QString XfconfKeySettings::channelPath()
{
    return QStringLiteral("/xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml");
}

QList<DesktopKeyBinding> XfconfKeySettings::bindings(Action action) const
{
    QList<Command> commands;
    for (const QString& path : m_files) {
        const CommandLists lists = readCommands(path);
        commands = lists.custom.isEmpty() ? lists.defaults : lists.custom;
        if (!commands.isEmpty())
            break;
    }
    QList<DesktopKeyBinding> result;
    for (const Command& command : std::as_const(commands)) {
        if (!matches(action, command))
            continue;
        const std::optional<DesktopKeyBinding> binding = GtkAccelerator::parse(command.accelerator);
        if (binding && !result.contains(*binding))
            result.append(*binding);
    }
    return result;
}

} // namespace Tessaline
