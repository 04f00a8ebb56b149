// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace Tessaline {

/// The system clipboard, plain text only. On Linux: the CLIPBOARD selection.
class Clipboard
{
public:
    virtual ~Clipboard() = default;
    /// The clipboard's plain text; absent when it holds no text at all.
    virtual std::optional<QString> text() const = 0;
    /// Empties the clipboard of every format.
    virtual void clear() = 0;
    /// Puts `text` on the clipboard as plain text, replacing whatever it held.
    virtual void setText(const QString& text) = 0;
};

} // namespace Tessaline
