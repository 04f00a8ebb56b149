// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace Tessaline {

class VaultCli;

/// Adds the command that runs a shortcut in a running application: run.
void addRunCommands(VaultCli& cli);

/// True when the command line names the run command, which needs the desktop.
bool runCommandRequested(const QStringList& arguments);

} // namespace Tessaline
