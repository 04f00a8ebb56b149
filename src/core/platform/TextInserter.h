// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Tessaline {

/// Types text straight into the text field that has the keyboard focus in another application,
/// without the clipboard, where the session offers a way to (the accessibility bus's editable
/// text, used on Wayland where no keystroke can be posted).
class TextInserter
{
public:
    virtual ~TextInserter() = default;
    /// Inserts `text` at the caret of the focused text field and puts the caret after it.
    /// False when no editable field has the focus or it refused the text.
    virtual bool insertAtCaret(const QString& text) = 0;
};

} // namespace Tessaline
