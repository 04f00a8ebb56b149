// SPDX-License-Identifier: MIT
#pragma once

#include "context/TrackedApp.h"
#include "platform/RunningApplication.h"

#include <QObject>

#include <memory>
#include <optional>

namespace Tessaline {

class AppActivationObserver;
class DefaultsStore;
class Workspace;

/// Keeps the last regular application other than Tessaline that became active, so that the
/// cheat sheet shows the app the user came from. The value survives restarts through the user
/// defaults.
class FrontmostAppTracker : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Tessaline::TrackedApp current READ current NOTIFY currentChanged)

public:
    /// Starts with the app saved in `defaults` (the "Desktop" placeholder when none); not yet
    /// subscribed to activations. Both references must outlive the tracker.
    FrontmostAppTracker(Workspace& workspace, DefaultsStore& defaults, QObject* parent = nullptr);
    ~FrontmostAppTracker() override;

    TrackedApp current() const { return m_current; }

    /// Takes the frontmost application once, then follows activations. Calling it again
    /// replaces the subscription.
    void start();

    /// Offers an application as the one now in front. Ignored when it is missing, not a
    /// regular application, or Tessaline itself; otherwise it becomes `current` and is saved.
    void accept(const std::optional<RunningApplication>& app);

signals:
    /// Emitted on every accepted activation, also when the value stayed the same.
    void currentChanged();

private:
    static TrackedApp savedApp(const DefaultsStore& defaults);
    void save(const TrackedApp& app);

    Workspace& m_workspace;
    DefaultsStore& m_defaults;
    TrackedApp m_current;
    std::unique_ptr<AppActivationObserver> m_watcher;
};

} // namespace Tessaline
