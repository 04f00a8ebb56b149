// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultData.h"

namespace Tessaline {

/// The small vault compiled into the program: what a new vault starts from when no seed file
/// is found, and what is shown while the data file cannot be read. Built once, never changed.
const VaultData& fallbackData();

} // namespace Tessaline
