// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MenuCommandRunner.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <memory>

namespace Tessaline::Testing {

/// A menu entry built by the test: a title, children, an enabled flag; it records how often it
/// was activated and how often its children were asked for.
class FakeMenuEntry final : public MenuEntry
{
public:
    explicit FakeMenuEntry(QString title, bool isEnabled = true)
        : enabled(isEnabled), m_title(std::move(title))
    {}

    QString title() const override { return m_title; }
    bool isEnabled() const override { return enabled; }
    bool hasChildren() const override { return !entries.isEmpty(); }
    Expected<MenuEntryList> children() const override
    {
        ++childReads;
        if (answers)
            return entries;
        return Unexpected(QStringLiteral("the app did not answer"));
    }
    Expected<void> activate() override
    {
        ++activations;
        if (onActivate)
            onActivate();
        if (refuses)
            return Unexpected(QStringLiteral("the app refused the menu action"));
        return {};
    }

    /// Adds a child entry and returns it.
    std::shared_ptr<FakeMenuEntry> add(const QString& title, bool childEnabled = true)
    {
        auto child = std::make_shared<FakeMenuEntry>(title, childEnabled);
        entries.append(child);
        return child;
    }

    bool enabled = true;
    bool answers = true;
    bool refuses = false;
    int activations = 0;
    mutable int childReads = 0;
    MenuEntryList entries;
    std::function<void()> onActivate;

private:
    QString m_title;
};

/// Menu bars by process id, as the test builds them.
class FakeMenuCommandRunner final : public MenuCommandRunner
{
public:
    Expected<MenuEntryList> menuBar(qint64 processId) override
    {
        ++reads;
        const auto found = bars.constFind(processId);
        if (found == bars.constEnd())
            return Unexpected(QStringLiteral("the app is not on the accessibility bus"));
        return (*found)->entries;
    }

    /// The menu bar of `processId`, made on first use.
    FakeMenuEntry& bar(qint64 processId)
    {
        auto& entry = bars[processId];
        if (!entry)
            entry = std::make_shared<FakeMenuEntry>(QString());
        return *entry;
    }

    QHash<qint64, std::shared_ptr<FakeMenuEntry>> bars;
    int reads = 0;
};

} // namespace Tessaline::Testing
