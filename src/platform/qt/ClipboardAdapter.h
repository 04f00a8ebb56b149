// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"

namespace Tessaline {

/// The system clipboard through QClipboard: the CLIPBOARD selection, plain text. The text set
/// here lives as long as Tessaline runs (X11 clipboards are served by their owner).
class ClipboardAdapter final : public Clipboard
{
public:
    std::optional<QString> text() const override;
    void clear() override;
    void setText(const QString& text) override;
};

} // namespace Tessaline
