// SPDX-License-Identifier: MIT
// Times the X11 workspace's queries with mousepad and xterm running (started here), the way
// the scanner and the tracker call them. Run inside a desktop session:
//   scripts/desktop-session build/release/bin/workspace_bench [iterations]
#include "platform/desktop/DesktopEntries.h"
#include "platform/x11/X11Workspace.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace Tessaline;

namespace {

struct Figures
{
    double median = 0;
    double p90 = 0;
    double min = 0;
};

Figures measure(int iterations, const std::function<void()>& work)
{
    std::vector<double> micros;
    micros.reserve(size_t(iterations));
    for (int i = 0; i < iterations; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        micros.push_back(double(timer.nsecsElapsed()) / 1000.0);
    }
    std::sort(micros.begin(), micros.end());
    return Figures{micros[micros.size() / 2], micros[micros.size() * 9 / 10], micros.front()};
}

void print(const char* what, const Figures& figures, int iterations)
{
    std::printf("%-44s median %8.1f us   p90 %8.1f us   min %8.1f us   (%d runs)\n", what,
                figures.median, figures.p90, figures.min, iterations);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const int iterations = argc > 1 ? std::max(1, atoi(argv[1])) : 200;

    DesktopEntries entries;
    X11Workspace workspace(entries);
    if (!workspace.isAvailable()) {
        std::fprintf(
            stderr, "workspace_bench: needs an X11 session (run inside scripts/desktop-session)\n");
        return 1;
    }

    QProcess mousepad;
    QProcess xterm;
    mousepad.start(QStringLiteral("mousepad"), {QStringLiteral("--disable-server")});
    xterm.start(QStringLiteral("xterm"), {});
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 20000) {
        QCoreApplication::processEvents();
        if (workspace.runningApplications().size() >= 2)
            break;
        QThread::msleep(50);
    }
    QThread::msleep(500);
    QCoreApplication::processEvents();

    // The first call after start-up also loads GIO's index of desktop entries (xterm is found
    // through StartupWMClass); later calls use the cached lookups.
    DesktopEntries coldEntries;
    X11Workspace coldWorkspace(coldEntries);
    QElapsedTimer cold;
    cold.start();
    const QList<RunningApplication> apps = coldWorkspace.runningApplications();
    const double coldMicros = double(cold.nsecsElapsed()) / 1000.0;

    std::printf("Running applications (%lld):\n", static_cast<long long>(apps.size()));
    for (const RunningApplication& running : apps) {
        std::printf("  %-12s %-20s pid %lld %s\n",
                    qPrintable(running.localizedName.value_or(QStringLiteral("-"))),
                    qPrintable(running.bundleIdentifier.value_or(QStringLiteral("-"))),
                    static_cast<long long>(running.processId),
                    running.isRegular ? "regular" : "not regular");
    }
    std::printf("%-44s %8.1f us\n", "runningApplications(), fresh lookup caches", coldMicros);
    print("runningApplications()", measure(iterations, [&] { workspace.runningApplications(); }),
          iterations);
    print("frontmostApplication()", measure(iterations, [&] { workspace.frontmostApplication(); }),
          iterations);
    print(
        "runningApplications(\"debian-xterm\")",
        measure(iterations, [&] { workspace.runningApplications(QStringLiteral("debian-xterm")); }),
        iterations);

    for (QProcess* process : {&mousepad, &xterm}) {
        process->terminate();
        if (!process->waitForFinished(3000))
            process->kill();
        process->waitForFinished(3000);
    }
    return 0;
}
