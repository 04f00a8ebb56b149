// SPDX-License-Identifier: MIT
#pragma once

namespace Tessaline {

class VaultCli;

/// Adds the commands that look chords up: which (what a chord does) and conflicts (chords bound
/// twice in one app, or taken by the desktop).
void addLookupCommands(VaultCli& cli);

} // namespace Tessaline
