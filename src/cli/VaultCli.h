// SPDX-License-Identifier: MIT
#pragma once

#include "context/TrackedApp.h"
#include "vault/ChordText.h"
#include "vault/VaultStore.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <functional>
#include <memory>
#include <optional>

namespace Tessaline {

class CommandLineStage;

/// The command-line companion's shell: a table of commands (from which both each command's
/// QCommandLineParser options and the help text are made), the vault they work on and the
/// conventions of their output (data on standard output, text or JSON; errors on standard
/// error with a non-zero exit status). Commands are added by functions such as
/// addVaultCommands(), each in its own source file.
class VaultCli
{
public:
    enum ExitCode
    {
        Success = 0,
        VaultFailure = 1,
        UsageError = 2
    };

    /// What a command received after the shared parsing.
    struct Arguments
    {
        QStringList positional;
        /// Values of the command's value options, keyed by option ("--app").
        QHash<QString, QString> options;
        bool json = false;

        QString option(const QString& name) const { return options.value(name); }
        bool has(const QString& name) const { return options.contains(name); }
    };

    struct Command
    {
        QString name;
        /// Arguments as shown in the help, e.g. "[--app NAME] [QUERY]".
        QString synopsis;
        /// What the command does; may span several lines.
        QString description;
        /// Options that take a value, e.g. "--app".
        QStringList valueOptions;
        /// How many positional arguments the command takes, at least and at most.
        int minPositional = 0;
        int maxPositional = 0;
        /// Whether the command prints data and so accepts --json.
        bool printsData = false;
        std::function<int(VaultCli&, const Arguments&)> run;
        /// Options that take no value, e.g. "--all"; given ones appear in `options` with an
        /// empty value.
        QStringList flagOptions = {};
    };

    VaultCli();
    ~VaultCli();
    VaultCli(const VaultCli&) = delete;
    VaultCli& operator=(const VaultCli&) = delete;

    void addCommand(Command command);
    /// Runs the command named by `arguments` (the process arguments without the program name)
    /// and returns the exit status.
    int run(const QStringList& arguments);
    /// The command that `arguments` name (the first word after the global options), or an
    /// empty string when they name none.
    static QString commandIn(const QStringList& arguments);

    QTextStream& out() { return m_out; }
    QTextStream& err() { return m_err; }

    /// The vault, loaded on first use (which creates the data file from the seed when there is
    /// none yet).
    VaultStore& store();
    /// Loads the vault and reports whether it loaded cleanly; when it did not, prints the
    /// reason and the commands that can repair it, and the caller should stop with
    /// VaultFailure. Commands that read or edit the vault call this first, so that they never
    /// act on the built-in stand-in for a damaged file.
    bool requireHealthyVault();
    /// `chord` (stored in symbols) as the user chose to see chords in the settings' "Key names":
    /// in words unless they chose symbols. JSON output keeps the stored form instead.
    QString drawChord(const QString& chord);
    /// Prints the store's lastError (when there is one) and returns VaultFailure, else Success.
    int finishWithStoreStatus();
    /// Prints "tessaline-vault: <message>" on standard error and returns `code`.
    int fail(const QString& message, ExitCode code = VaultFailure);

    /// The application named by --app and --bundle-id: the bundle id alone stands in for the
    /// name; neither gives the "Desktop" placeholder, whose items are the global ones.
    static TrackedApp appFrom(const Arguments& arguments);

    QString helpText() const;

private:
    const Command* command(const QString& name) const;
    /// The exit status when a parsed stage ends the run before any command: it asked for the
    /// help, or it was not valid (a usage error). Nothing when the run goes on.
    std::optional<int> stopAfter(const CommandLineStage& stage, bool valid);

    QList<Command> m_commands;
    QTextStream m_out;
    QTextStream m_err;
    std::unique_ptr<VaultStore> m_store;
    std::optional<KeyNameStyle> m_keyNames;
};

} // namespace Tessaline
