// SPDX-License-Identifier: MIT
#pragma once

namespace Tessaline {

class VaultCli;

/// Adds the commands over the vault file: path, sections, rows, favorite, import, export and
/// reset.
void addVaultCommands(VaultCli& cli);

} // namespace Tessaline
