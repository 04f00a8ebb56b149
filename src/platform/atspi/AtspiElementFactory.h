// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElementFactory.h"

namespace Tessaline {

/// Application elements from the desktop's accessibility service (AT-SPI).
class AtspiElementFactory final : public AccessibilityElementFactory
{
public:
    enum class Mode
    {
        /// The whole menu bar in a few pipelined rounds of D-Bus calls.
        snapshot,
        /// One libatspi call per question, as a plain client walks the tree.
        plainWalk,
    };

    /// Per-call time limit: an application that does not answer costs this, not minutes.
    static constexpr int kCallTimeoutMs = 500;

    explicit AtspiElementFactory(Mode mode = Mode::snapshot);

    AccessibilityElementPtr applicationElement(qint64 processId) override;

private:
    AccessibilityElementPtr plainApplicationElement(qint64 processId);
    AccessibilityElementPtr snapshotApplicationElement(qint64 processId);

    Mode m_mode;
};

} // namespace Tessaline
