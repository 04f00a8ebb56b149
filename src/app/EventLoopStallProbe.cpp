// SPDX-License-Identifier: MIT
#include "EventLoopStallProbe.h"

#include "LogCategories.h"

namespace Tessaline {

namespace {

// The probe's tick; a turn later than this by more than a frame is a stall.
constexpr int kTickMs = 5;
constexpr qint64 kReportedStallMs = 16;

} // namespace

EventLoopStallProbe::EventLoopStallProbe()
{
    m_timer.setInterval(kTickMs);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
}

void EventLoopStallProbe::startIfEnabled()
{
    if (!lcStall().isDebugEnabled() || m_timer.isActive())
        return;
    m_clock.start();
    m_lastTickMs = 0;
    m_timer.start();
}

void EventLoopStallProbe::tick()
{
    const qint64 now = m_clock.elapsed();
    const qint64 stall = now - m_lastTickMs - kTickMs;
    m_lastTickMs = now;
    if (stall <= kReportedStallMs)
        return;
    if (stall > m_longestMs)
        m_longestMs = stall;
    qCDebug(lcStall, "event loop stalled %lld ms (longest %lld ms)", static_cast<long long>(stall),
            static_cast<long long>(m_longestMs));
}

} // namespace Tessaline
