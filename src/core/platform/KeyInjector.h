// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

namespace Tessaline {

/// One chord to type: the modifiers held down and the key pressed under them.
struct KeyStroke
{
    enum Modifier
    {
        Shift = 0x1,
        Control = 0x2,
        Alt = 0x4,
        Super = 0x8,
    };

    /// A combination of Modifier values.
    int modifiers = 0;
    /// The key: one character ("n", "+", "é") or a keysym name ("Return", "Page_Up", "F5").
    QString key;

    friend bool operator==(const KeyStroke&, const KeyStroke&) = default;
};

/// How posting a row of chords went.
struct KeyPostResult
{
    enum Status
    {
        /// Every chord was posted.
        Posted,
        /// `key` has no key on the current keyboard layout; nothing was posted.
        KeyNotOnLayout,
        /// The session takes no synthetic keys, or refused them.
        NotPosted,
    };

    Status status = Posted;
    /// The key that could not be typed, for KeyNotOnLayout.
    QString key;
};

/// Synthesizes key presses into the input stream, as if typed on the keyboard.
class KeyInjector
{
public:
    virtual ~KeyInjector() = default;
    /// Presses and releases the platform's paste chord (Control+V on Linux), which goes to
    /// whatever window has the keyboard focus. False when the events could not be posted.
    virtual bool postPasteChord() = 0;
    /// Types `strokes` one after another into the window that has the keyboard focus. Every
    /// key is looked up on the current layout first: when one is missing, nothing is typed.
    virtual KeyPostResult postKeys(const QList<KeyStroke>& strokes) = 0;
};

} // namespace Tessaline
