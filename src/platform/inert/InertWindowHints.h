// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowHints.h"

namespace Tessaline {

/// Window hints for a session whose window manager Tessaline cannot address: windows keep
/// whatever Qt gives them.
class InertWindowHints final : public WindowHints
{
public:
    void skipTaskbar(QWindow&) override {}
};

} // namespace Tessaline
