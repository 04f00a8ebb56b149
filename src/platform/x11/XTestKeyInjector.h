// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

namespace Tessaline {

/// Posts Control+V, and the chords of shortcuts, through the XTEST extension on Qt's X connection.
/// Modifiers the user still holds (Alt from a hotkey, say) are released first so that the target
/// sees a plain paste, and Control is released again on every path. Does nothing outside an X11
/// session.
class XTestKeyInjector final : public KeyInjector
{
public:
    bool postPasteChord() override;
    /// Types each chord with XTEST; a key that is not on the first group of the current
    /// layout (or only under a level other than Shift) is reported, and nothing is typed.
    KeyPostResult postKeys(const QList<KeyStroke>& strokes) override;
};

} // namespace Tessaline
