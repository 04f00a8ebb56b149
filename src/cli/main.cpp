// SPDX-License-Identifier: MIT
#include "LookupCommands.h"
#include "RunCommands.h"
#include "ScanCommands.h"
#include "VaultCli.h"
#include "VaultCommands.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <memory>

int main(int argc, char** argv)
{
    // Scanning on X11 looks at the desktop's windows through Qt's display connection; without
    // an X display (a Wayland session) it sees the applications on the accessibility bus.
    // Running a shortcut likewise. Every other command works without a display.
    std::unique_ptr<QCoreApplication> app;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const bool needsDesktop =
        Tessaline::scanCommandRequested(arguments) || Tessaline::runCommandRequested(arguments);
    if (needsDesktop && qEnvironmentVariableIsSet("DISPLAY"))
        app = std::make_unique<QGuiApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-vault"));
    Tessaline::VaultCli cli;
    Tessaline::addVaultCommands(cli);
    Tessaline::addScanCommands(cli);
    Tessaline::addRunCommands(cli);
    Tessaline::addLookupCommands(cli);
    return cli.run(QCoreApplication::arguments().mid(1));
}
