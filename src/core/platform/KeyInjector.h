// SPDX-License-Identifier: MIT
#pragma once

namespace Tessaline {

/// Synthesizes key presses into the input stream, as if typed on the keyboard.
class KeyInjector
{
public:
    virtual ~KeyInjector() = default;
    /// Presses and releases the platform's paste chord (Control+V on Linux), which goes to
    /// whatever window has the keyboard focus. False when the events could not be posted.
    virtual bool postPasteChord() = 0;
};

} // namespace Tessaline
