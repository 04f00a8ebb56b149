// SPDX-License-Identifier: MIT
#include "scan/AppMenuScanner.h"

#include "LogCategories.h"
#include "platform/AccessibilityElementFactory.h"
#include "platform/AccessibilityTrust.h"
#include "platform/AlertPresenter.h"
#include "platform/Workspace.h"
#include "scan/MenuReader.h"
#include "vault/ScanHistory.h"
#include "vault/ShortcutDrift.h"
#include "vault/VaultOrder.h"
#include "vault/VaultStore.h"

#include <QPointer>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <limits>

namespace Tessaline {

namespace {

// Adds with a trap instead of wrapping: a counter that overflows is a programming error.
int checkedAdd(int a, int b)
{
    int sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        qFatal("AppMenuScanner: counter overflow");
    return sum;
}

int toCount(qsizetype value)
{
    if (value < 0 || value > std::numeric_limits<int>::max())
        qFatal("AppMenuScanner: count out of range");
    return static_cast<int>(value);
}

// What merging one app's scan did to the vault.
struct Merged
{
    int added = 0;
    /// Items of the pack the scan made stale.
    int changed = 0;
};

// Merges `result` into `store` as the merge always has, then keeps the scan as the app's last
// one in the store's scan history and counts the items it made stale.
Merged mergeAndRecord(VaultStore& store, const ScanResult& result)
{
    const std::optional<AppShortcutPack> before = store.appPack(result.app);
    Merged merged;
    merged.added = toCount(store.mergeScannedShortcuts(result.shortcuts, result.app));
    // An empty scan changes nothing, in the vault or in its history: a menu bar that answers
    // with nothing says little about the commands it had.
    if (result.shortcuts.isEmpty())
        return merged;
    const std::optional<AppShortcutPack> after = store.appPack(result.app);
    if (!after)
        return merged;
    ScanHistory& history = store.scanHistory();
    const QString key = ScanHistory::packKey(*after);
    const std::optional<ScanRecord> previous = history.lastScan(key);
    if (const Expected<void> recorded = history.record(key, result.shortcuts); !recorded)
        qCWarning(lcScan) << recorded.error();
    merged.changed =
        ShortcutDrift::newlyStale(before ? before->shortcuts : QList<ShortcutItem>{}, previous,
                                  after->shortcuts, ScanRecord::of(result.shortcuts));
    return merged;
}

} // namespace

struct AppMenuScanner::OpenAppsRun
{
    QPointer<VaultStore> store;
    QList<TrackedApp> apps;
    int next = 0;
    int scanned = 0;
    int added = 0;
    int found = 0;
    int withShortcuts = 0;
    int changed = 0;
};

AppMenuScanner::AppMenuScanner(Workspace& workspace, AccessibilityTrust& trust,
                               AccessibilityElementFactory& elements, AlertPresenter& alerts,
                               QObject* parent)
    : QObject(parent), m_workspace(workspace), m_trust(trust), m_elements(elements),
      m_alerts(alerts)
{}

AppMenuScanner::~AppMenuScanner() = default;

std::optional<QString> AppMenuScanner::statusText(const TrackedApp& app) const
{
    if (!m_statusAppBundleID)
        return m_statusText;
    if (app.bundleID && *app.bundleID == *m_statusAppBundleID)
        return m_statusText;
    return std::nullopt;
}

std::optional<QString> AppMenuScanner::driftText(const TrackedApp& app) const
{
    // The note goes with the message: shown where the message is.
    return statusText(app) ? m_driftText : std::nullopt;
}

std::optional<QString> AppMenuScanner::statusLine(const TrackedApp& app) const
{
    const std::optional<QString> status = statusText(app);
    if (!status)
        return std::nullopt;
    if (const std::optional<QString> drift = driftText(app))
        return joinedWithDrift(*status, *drift);
    return status;
}

QString AppMenuScanner::joinedWithDrift(const QString& status, const QString& drift)
{
    const bool sentence = status.endsWith(QLatin1Char('.'));
    return (sentence ? status.chopped(1) : status) + QStringLiteral(", ") + drift +
           (sentence ? QStringLiteral(".") : QString());
}

void AppMenuScanner::setDrift(int changed)
{
    const std::optional<QString> text =
        changed > 0 ? std::optional(QStringLiteral("%1 changed since the last scan").arg(changed))
                    : std::nullopt;
    if (text == m_driftText)
        return;
    m_driftText = text;
    emit driftTextChanged();
}

// Unlike most setters these notify on every assignment, also of an unchanged value: observers
// get one notification per step of a scan.
void AppMenuScanner::setScanning(bool scanning)
{
    m_isScanning = scanning;
    emit isScanningChanged();
}

void AppMenuScanner::setStatusText(const std::optional<QString>& text)
{
    m_statusText = text;
    emit statusTextChanged();
}

void AppMenuScanner::setStatusAppBundleID(const std::optional<QString>& bundleID)
{
    m_statusAppBundleID = bundleID;
    emit statusAppBundleIDChanged();
}

void AppMenuScanner::finishScan()
{
    qCDebug(lcScan, "scan finished: %s", qUtf8Printable(m_statusText.value_or(QString())));
    setScanning(false);
    emit scanFinished();
}

void AppMenuScanner::scanAndMergeCurrentApp(const TrackedApp& app, VaultStore& store)
{
    if (m_isScanning)
        return;
    setScanning(true);
    setDrift(0);
    setStatusAppBundleID(app.bundleID);
    setStatusText(QStringLiteral("Scanning %1 menus...").arg(app.name));
    // The reading blocks while the other application answers; let the message paint first.
    QTimer::singleShot(0, this, [this, app, store = QPointer<VaultStore>(&store)] {
        runCurrentAppScan(app, store.data());
    });
}

void AppMenuScanner::runCurrentAppScan(const TrackedApp& app, VaultStore* store)
{
    const ScanOutcome outcome = scan(app);
    if (const auto* error = std::get_if<MenuScanError>(&outcome)) {
        if (error->kind == MenuScanError::Kind::accessibilityNotGranted) {
            setStatusText(QStringLiteral("Accessibility permission is needed to scan app menus."));
            promptForAccessibility();
        } else {
            setStatusText(error->errorDescription());
        }
        finishScan();
        return;
    }
    const ScanResult& result = std::get<ScanResult>(outcome);
    const int n = static_cast<int>(result.shortcuts.size());
    const Merged merged = store ? mergeAndRecord(*store, result) : Merged{};
    const int added = merged.added;
    // The note first, so that whoever hears of the final message finds it in place.
    setDrift(merged.changed);
    const QString& name = result.app.name;
    if (n == 0) {
        setStatusText(QStringLiteral("No menu shortcuts found for %1.").arg(name));
    } else if (added == 0) {
        setStatusText(QStringLiteral("Found %1 shortcuts for %2; they were already in the vault.")
                          .arg(n)
                          .arg(name));
    } else {
        setStatusText(QStringLiteral("Added %1 of %2 discovered shortcuts for %3.")
                          .arg(added)
                          .arg(n)
                          .arg(name));
    }
    finishScan();
}

void AppMenuScanner::scanAndMergeOpenApps(VaultStore& store)
{
    if (m_isScanning)
        return;
    setScanning(true);
    setDrift(0);
    setStatusAppBundleID(std::nullopt);
    setStatusText(QStringLiteral("Preparing to scan open apps..."));
    if (!m_trust.isTrusted()) {
        setStatusText(QStringLiteral("Accessibility permission is needed to scan open apps."));
        promptForAccessibility();
        finishScan();
        return;
    }
    auto run = std::make_shared<OpenAppsRun>();
    run->store = &store;
    run->apps = scannableRunningApps();
    if (run->apps.isEmpty()) {
        setStatusText(QStringLiteral("No open apps with menu bars were found."));
        finishScan();
        return;
    }
    scanNextOpenApp(run);
}

void AppMenuScanner::scanNextOpenApp(std::shared_ptr<OpenAppsRun> run)
{
    const int total = static_cast<int>(run->apps.size());
    if (run->next >= total) {
        setDrift(run->changed);
        setStatusText(
            QStringLiteral("Scanned %1 open apps. Added %2 new shortcuts from %3 found across %4 "
                           "apps.")
                .arg(run->scanned)
                .arg(run->added)
                .arg(run->found)
                .arg(run->withShortcuts));
        finishScan();
        return;
    }
    const TrackedApp app = run->apps.at(run->next);
    run->next = checkedAdd(run->next, 1);
    setStatusText(QStringLiteral("Scanning %1 (%2 of %3)...")
                      .arg(app.name, QString::number(run->next), QString::number(total)));
    // One application per turn of the event loop, so the progress message can paint.
    QTimer::singleShot(0, this, [this, run, app] {
        const ScanOutcome outcome = scan(app);
        if (const auto* result = std::get_if<ScanResult>(&outcome)) {
            const int count = static_cast<int>(result->shortcuts.size());
            const Merged merged = run->store ? mergeAndRecord(*run->store, *result) : Merged{};
            run->scanned = checkedAdd(run->scanned, 1);
            run->found = checkedAdd(run->found, count);
            run->added = checkedAdd(run->added, merged.added);
            run->changed = checkedAdd(run->changed, merged.changed);
            if (count > 0)
                run->withShortcuts = checkedAdd(run->withShortcuts, 1);
        }
        scanNextOpenApp(run);
    });
}

ScanOutcome AppMenuScanner::scan(const TrackedApp& app)
{
    if (!app.bundleID)
        return MenuScanError::missingBundleID();
    if (!m_trust.isTrusted())
        return MenuScanError::accessibilityNotGranted();
    const QList<RunningApplication> running = m_workspace.runningApplications(*app.bundleID);
    if (running.isEmpty())
        return MenuScanError::appNotRunning(app.name);
    const AccessibilityElementPtr application =
        m_elements.applicationElement(running.first().processId);
    if (!application)
        return MenuScanError::menuUnavailable(app.name);
    const QVariant menuBarValue = application->attributeValue(AccessibilityAttribute::menuBar);
    if (menuBarValue.metaType() != QMetaType::fromType<AccessibilityElementPtr>())
        return MenuScanError::menuUnavailable(app.name);
    const auto menuBar = menuBarValue.value<AccessibilityElementPtr>();
    if (!menuBar)
        return MenuScanError::menuUnavailable(app.name);

    return ScanResult{app, MenuReader::readMenuBar(menuBar)};
}

QList<TrackedApp> AppMenuScanner::scannableRunningApps() const
{
    const std::optional<QString> own = m_workspace.ownBundleIdentifier();
    QList<TrackedApp> apps;
    QSet<QString> seen;
    for (const RunningApplication& running : m_workspace.runningApplications()) {
        if (!running.isRegular || !running.bundleIdentifier)
            continue;
        const QString& bundleID = *running.bundleIdentifier;
        if (own && bundleID == *own)
            continue;
        if (seen.contains(bundleID))
            continue;
        seen.insert(bundleID);
        apps.append(TrackedApp{running.localizedName.value_or(bundleID), bundleID});
    }
    VaultOrder::sortByName(apps, [](const TrackedApp& app) -> const QString& { return app.name; });
    return apps;
}

void AppMenuScanner::promptForAccessibility()
{
    const int response = m_alerts.runModal(
        QStringLiteral("Accessibility permission needed"),
        QStringLiteral("Tessaline needs Accessibility permission to read app menus and discover "
                       "shortcuts. After enabling it, reopen the app you want to scan and try "
                       "again."),
        {QStringLiteral("Turn On Accessibility"), QStringLiteral("Cancel")});
    if (response == AlertPresenter::kFirstButton)
        m_trust.requestTrust();
}

void AppMenuScanner::clearStatus()
{
    setDrift(0);
    setStatusText(std::nullopt);
    setStatusAppBundleID(std::nullopt);
}

} // namespace Tessaline
