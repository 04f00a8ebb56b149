// SPDX-License-Identifier: MIT
// Reads one running application's menu shortcuts the way Tessaline's scanner does and prints
// them, one per line ("name<TAB>chord<TAB>menu"), then the median time of the reads.
//   scan_menu_probe PID [--plain] [--repeat N] [--quiet]
#include "AtspiPlainElementFactory.h"
#include "FakeAlertPresenter.h"
#include "FakeWorkspace.h"
#include "platform/atspi/AtspiAccessibilityTrust.h"
#include "platform/atspi/AtspiElementFactory.h"
#include "scan/AppMenuScanner.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>

using namespace Tessaline;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStringList arguments = application.arguments().mid(1);
    if (arguments.isEmpty()) {
        QTextStream(stderr) << "usage: scan_menu_probe PID [--plain] [--repeat N] [--quiet]\n";
        return 2;
    }
    const qint64 pid = arguments.takeFirst().toLongLong();
    const bool plain = arguments.contains(QStringLiteral("--plain"));
    const bool quiet = arguments.contains(QStringLiteral("--quiet"));
    int repeat = 1;
    if (const auto at = arguments.indexOf(QStringLiteral("--repeat"));
        at >= 0 && at + 1 < arguments.size())
        repeat = std::max(1, arguments.at(at + 1).toInt());

    Testing::FakeWorkspace workspace;
    workspace.apps = {Testing::makeApp(QStringLiteral("Probe"), QStringLiteral("probe.app"), pid)};
    AtspiAccessibilityTrust trust;
    if (!trust.isTrusted())
        trust.requestTrust();
    AtspiElementFactory snapshot;
    AtspiPlainElementFactory plainWalk;
    AccessibilityElementFactory& elements =
        plain ? static_cast<AccessibilityElementFactory&>(plainWalk) : snapshot;
    Testing::FakeAlertPresenter alerts;
    AppMenuScanner scanner(workspace, trust, elements, alerts);

    QList<double> times;
    ScanOutcome outcome;
    for (int i = 0; i < repeat; ++i) {
        QElapsedTimer timer;
        timer.start();
        outcome = scanner.scan(TrackedApp{QStringLiteral("Probe"), QStringLiteral("probe.app")});
        times.append(timer.nsecsElapsed() / 1e6);
    }
    QTextStream out(stdout);
    if (const auto* error = std::get_if<MenuScanError>(&outcome)) {
        out << "error\t" << error->errorDescription() << "\n";
        return 1;
    }
    const ScanResult& result = std::get<ScanResult>(outcome);
    if (!quiet) {
        for (const ShortcutItem& item : result.shortcuts)
            out << item.name << '\t' << item.chord << '\t' << item.menu.value_or(QString()) << '\n';
    }
    std::sort(times.begin(), times.end());
    QTextStream(stderr) << "items " << result.shortcuts.size() << " median_ms "
                        << times.at(times.size() / 2) << " runs " << times.size() << '\n';
    return 0;
}
