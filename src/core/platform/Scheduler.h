// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

namespace Tessaline {

/// Runs work on the main thread after a delay. Work bound to a context object is dropped when
/// that object is destroyed first, so nothing runs once its owner is gone.
class Scheduler
{
public:
    virtual ~Scheduler() = default;
    virtual void schedule(int delayMs, const QObject* context, std::function<void()> work) = 0;
};

/// The Qt event loop's timers.
class TimerScheduler final : public Scheduler
{
public:
    void schedule(int delayMs, const QObject* context, std::function<void()> work) override;
};

} // namespace Tessaline
