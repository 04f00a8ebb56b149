// SPDX-License-Identifier: MIT
#include "platform/Scheduler.h"

#include <QTimer>

namespace Tessaline {

void TimerScheduler::schedule(int delayMs, const QObject* context, std::function<void()> work)
{
    QTimer::singleShot(delayMs, context, std::move(work));
}

} // namespace Tessaline
