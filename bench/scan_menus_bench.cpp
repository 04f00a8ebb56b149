// SPDX-License-Identifier: MIT
// Times menu scans of a running application (by process id) through Tessaline's scanner:
// the full current-app scan with the vault merge (snapshot reader), the reading alone, and
// the vault merge alone, and the same reading done by the plain libatspi walk. Prints the
// median of each.
//   scan-menus-bench PID [RUNS]
#include "AtspiPlainElementFactory.h"
#include "platform/AlertPresenter.h"
#include "platform/Workspace.h"
#include "platform/atspi/AtspiAccessibilityTrust.h"
#include "platform/atspi/AtspiElementFactory.h"
#include "scan/AppMenuScanner.h"
#include "vault/VaultStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <algorithm>

using namespace Tessaline;

namespace {

const QString kBundleID = QStringLiteral("bench.scanned.app");

// One running application: the process being measured.
class SingleAppWorkspace final : public Workspace
{
public:
    explicit SingleAppWorkspace(qint64 pid) : m_app{QStringLiteral("Scanned"), kBundleID, pid, true}
    {}
    std::optional<RunningApplication> frontmostApplication() const override { return m_app; }
    QList<RunningApplication> runningApplications() const override { return {m_app}; }
    bool activate(const RunningApplication&) override { return false; }

private:
    RunningApplication m_app;
};

class NoAlerts final : public AlertPresenter
{
public:
    int runModal(const QString&, const QString&, const QStringList&) override { return 0; }
};

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 2) {
        QTextStream(stderr) << "usage: scan-menus-bench PID [RUNS]\n";
        return 2;
    }
    const qint64 pid = arguments.at(1).toLongLong();
    const int runs = arguments.size() > 2 ? std::max(1, arguments.at(2).toInt()) : 9;

    SingleAppWorkspace workspace(pid);
    AtspiAccessibilityTrust trust;
    if (!trust.isTrusted())
        trust.requestTrust();
    NoAlerts alerts;
    AtspiElementFactory snapshot;
    AtspiPlainElementFactory plain;
    AppMenuScanner scanner(workspace, trust, snapshot, alerts);
    AppMenuScanner plainScanner(workspace, trust, plain, alerts);
    QTemporaryDir folder;
    VaultStore store(
        VaultStore::Configuration{folder.filePath(QStringLiteral("keybinds.json")), {}});
    const TrackedApp app{QStringLiteral("Scanned"), kBundleID};

    QList<double> full;
    QList<double> reading;
    QList<double> walk;
    QList<double> merging;
    QString status;
    qsizetype found = 0;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        plainScanner.scan(app);
        walk.append(timer.nsecsElapsed() / 1e6);
        // Let whatever the plain walk's library still has queued be handled outside the timing.
        QEventLoop settle;
        QTimer::singleShot(100, &settle, &QEventLoop::quit);
        settle.exec();

        timer.restart();
        QEventLoop loop;
        QObject::connect(&scanner, &AppMenuScanner::scanFinished, &loop, &QEventLoop::quit);
        scanner.scanAndMergeCurrentApp(app, store);
        if (scanner.isScanning())
            loop.exec();
        full.append(timer.nsecsElapsed() / 1e6);
        status = scanner.statusText().value_or(QString());

        timer.restart();
        const ScanOutcome read = scanner.scan(app);
        reading.append(timer.nsecsElapsed() / 1e6);
        if (const auto* result = std::get_if<ScanResult>(&read)) {
            found = result->shortcuts.size();
            timer.restart();
            store.mergeScannedShortcuts(result->shortcuts, result->app);
            merging.append(timer.nsecsElapsed() / 1e6);
        }
    }
    QTextStream out(stdout);
    out << "tessaline scan + merge (snapshot): median " << QString::number(median(full), 'f', 1)
        << " ms over " << runs << " runs (" << found << " shortcuts; last status: " << status
        << ")\n";
    out << "tessaline reading only (snapshot): median " << QString::number(median(reading), 'f', 1)
        << " ms\n";
    if (!merging.isEmpty())
        out << "vault merge alone (all already present; sorts and writes the file): median "
            << QString::number(median(merging), 'f', 1) << " ms\n";
    out << "plain libatspi walk (same scanner): median " << QString::number(median(walk), 'f', 1)
        << " ms\n";
    return 0;
}
