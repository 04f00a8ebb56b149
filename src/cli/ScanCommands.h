// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace Tessaline {

class VaultCli;

/// Adds the commands over running applications: scan (read menus into the vault) and apps
/// (the applications a scan can read).
void addScanCommands(VaultCli& cli);

/// True when the command line names a command that needs the desktop (a display connection).
bool scanCommandRequested(const QStringList& arguments);

} // namespace Tessaline
