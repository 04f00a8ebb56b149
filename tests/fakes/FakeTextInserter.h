// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TextInserter.h"

#include <QStringList>

namespace Tessaline::Testing {

/// Records the texts it is asked to insert; `accepts` says whether the focused field takes them.
class FakeTextInserter final : public TextInserter
{
public:
    bool accepts = true;
    QStringList asked;

    bool insertAtCaret(const QString& text) override
    {
        asked.append(text);
        return accepts;
    }
};

} // namespace Tessaline::Testing
