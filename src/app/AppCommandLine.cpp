// SPDX-License-Identifier: MIT
#include "AppCommandLine.h"

#include "ControlInterface.h"

#include <QTextStream>

#include <cstdio>

namespace Tessaline {

namespace {

const QString kProgram = QStringLiteral("tessaline");

} // namespace

AppCommandLine::AppCommandLine(const QStringList& arguments)
    : m_help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")),
      m_version({QStringLiteral("v"), QStringLiteral("version")},
                QStringLiteral("Show the version.")),
      m_toggle(QStringLiteral("toggle"),
               QStringLiteral("Show or hide the running Tessaline's cheat sheet.")),
      m_quit(QStringLiteral("quit"), QStringLiteral("Ask the running Tessaline to quit.")),
      m_autostart(QStringLiteral("autostart"),
                  QStringLiteral("Start in the tray only, with no window (used at login)."))
{
    m_parser.setApplicationDescription(
        QStringLiteral("Shows a cheat sheet of keyboard shortcuts for the application you were\n"
                       "just using. Started without options, Tessaline lives in the tray; a\n"
                       "second start shows the running one's cheat sheet."));
    m_parser.addOptions({m_help, m_version, m_toggle, m_quit, m_autostart});

    if (!m_parser.parse(arguments)) {
        m_request = Request::Invalid;
        m_error = m_parser.errorText();
        return;
    }
    if (!m_parser.positionalArguments().isEmpty()) {
        m_request = Request::Invalid;
        m_error = QStringLiteral("Unexpected argument '%1'.")
                      .arg(m_parser.positionalArguments().constFirst());
        return;
    }
    if (m_parser.isSet(m_help)) {
        m_request = Request::Help;
        return;
    }
    if (m_parser.isSet(m_version)) {
        m_request = Request::Version;
        return;
    }
    const int actions = int(m_parser.isSet(m_toggle)) + int(m_parser.isSet(m_quit)) +
                        int(m_parser.isSet(m_autostart));
    if (actions > 1) {
        m_request = Request::Invalid;
        m_error = QStringLiteral("Give only one of --toggle, --quit and --autostart.");
    } else if (m_parser.isSet(m_toggle)) {
        m_request = Request::Toggle;
    } else if (m_parser.isSet(m_quit)) {
        m_request = Request::Quit;
    } else if (m_parser.isSet(m_autostart)) {
        m_request = Request::StartTrayAtLogin;
    }
}

QStringList AppCommandLine::arguments(int argc, char** argv)
{
    QStringList list;
    for (int i = 0; i < argc; ++i)
        list << QString::fromLocal8Bit(argv[i]);
    return list;
}

bool AppCommandLine::startsTray() const
{
    return m_request == Request::StartTray || m_request == Request::StartTrayAtLogin;
}

int AppCommandLine::run(QTextStream& out, QTextStream& err, const Forwarder& forward)
{
    switch (m_request) {
    case Request::Help:
        out << helpText();
        return 0;
    case Request::Version:
        out << versionText() << '\n';
        return 0;
    case Request::Invalid:
        err << kProgram << ": " << m_error << '\n' << "Try '" << kProgram << " --help'.\n";
        return 1;
    case Request::Toggle:
    case Request::Quit: {
        const bool toggle = m_request == Request::Toggle;
        if (forward(toggle ? QStringLiteral("ToggleHUD") : QStringLiteral("Quit")))
            return 0;
        err << kProgram << ": no running Tessaline answered on the session bus; nothing to "
            << (toggle ? "toggle" : "quit") << ".\n";
        return 1;
    }
    case Request::StartTray:
    case Request::StartTrayAtLogin:
        break;
    }
    return 0;
}

int AppCommandLine::run()
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    return run(out, err, &ControlInterface::callRunningInstance);
}

QString AppCommandLine::helpText() const
{
    // The parser names the program by argv[0]; the help names it as a user types it.
    QString text = m_parser.helpText();
    const qsizetype usageEnd = text.indexOf(QLatin1Char('\n'));
    return QStringLiteral("Usage: %1 [options]").arg(kProgram) + text.mid(usageEnd);
}

QString AppCommandLine::versionText()
{
    return kProgram + QLatin1Char(' ') + QStringLiteral(TESSALINE_VERSION);
}

} // namespace Tessaline
