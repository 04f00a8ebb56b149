// SPDX-License-Identifier: MIT
#include "VaultCli.h"

#include <cstdio>

namespace Tessaline {

namespace {

const QString kProgram = QStringLiteral("tessaline-vault");

} // namespace

VaultCli::VaultCli() : m_out(stdout), m_err(stderr) {}

VaultCli::~VaultCli()
{
    m_out.flush();
    m_err.flush();
}

void VaultCli::addCommand(Command command)
{
    m_commands.append(std::move(command));
}

VaultStore& VaultCli::store()
{
    if (!m_store)
        m_store = std::make_unique<VaultStore>();
    return *m_store;
}

bool VaultCli::requireHealthyVault()
{
    VaultStore& vault = store();
    if (!vault.lastError())
        return true;
    fail(*vault.lastError());
    m_err << kProgram << ": the vault was left untouched. Fix the file by hand, or replace it with "
          << "'" << kProgram << " import FILE' or '" << kProgram
          << " reset' (both keep a copy of the damaged file beside it).\n";
    return false;
}

int VaultCli::finishWithStoreStatus()
{
    if (m_store && m_store->lastError())
        return fail(*m_store->lastError());
    return Success;
}

int VaultCli::fail(const QString& message, ExitCode code)
{
    m_out.flush();
    m_err << kProgram << ": " << message << '\n';
    m_err.flush();
    return code;
}

TrackedApp VaultCli::appFrom(const Arguments& arguments)
{
    TrackedApp app = TrackedApp::placeholder();
    if (arguments.has(QStringLiteral("--bundle-id"))) {
        app.bundleID = arguments.option(QStringLiteral("--bundle-id"));
        app.name = *app.bundleID;
    }
    if (arguments.has(QStringLiteral("--app")))
        app.name = arguments.option(QStringLiteral("--app"));
    return app;
}

QString VaultCli::helpText() const
{
    QString text;
    QTextStream stream(&text);
    stream << "Usage: " << kProgram << " [--json] COMMAND [ARGUMENTS]\n\n"
           << "Reads and edits Tessaline's shortcut vault, the same file the application uses:\n"
           << "  $XDG_DATA_HOME/Tessaline/keybinds.json (usually ~/.local/share/Tessaline).\n"
           << "The first command that needs the vault creates it from the bundled seed.\n\n"
           << "Commands:\n";
    for (const Command& command : m_commands) {
        stream << "  " << command.name;
        if (!command.synopsis.isEmpty())
            stream << ' ' << command.synopsis;
        stream << '\n';
        for (const QString& line : command.description.split(QLatin1Char('\n')))
            stream << "      " << line << '\n';
    }
    stream << "\nOptions:\n"
           << "  --json    Print data as JSON (commands that print data).\n"
           << "  --help    Show this help.\n\n"
           << "Exit status: 0 on success; 1 when the vault could not be read or written (the\n"
           << "reason is printed on standard error and the vault file is left as it was);\n"
           << "2 for a usage error.\n";
    return text;
}

int VaultCli::run(const QStringList& arguments)
{
    Arguments parsed;
    const Command* command = nullptr;
    bool optionsEnded = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (!optionsEnded && argument == QStringLiteral("--")) {
            optionsEnded = true;
        } else if (!optionsEnded &&
                   (argument == QStringLiteral("--help") || argument == QStringLiteral("-h"))) {
            m_out << helpText();
            return Success;
        } else if (!optionsEnded && argument == QStringLiteral("--json")) {
            parsed.json = true;
        } else if (!optionsEnded && argument.startsWith(QStringLiteral("--")) &&
                   argument.size() > 2) {
            if (command && command->flagOptions.contains(argument)) {
                parsed.options.insert(argument, QString());
                continue;
            }
            if (!command || !command->valueOptions.contains(argument))
                return fail(QStringLiteral("unknown option %1 (see --help)").arg(argument),
                            UsageError);
            if (i + 1 >= arguments.size())
                return fail(QStringLiteral("%1 needs a value").arg(argument), UsageError);
            parsed.options.insert(argument, arguments[++i]);
        } else if (!command) {
            for (const Command& candidate : m_commands) {
                if (candidate.name == argument)
                    command = &candidate;
            }
            if (!command)
                return fail(QStringLiteral("unknown command '%1' (see --help)").arg(argument),
                            UsageError);
        } else {
            parsed.positional.append(argument);
        }
    }
    if (!command) {
        m_err << helpText();
        return UsageError;
    }
    if (parsed.json && !command->printsData)
        return fail(QStringLiteral("%1 prints no data; --json does not apply").arg(command->name),
                    UsageError);
    if (parsed.positional.size() < command->minPositional ||
        parsed.positional.size() > command->maxPositional)
        return fail(
            QStringLiteral("usage: %1 %2 %3").arg(kProgram, command->name, command->synopsis),
            UsageError);
    const int code = command->run(*this, parsed);
    m_out.flush();
    m_err.flush();
    return code;
}

} // namespace Tessaline
