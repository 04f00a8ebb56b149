// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowHints.h"

#include <QList>

namespace Tessaline::Testing {

/// Records the windows that were to be kept out of the taskbar.
class FakeWindowHints final : public WindowHints
{
public:
    QList<const QWindow*> skippedTaskbar;

    void skipTaskbar(QWindow& window) override { skippedTaskbar.append(&window); }
};

} // namespace Tessaline::Testing
