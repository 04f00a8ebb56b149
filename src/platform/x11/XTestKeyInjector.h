// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

namespace Tessaline {

/// Posts Control+V through the XTEST extension on Qt's X connection. Modifiers the user still
/// holds (Alt from a hotkey, say) are released first so that the target sees a plain paste, and
/// Control is released again on every path. Does nothing outside an X11 session.
class XTestKeyInjector final : public KeyInjector
{
public:
    bool postPasteChord() override;
};

} // namespace Tessaline
