// SPDX-License-Identifier: MIT
// What the raw-key monitor costs while no key is pressed: the CPU time of this process and the
// number of event-loop wake-ups over an idle period, first without the monitor, then with it
// started. Needs an X display (run it inside scripts/desktop-session).
//
//   coach-idle-bench [SECONDS]      (default 10 per phase)
#include "platform/x11/XInputKeyMonitor.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTimer>

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>

using namespace Tessaline;

namespace {

struct CpuSample
{
    double statMs = 0;   // utime + stime from /proc/self/stat (clock-tick resolution)
    double rusageMs = 0; // the same from getrusage (microsecond resolution)
};

CpuSample sampleCpu()
{
    CpuSample sample;
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (stat.open(QIODevice::ReadOnly)) {
        const QByteArray line = stat.readAll();
        // Fields after the command name, which is in parentheses and may hold spaces.
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        // utime and stime are fields 14 and 15 of the line, 12 and 13 after the name.
        if (fields.size() > 12) {
            const double ticks = fields.at(11).toDouble() + fields.at(12).toDouble();
            sample.statMs = ticks * 1000.0 / static_cast<double>(::sysconf(_SC_CLK_TCK));
        }
    }
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    sample.rusageMs = (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000.0 +
                      (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000.0;
    return sample;
}

struct Phase
{
    double statMs = 0;
    double rusageMs = 0;
    int wakeUps = 0;
};

// Runs the event loop for `seconds` and measures it.
Phase idleFor(QGuiApplication& app, int seconds)
{
    int wakeUps = 0;
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    const auto connection =
        QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, [&wakeUps] { ++wakeUps; });
    const CpuSample before = sampleCpu();
    QTimer::singleShot(seconds * 1000, &app, &QCoreApplication::quit);
    app.exec();
    const CpuSample after = sampleCpu();
    QObject::disconnect(connection);
    // The wake-up of the timer that ends the phase is not idle work.
    return Phase{after.statMs - before.statMs, after.rusageMs - before.rusageMs,
                 qMax(0, wakeUps - 1)};
}

void print(const char* name, const Phase& phase, int seconds)
{
    std::printf("%-26s cpu %7.2f ms (/proc/self/stat %6.1f ms)  %5.3f%% of one core  "
                "wake-ups %d\n",
                name, phase.rusageMs, phase.statMs, phase.rusageMs / (seconds * 10.0),
                phase.wakeUps);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const int seconds = argc > 1 ? qMax(1, QByteArray(argv[1]).toInt()) : 10;

    // Let start-up work (fonts, platform plugin, X replies) settle first.
    QTimer::singleShot(500, &app, &QCoreApplication::quit);
    app.exec();

    const Phase baseline = idleFor(app, seconds);

    XInputKeyMonitor monitor;
    int events = 0;
    if (!monitor.start([&events](const SystemKeyEvent&) { ++events; })) {
        std::fprintf(stderr, "the raw-key monitor could not start (no X11 display?)\n");
        return 1;
    }
    const Phase monitored = idleFor(app, seconds);
    const int idleEvents = events;

    // Proof that the monitor is live: 100 presses of a key without a tip, sent through XTEST.
    QProcess typist;
    typist.start(QStringLiteral("xdotool"),
                 {QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("10"),
                  QStringLiteral("--repeat"), QStringLiteral("100"),
                  QStringLiteral("XF86AudioMute")});
    const CpuSample typingBefore = sampleCpu();
    QObject::connect(&typist, &QProcess::finished, &app, [&app] {
        // Let the last events arrive.
        QTimer::singleShot(200, &app, &QCoreApplication::quit);
    });
    app.exec();
    const CpuSample typingAfter = sampleCpu();
    monitor.stop();

    std::printf("idle period: %d s per phase\n", seconds);
    print("without monitor", baseline, seconds);
    print("with raw-key monitor", monitored, seconds);
    std::printf("monitor cost while idle: %+.2f ms CPU, %+d wake-ups, %d key events\n",
                monitored.rusageMs - baseline.rusageMs, monitored.wakeUps - baseline.wakeUps,
                idleEvents);
    const int typedEvents = events - idleEvents;
    std::printf("while typing 100 keys: %d events (press + release), %.2f ms CPU, "
                "%.1f us per event\n",
                typedEvents, typingAfter.rusageMs - typingBefore.rusageMs,
                typedEvents ? (typingAfter.rusageMs - typingBefore.rusageMs) * 1000.0 / typedEvents
                            : 0.0);
    return 0;
}
