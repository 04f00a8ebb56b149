// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "context/TrackedApp.h"
#include "vault/ShortcutItem.h"

#include <QObject>

#include <functional>
#include <optional>

namespace Tessaline {

class KeyInjector;
class MenuCommandRunner;
class Scheduler;
class Workspace;

/// Runs a shortcut in the application it belongs to: brings that application to the front,
/// then activates the menu item a scan found it in (looked up again by its menu path and name
/// at that moment), or types its chord (where the application could not be brought to the
/// front, only if it is in front by the time the keys are typed). A run that cannot be done leaves
/// the application untouched and keeps one line saying why, for the HUD's status area.
class ShortcutRunner : public QObject
{
    Q_OBJECT
public:
    /// Called once with the outcome of a run.
    using Completion = std::function<void(const Expected<void>& outcome)>;

    /// Delay from bringing the application to the front to typing the chord, as for the text
    /// helpers' paste.
    static constexpr int kKeystrokeDelayMs = 120;

    ShortcutRunner(Workspace& workspace, MenuCommandRunner& menus, KeyInjector& keyInjector,
                   Scheduler& scheduler, QObject* parent = nullptr);

    /// Runs `item` in `app`; `done` hears how it went (after the menu action or the keys).
    void run(const ShortcutItem& item, const TrackedApp& app, Completion done = {});

    /// True when `item` runs through its menu item rather than its chord: a scanned row with
    /// a menu path.
    static bool runsThroughMenu(const ShortcutItem& item);

    /// The reason the last run in `app` failed, until it is cleared or a run there succeeds.
    std::optional<QString> statusText(const TrackedApp& app) const;
    void clearStatus();

signals:
    void statusChanged();

private:
    void runMenuItem(const ShortcutItem& item, const TrackedApp& app, qint64 processId,
                     const Completion& done);
    void typeChord(const ShortcutItem& item, const TrackedApp& app, const Completion& done);
    bool isInFront(qint64 processId) const;
    void finish(const TrackedApp& app, const Expected<void>& outcome, const Completion& done);

    Workspace& m_workspace;
    MenuCommandRunner& m_menus;
    KeyInjector& m_keyInjector;
    Scheduler& m_scheduler;
    std::optional<std::pair<TrackedApp, QString>> m_failure;
};

} // namespace Tessaline
