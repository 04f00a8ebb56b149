// SPDX-License-Identifier: MIT
#include "CommandLineStage.h"

namespace Tessaline {

namespace {

const QString kHelp = QStringLiteral("help");
const QString kJson = QStringLiteral("json");

/// The parser's name for an option spelled "--app" on the command line.
QString nameOf(const QString& spelled)
{
    return spelled.mid(2);
}

/// The command-line word in which the parser found the option `name`, as the user typed it:
/// "--name", "--name=value", or a single-dash word holding the letter `name`.
QString spelledOption(const QString& name, const QStringList& arguments)
{
    for (const QString& argument : arguments) {
        if (argument == QStringLiteral("--"))
            break;
        if (argument.startsWith(QStringLiteral("--"))) {
            if (argument.mid(2).section(QLatin1Char('='), 0, 0) == name)
                return argument;
        } else if (argument.startsWith(QLatin1Char('-')) && name.size() == 1 &&
                   argument.mid(1).contains(name)) {
            return argument;
        }
    }
    return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
}

} // namespace

CommandLineStage::CommandLineStage(const QStringList& valueOptions, const QStringList& flagOptions,
                                   Positionals positionals)
    : m_valueOptions(valueOptions), m_flagOptions(flagOptions)
{
    m_parser.addOption(QCommandLineOption(QStringList{QStringLiteral("h"), kHelp}));
    m_parser.addOption(QCommandLineOption(kJson));
    for (const QString& option : valueOptions)
        m_parser.addOption(QCommandLineOption(nameOf(option), QString(), QStringLiteral("value")));
    for (const QString& option : flagOptions)
        m_parser.addOption(QCommandLineOption(nameOf(option)));
    if (positionals == Positionals::EndOptions)
        m_parser.setOptionsAfterPositionalArgumentsMode(
            QCommandLineParser::ParseAsPositionalArguments);
}

bool CommandLineStage::parse(const QStringList& arguments)
{
    // QCommandLineParser takes the program name first.
    if (m_parser.parse(QStringList{QString()} + arguments)) {
        m_error.clear();
        return true;
    }
    m_error = errorFor(arguments);
    return false;
}

bool CommandLineStage::helpRequested() const
{
    return m_parser.isSet(kHelp);
}

bool CommandLineStage::json() const
{
    return m_parser.isSet(kJson);
}

QHash<QString, QString> CommandLineStage::options() const
{
    QHash<QString, QString> given;
    for (const QString& option : m_valueOptions) {
        if (m_parser.isSet(nameOf(option)))
            given.insert(option, m_parser.value(nameOf(option)));
    }
    for (const QString& option : m_flagOptions) {
        if (m_parser.isSet(nameOf(option)))
            given.insert(option, QString());
    }
    return given;
}

QString CommandLineStage::errorFor(const QStringList& arguments) const
{
    const QStringList unknown = m_parser.unknownOptionNames();
    if (!unknown.isEmpty())
        return QStringLiteral("unknown option %1 (see --help)")
            .arg(spelledOption(unknown.first(), arguments));
    // The parser misses a value only when the option that wants it ends the line.
    if (!arguments.isEmpty() && m_valueOptions.contains(arguments.last()))
        return QStringLiteral("%1 needs a value").arg(arguments.last());
    // Otherwise a value was attached ("--all=yes") to an option that takes none.
    for (const QString& argument : arguments) {
        if (argument == QStringLiteral("--"))
            break;
        const QString option = argument.section(QLatin1Char('='), 0, 0);
        if (argument.startsWith(QLatin1Char('-')) && argument.contains(QLatin1Char('=')) &&
            !m_valueOptions.contains(option))
            return QStringLiteral("%1 takes no value (see --help)").arg(option);
    }
    return m_parser.errorText();
}

} // namespace Tessaline
