// SPDX-License-Identifier: MIT
#include "platform/MenuCommandRunner.h"

namespace Tessaline {

MenuEntry::~MenuEntry() = default;

} // namespace Tessaline
