// SPDX-License-Identifier: MIT
#pragma once

#include "context/TrackedApp.h"
#include "platform/AccessibilityElement.h"
#include "scan/MenuScanError.h"
#include "scan/ScanResult.h"
#include "vault/ShortcutItem.h"

#include <QObject>
#include <QStringList>

#include <optional>

namespace Tessaline {

class AccessibilityElementFactory;
class AccessibilityTrust;
class AlertPresenter;
class VaultStore;
class Workspace;

/// Reads the menu bars of running applications, turns their keyboard equivalents into
/// shortcuts, merges them into the vault and publishes a one-line status message.
///
/// Scans run on the main thread: a request sets `isScanning` and the first message at once,
/// then continues through the event loop, one application per turn, so the interface can
/// repaint between applications. A request while a scan runs is dropped.
class AppMenuScanner : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(QString statusText READ statusTextOrNull NOTIFY statusTextChanged)
    Q_PROPERTY(
        QString statusAppBundleID READ statusAppBundleIDOrNull NOTIFY statusAppBundleIDChanged)
    Q_PROPERTY(QString driftText READ driftTextOrNull NOTIFY driftTextChanged)
public:
    AppMenuScanner(Workspace& workspace, AccessibilityTrust& trust,
                   AccessibilityElementFactory& elements, AlertPresenter& alerts,
                   QObject* parent = nullptr);
    ~AppMenuScanner() override;

    bool isScanning() const { return m_isScanning; }
    /// The last status message; it stays after the scan ends.
    std::optional<QString> statusText() const { return m_statusText; }
    /// The bundle id the message belongs to; absent for a general (open-apps) message.
    std::optional<QString> statusAppBundleID() const { return m_statusAppBundleID; }
    QString statusTextOrNull() const { return m_statusText.value_or(QString()); }
    QString statusAppBundleIDOrNull() const { return m_statusAppBundleID.value_or(QString()); }

    /// The message for a view that shows `app`: a general message, or one about this app.
    std::optional<QString> statusText(const TrackedApp& app) const;

    /// The note that goes with the last scan's message when it made shortcuts of the vault
    /// stale ("2 changed since the last scan"); absent when it made none. It belongs to the
    /// same app as the message.
    std::optional<QString> driftText() const { return m_driftText; }
    QString driftTextOrNull() const { return m_driftText.value_or(QString()); }
    /// The note for a view that shows `app`, by the same rule as statusText(app).
    std::optional<QString> driftText(const TrackedApp& app) const;
    /// The line a view that shows `app` draws: the message, with the drift note after it.
    std::optional<QString> statusLine(const TrackedApp& app) const;
    /// `status` with `drift` after it: "Found 3 shortcuts for Editor; they were already in the
    /// vault, 2 changed since the last scan."
    static QString joinedWithDrift(const QString& status, const QString& drift);

    /// Scans `app` and merges what it finds into `store`. Emits scanFinished() when done
    /// (not when the request was dropped because a scan is running).
    void scanAndMergeCurrentApp(const TrackedApp& app, VaultStore& store);
    /// Scans every scannable running application in turn and merges into `store`.
    void scanAndMergeOpenApps(VaultStore& store);

    /// Reads one application: the checks (bundle id, trust, running, menu bar), then the walk.
    ScanOutcome scan(const TrackedApp& app);
    /// Regular running applications with a bundle id other than Tessaline's, one per bundle
    /// id, sorted by name.
    QList<TrackedApp> scannableRunningApps() const;
    /// Explains why the permission is needed and, if the user agrees, asks for it.
    void promptForAccessibility();
    /// Forgets the status message and the app it belongs to (the HUD's dismiss button).
    void clearStatus();

signals:
    void isScanningChanged();
    void statusTextChanged();
    void statusAppBundleIDChanged();
    void driftTextChanged();
    /// A scan that was started has ended (its status message is in place).
    void scanFinished();

private:
    struct OpenAppsRun;

    void setScanning(bool scanning);
    void setStatusText(const std::optional<QString>& text);
    void setStatusAppBundleID(const std::optional<QString>& bundleID);
    /// Sets the drift note for `changed` shortcuts (none when there are none).
    void setDrift(int changed);
    void finishScan();
    void runCurrentAppScan(const TrackedApp& app, VaultStore* store);
    void scanNextOpenApp(std::shared_ptr<OpenAppsRun> run);

    Workspace& m_workspace;
    AccessibilityTrust& m_trust;
    AccessibilityElementFactory& m_elements;
    AlertPresenter& m_alerts;
    bool m_isScanning = false;
    std::optional<QString> m_statusText;
    std::optional<QString> m_statusAppBundleID;
    std::optional<QString> m_driftText;
};

} // namespace Tessaline
