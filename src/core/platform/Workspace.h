// SPDX-License-Identifier: MIT
#pragma once

#include "platform/RunningApplication.h"

#include <QList>
#include <QObject>

#include <optional>

namespace Tessaline {

/// The desktop's view of running applications: which one is in front, which are running, and
/// when another one becomes active. Implemented over X11 and desktop entries on Linux, and by a
/// fake in tests.
class Workspace : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~Workspace() override;

    /// The application whose window is active now, if any.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;
    /// Every application with a window, in the desktop's order.
    virtual QList<RunningApplication> runningApplications() const = 0;
    /// The running applications with this bundle id, in the desktop's order.
    virtual QList<RunningApplication> runningApplications(const QString& bundleIdentifier) const;
    /// Brings the application's most recently active window to the front. False when nothing
    /// could be activated.
    virtual bool activate(const RunningApplication& application) = 0;
    /// Tessaline's own bundle id, "org.tessaline.Tessaline".
    virtual std::optional<QString> ownBundleIdentifier() const;

signals:
    /// Another application became active (absent when it could not be identified at all).
    void applicationActivated(const std::optional<Tessaline::RunningApplication>& application);
};

} // namespace Tessaline
