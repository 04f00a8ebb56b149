// SPDX-License-Identifier: MIT
#include "VaultCli.h"

#include "CommandLineStage.h"
#include "settings/DefaultsStore.h"
#include "settings/KeyNamePreference.h"

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

QString VaultCli::drawChord(const QString& chord)
{
    if (!m_keyNames)
        m_keyNames = KeyNamePreference::read(DefaultsStore({}, DefaultsStore::Access::ReadOnly));
    return ChordText::display(chord, *m_keyNames);
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

QString VaultCli::commandIn(const QStringList& arguments)
{
    CommandLineStage global({}, {}, CommandLineStage::Positionals::EndOptions);
    global.parse(arguments);
    return global.positional().value(0);
}

const VaultCli::Command* VaultCli::command(const QString& name) const
{
    for (const Command& candidate : m_commands) {
        if (candidate.name == name)
            return &candidate;
    }
    return nullptr;
}

std::optional<int> VaultCli::stopAfter(const CommandLineStage& stage, bool valid)
{
    // --help wins wherever it stands, even beside a mistake.
    if (stage.helpRequested()) {
        m_out << helpText();
        return Success;
    }
    if (!valid)
        return fail(stage.error(), UsageError);
    return std::nullopt;
}

int VaultCli::run(const QStringList& arguments)
{
    // First the global options, up to the command's name; the rest is the command's to parse.
    CommandLineStage global({}, {}, CommandLineStage::Positionals::EndOptions);
    if (const std::optional<int> code = stopAfter(global, global.parse(arguments)))
        return *code;
    const QStringList rest = global.positional();
    if (rest.isEmpty()) {
        m_err << helpText();
        return UsageError;
    }
    const Command* chosen = command(rest.first());
    if (!chosen)
        return fail(QStringLiteral("unknown command '%1' (see --help)").arg(rest.first()),
                    UsageError);

    QStringList commandArguments = rest.mid(1);
    // A "--" before the command's name ends the options of the whole line.
    if (arguments.first(arguments.size() - rest.size()).contains(QStringLiteral("--")))
        commandArguments.prepend(QStringLiteral("--"));
    CommandLineStage own(chosen->valueOptions, chosen->flagOptions,
                         CommandLineStage::Positionals::MixedWithOptions);
    if (const std::optional<int> code = stopAfter(own, own.parse(commandArguments)))
        return *code;

    Arguments parsed;
    parsed.positional = own.positional();
    parsed.options = own.options();
    parsed.json = global.json() || own.json();
    if (parsed.json && !chosen->printsData)
        return fail(QStringLiteral("%1 prints no data; --json does not apply").arg(chosen->name),
                    UsageError);
    if (parsed.positional.size() < chosen->minPositional ||
        parsed.positional.size() > chosen->maxPositional)
        return fail(QStringLiteral("usage: %1 %2 %3").arg(kProgram, chosen->name, chosen->synopsis),
                    UsageError);
    const int code = chosen->run(*this, parsed);
    m_out.flush();
    m_err.flush();
    return code;
}

} // namespace Tessaline
