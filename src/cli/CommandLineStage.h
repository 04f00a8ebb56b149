// SPDX-License-Identifier: MIT
#pragma once

#include <QCommandLineParser>
#include <QHash>
#include <QString>
#include <QStringList>

namespace Tessaline {

/// One pass of QCommandLineParser over part of the command line: the options every command
/// shares (--json, --help) plus the given ones, with a failure worded as the companion's usage
/// error. The global pass stops at the command's name; the command's pass reads the rest.
class CommandLineStage
{
public:
    enum class Positionals
    {
        /// Options may follow positional arguments (a command's own pass).
        MixedWithOptions,
        /// The first positional argument and everything after it are left unparsed (the
        /// global pass, which stops at the command's name).
        EndOptions
    };

    /// `valueOptions` and `flagOptions` are spelled as on the command line ("--app").
    CommandLineStage(const QStringList& valueOptions, const QStringList& flagOptions,
                     Positionals positionals);

    /// Parses `arguments` (without the program name); when they are not valid, error() says
    /// why in the words of a usage error.
    bool parse(const QStringList& arguments);
    QString error() const { return m_error; }

    bool helpRequested() const;
    bool json() const;
    QStringList positional() const { return m_parser.positionalArguments(); }
    /// The value and flag options given, keyed as spelled ("--app"); flags have empty values.
    QHash<QString, QString> options() const;

private:
    QString errorFor(const QStringList& arguments) const;

    QCommandLineParser m_parser;
    QStringList m_valueOptions;
    QStringList m_flagOptions;
    QString m_error;
};

} // namespace Tessaline
