// SPDX-License-Identifier: MIT
#include "VaultCli.h"
#include "VaultCommands.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-vault"));
    Tessaline::VaultCli cli;
    Tessaline::addVaultCommands(cli);
    return cli.run(QCoreApplication::arguments().mid(1));
}
