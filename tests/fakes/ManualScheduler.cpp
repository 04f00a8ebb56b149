// SPDX-License-Identifier: MIT
#include "ManualScheduler.h"

#include <algorithm>

namespace Tessaline::Testing {

void ManualScheduler::schedule(int delayMs, const QObject* context, std::function<void()> work)
{
    m_tasks.append(
        Task{m_nowMs + delayMs, m_nextOrder++, context, context != nullptr, std::move(work)});
}

void ManualScheduler::advance(int ms)
{
    const qint64 target = m_nowMs + ms;
    for (;;) {
        auto next =
            std::min_element(m_tasks.begin(), m_tasks.end(), [](const Task& a, const Task& b) {
                return a.dueMs != b.dueMs ? a.dueMs < b.dueMs : a.order < b.order;
            });
        if (next == m_tasks.end() || next->dueMs > target)
            break;
        Task task = std::move(*next);
        m_tasks.erase(next);
        m_nowMs = task.dueMs;
        if (!task.hasContext || task.context)
            task.work();
    }
    m_nowMs = target;
}

} // namespace Tessaline::Testing
