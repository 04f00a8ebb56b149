// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"

#include <QStringList>

namespace Tessaline::Testing {

/// A clipboard in memory that logs every change ("clear", "set:<text>").
class FakeClipboard final : public Clipboard
{
public:
    std::optional<QString> content;
    QStringList log;

    std::optional<QString> text() const override { return content; }
    void clear() override
    {
        content.reset();
        log.append(QStringLiteral("clear"));
    }
    void setText(const QString& text) override
    {
        content = text;
        log.append(QStringLiteral("set:") + text);
    }
};

} // namespace Tessaline::Testing
