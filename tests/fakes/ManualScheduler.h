// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Scheduler.h"

#include <QList>
#include <QPointer>

namespace Tessaline::Testing {

/// A scheduler driven by the test: work runs when the test advances the virtual time past its
/// deadline, in deadline order (ties in scheduling order).
class ManualScheduler final : public Scheduler
{
public:
    void schedule(int delayMs, const QObject* context, std::function<void()> work) override;

    /// Moves the virtual time forward by `ms` and runs every task that became due.
    void advance(int ms);
    qint64 elapsedMs() const { return m_nowMs; }
    int pendingCount() const { return static_cast<int>(m_tasks.size()); }

private:
    struct Task
    {
        qint64 dueMs;
        quint64 order;
        QPointer<const QObject> context;
        bool hasContext;
        std::function<void()> work;
    };
    QList<Task> m_tasks;
    qint64 m_nowMs = 0;
    quint64 m_nextOrder = 0;
};

} // namespace Tessaline::Testing
