// SPDX-License-Identifier: MIT
#include "ScanCommands.h"

#include "VaultCli.h"

#include "platform/AlertPresenter.h"
#include "platform/PlatformServices.h"
#include "platform/atspi/AtspiAccessibilityTrust.h"
#include "platform/atspi/AtspiElementFactory.h"
#include "platform/desktop/DesktopEntries.h"
#include "scan/AppMenuScanner.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <cstdio>
#include <unistd.h>

namespace Tessaline {

namespace {

const QString kBundleId = QStringLiteral("--bundle-id");
const QString kAll = QStringLiteral("--all");

/// Alerts on the terminal: the message on standard error, and a yes/no question when standard
/// input is a terminal (otherwise the last button, the cancelling one, is taken).
class TerminalAlertPresenter final : public AlertPresenter
{
public:
    explicit TerminalAlertPresenter(QTextStream& err) : m_err(err) {}

    int runModal(const QString& message, const QString& informativeText,
                 const QStringList& buttons) override
    {
        m_err << message << '\n' << informativeText << '\n';
        const int cancel = kFirstButton + static_cast<int>(buttons.size()) - 1;
        if (buttons.size() < 2 || !isatty(STDIN_FILENO)) {
            m_err.flush();
            return cancel;
        }
        m_err << buttons.first() << "? [y/N] ";
        m_err.flush();
        QTextStream in(stdin);
        const QString answer = in.readLine().trimmed().toLower();
        return answer == QStringLiteral("y") || answer == QStringLiteral("yes") ? kFirstButton
                                                                                : cancel;
    }

private:
    QTextStream& m_err;
};

/// The platform a scan needs, set up for one command.
struct ScanPlatform
{
    explicit ScanPlatform(QTextStream& err)
        : workspace(createWorkspace(entries)), alerts(err),
          scanner(*workspace, trust, elements, alerts)
    {}

    DesktopEntries entries;
    std::unique_ptr<Workspace> workspace;
    AtspiAccessibilityTrust trust;
    AtspiElementFactory elements;
    TerminalAlertPresenter alerts;
    AppMenuScanner scanner;
};

// Runs the event loop until the scan that was just started has ended.
void waitForScan(AppMenuScanner& scanner)
{
    if (!scanner.isScanning())
        return;
    QEventLoop loop;
    QObject::connect(&scanner, &AppMenuScanner::scanFinished, &loop, &QEventLoop::quit);
    loop.exec();
}

int scan(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (arguments.has(kAll) && arguments.has(kBundleId))
        return cli.fail(QStringLiteral("give either --bundle-id or --all"), VaultCli::UsageError);
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    ScanPlatform platform(cli.err());
    VaultStore& store = cli.store();
    if (arguments.has(kAll)) {
        platform.scanner.scanAndMergeOpenApps(store);
    } else {
        TrackedApp app = TrackedApp::placeholder();
        if (arguments.has(kBundleId)) {
            const QString bundleID = arguments.option(kBundleId);
            app = TrackedApp{bundleID, bundleID};
            const QList<RunningApplication> running =
                platform.workspace->runningApplications(bundleID);
            if (!running.isEmpty() && running.first().localizedName)
                app.name = *running.first().localizedName;
        } else if (const auto front = platform.workspace->frontmostApplication()) {
            app = TrackedApp{front->localizedName.value_or(QStringLiteral("Desktop")),
                             front->bundleIdentifier};
        }
        platform.scanner.scanAndMergeCurrentApp(app, store);
    }
    waitForScan(platform.scanner);
    const QString status = platform.scanner.statusText().value_or(QString());
    const std::optional<QString> drift = platform.scanner.driftText();
    cli.out() << (drift ? AppMenuScanner::joinedWithDrift(status, *drift) : status) << '\n';
    return cli.finishWithStoreStatus();
}

int apps(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    ScanPlatform platform(cli.err());
    const QList<TrackedApp> found = platform.scanner.scannableRunningApps();
    if (arguments.json) {
        QJsonArray list;
        for (const TrackedApp& app : found)
            list.append(
                QJsonObject{{QStringLiteral("name"), app.name},
                            {QStringLiteral("bundleID"), app.bundleID.value_or(QString())}});
        cli.out() << QString::fromUtf8(
            QJsonDocument(QJsonObject{{QStringLiteral("apps"), list}}).toJson());
        return VaultCli::Success;
    }
    for (const TrackedApp& app : found)
        cli.out() << app.name << '\t' << app.bundleID.value_or(QString()) << '\n';
    return VaultCli::Success;
}

} // namespace

bool scanCommandRequested(const QStringList& arguments)
{
    const QString command = VaultCli::commandIn(arguments);
    return command == QStringLiteral("scan") || command == QStringLiteral("apps");
}

void addScanCommands(VaultCli& cli)
{
    VaultCli::Command scanCommand{
        QStringLiteral("scan"),
        QStringLiteral("[--bundle-id ID | --all]"),
        QStringLiteral(
            "Read the menu bar of a running application and add the shortcuts found to its\n"
            "pack in the vault: the application in front, the one with bundle id ID, or with\n"
            "--all every open application one after another. Prints the scan's status line.\n"
            "Needs the desktop's accessibility switched on (asked for when it is off)."),
        {kBundleId},
        0,
        0,
        false,
        scan};
    scanCommand.flagOptions = {kAll};
    cli.addCommand(scanCommand);
    cli.addCommand(
        {QStringLiteral("apps"),
         QString(),
         QStringLiteral("List the running applications a scan can read: name and bundle id."),
         {},
         0,
         0,
         true,
         apps});
}

} // namespace Tessaline
