// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTimer>

namespace Tessaline {

/// Measures how long the main thread's event loop goes without a turn: a short timer that
/// notes how late each of its ticks comes, and logs every stall longer than a frame under
/// "tessaline.stall" (debug). It runs only while that category is enabled, so a benchmark can
/// ask for it with QT_LOGGING_RULES and an ordinary session pays nothing.
class EventLoopStallProbe final
{
public:
    EventLoopStallProbe();

    /// Starts the probe when the category is enabled; otherwise does nothing.
    void startIfEnabled();

private:
    void tick();

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_lastTickMs = 0;
    qint64 m_longestMs = 0;
};

} // namespace Tessaline
