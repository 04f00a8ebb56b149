// SPDX-License-Identifier: MIT
#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QStringList>

#include <functional>

class QTextStream;

namespace Tessaline {

/// The command line of `tessaline`. Without options it starts the tray application;
/// --autostart starts it at login (only the tray, no window); --help and --version print and
/// end; --toggle and --quit ask the running instance, over the session bus, to toggle its HUD
/// or to quit. Everything but starting the tray works without a display.
class AppCommandLine
{
public:
    enum class Request
    {
        StartTray,
        StartTrayAtLogin,
        Help,
        Version,
        Toggle,
        Quit,
        Invalid
    };

    /// Calls a method of the running instance's bus interface; false when none answered.
    using Forwarder = std::function<bool(const QString& method)>;

    /// Reads `arguments` (the program name first, as in argv).
    explicit AppCommandLine(const QStringList& arguments);
    /// argv as a string list, before any application object exists.
    static QStringList arguments(int argc, char** argv);

    Request request() const { return m_request; }
    /// Whether this start builds the tray application (with or without the welcome window).
    bool startsTray() const;
    bool atLogin() const { return m_request == Request::StartTrayAtLogin; }

    /// Carries out a request that builds no tray: prints help, the version or the mistake, or
    /// forwards to the running instance. Returns the exit status: 0 when done, 1 when the
    /// command line was wrong or no instance answered.
    int run(QTextStream& out, QTextStream& err, const Forwarder& forward);
    /// The same on the process's standard output and error, over the session bus.
    int run();

    QString helpText() const;
    static QString versionText();

private:
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
    QCommandLineOption m_version;
    QCommandLineOption m_toggle;
    QCommandLineOption m_quit;
    QCommandLineOption m_autostart;
    Request m_request = Request::StartTray;
    QString m_error;
};

} // namespace Tessaline
