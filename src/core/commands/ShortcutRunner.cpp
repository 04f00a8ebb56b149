// SPDX-License-Identifier: MIT
#include "commands/ShortcutRunner.h"

#include "LogCategories.h"
#include "commands/ChordKeystrokes.h"
#include "commands/MenuItemLocator.h"
#include "platform/KeyInjector.h"
#include "platform/MenuCommandRunner.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "scan/MenuReader.h"

namespace Tessaline {

namespace {

Unexpected<QString> failure(const ShortcutItem& item, const QString& reason)
{
    return Unexpected(QStringLiteral("Could not run “%1”: %2.").arg(item.name, reason));
}

} // namespace

ShortcutRunner::ShortcutRunner(Workspace& workspace, MenuCommandRunner& menus,
                               KeyInjector& keyInjector, Scheduler& scheduler, QObject* parent)
    : QObject(parent), m_workspace(workspace), m_menus(menus), m_keyInjector(keyInjector),
      m_scheduler(scheduler)
{}

bool ShortcutRunner::runsThroughMenu(const ShortcutItem& item)
{
    return item.isScanned() && item.menu && !item.menu->isEmpty();
}

void ShortcutRunner::run(const ShortcutItem& item, const TrackedApp& app, Completion done)
{
    const QList<RunningApplication> running =
        app.bundleID ? m_workspace.runningApplications(*app.bundleID) : QList<RunningApplication>();
    if (running.isEmpty()) {
        const QString reason = app.bundleID ? QStringLiteral("%1 is not running").arg(app.name)
                                            : QStringLiteral("there is no app to run it in");
        finish(app, failure(item, reason), done);
        return;
    }
    const RunningApplication target = running.first();
    const bool viaMenu = runsThroughMenu(item);
    if (!viaMenu && !ChordKeystrokes::fromChord(item.chord)) {
        finish(app, failure(item, QStringLiteral("its shortcut has no key to type")), done);
        return;
    }
    const bool inFront = m_workspace.activate(target);
    if (viaMenu) {
        // The menu action does not need the focus; it runs once the HUD has gone.
        m_scheduler.schedule(0, this, [this, item, app, pid = target.processId, done] {
            runMenuItem(item, app, pid, done);
        });
        return;
    }
    // A session that lets no application bring another to the front (Wayland) still gives the
    // focus back to the application the HUD was over once the HUD has gone: the chord is typed
    // when that application is the one in front by then, and never into another one.
    m_scheduler.schedule(kKeystrokeDelayMs, this,
                         [this, item, app, inFront, processId = target.processId, done] {
                             if (!inFront && !isInFront(processId)) {
                                 finish(app,
                                        failure(item, QStringLiteral("%1 could not be brought to "
                                                                     "the front")
                                                          .arg(app.name)),
                                        done);
                                 return;
                             }
                             typeChord(item, app, done);
                         });
}

bool ShortcutRunner::isInFront(qint64 processId) const
{
    const std::optional<RunningApplication> front = m_workspace.frontmostApplication();
    return front && front->processId == processId;
}

void ShortcutRunner::runMenuItem(const ShortcutItem& item, const TrackedApp& app, qint64 processId,
                                 const Completion& done)
{
    const Expected<MenuEntryList> menuBar = m_menus.menuBar(processId);
    if (!menuBar) {
        finish(app, failure(item, menuBar.error()), done);
        return;
    }
    const Expected<MenuEntryPtr> entry =
        MenuItemLocator::find(*menuBar, MenuReader::menuPath(*item.menu), item.name);
    if (!entry) {
        finish(app, failure(item, entry.error()), done);
        return;
    }
    if (!*entry) {
        finish(
            app,
            failure(item, QStringLiteral("the menu item is no longer in %1's menus").arg(app.name)),
            done);
        return;
    }
    if (!(*entry)->isEnabled()) {
        finish(app, failure(item, QStringLiteral("the menu item is disabled")), done);
        return;
    }
    const Expected<void> activated = (*entry)->activate();
    finish(app, activated ? Expected<void>() : failure(item, activated.error()), done);
}

void ShortcutRunner::typeChord(const ShortcutItem& item, const TrackedApp& app,
                               const Completion& done)
{
    const QList<KeyStroke> strokes =
        ChordKeystrokes::fromChord(item.chord).value_or(QList<KeyStroke>());
    const KeyPostResult posted = m_keyInjector.postKeys(strokes);
    switch (posted.status) {
    case KeyPostResult::Posted:
        finish(app, {}, done);
        return;
    case KeyPostResult::KeyNotOnLayout:
        // The chord as the user knows it; the injector names the key it could not find.
        qCDebug(lcHud) << "no key for" << posted.key << "on the current layout";
        finish(app,
               failure(item, QStringLiteral("%1 cannot be typed on the current keyboard layout")
                                 .arg(item.chord)),
               done);
        return;
    case KeyPostResult::NotPosted:
        finish(app, failure(item, QStringLiteral("this session does not accept typed keys")), done);
        return;
    }
}

void ShortcutRunner::finish(const TrackedApp& app, const Expected<void>& outcome,
                            const Completion& done)
{
    if (outcome) {
        if (m_failure && m_failure->first == app) {
            m_failure.reset();
            emit statusChanged();
        }
    } else {
        m_failure = std::make_pair(app, outcome.error());
        emit statusChanged();
    }
    if (done)
        done(outcome);
}

std::optional<QString> ShortcutRunner::statusText(const TrackedApp& app) const
{
    if (m_failure && m_failure->first == app)
        return m_failure->second;
    return std::nullopt;
}

void ShortcutRunner::clearStatus()
{
    if (!m_failure)
        return;
    m_failure.reset();
    emit statusChanged();
}

} // namespace Tessaline
