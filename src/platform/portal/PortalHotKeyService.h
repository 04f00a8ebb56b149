// SPDX-License-Identifier: MIT
#pragma once

#include "platform/portal/GlobalShortcutsPortal.h"

#include <hotkey/HotKeyService.h>

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace Tessaline {

/// Hot keys through the desktop's global-shortcuts service (Wayland desktops, where no
/// application may grab a key itself). Each registered hot key becomes one shortcut of a
/// session, asked for with the user's combination as its preferred trigger; the desktop's
/// presses and releases of it become pressed and released events.
class PortalHotKeyService final : public HotKey::HotKeyService
{
public:
    /// Status of a registration the user declined, or the desktop failed to bind.
    static constexpr int refusedStatus = -50;

    /// `description` tells the user, in the desktop's dialog, what the shortcuts do.
    PortalHotKeyService(std::unique_ptr<GlobalShortcutsPortal> portal, QString description);
    ~PortalHotKeyService() override;

    Registration registerHotKey(quint32 carbonKeyCode, quint32 carbonModifiers,
                                HotKey::HotKeyId id) override;
    void unregisterHotKey(Reference reference) override;
    void installEventHandler(EventHandler handler) override;
    void installRegistrationHandler(RegistrationHandler handler) override;
    /// False once the desktop refused the last binding, until it grants one again.
    bool grabsKeys() const override { return !m_refused; }

private:
    struct Entry
    {
        Reference reference = 0;
        HotKey::HotKeyId id;
        GlobalShortcutsPortal::Shortcut shortcut;
    };

    void scheduleSync();
    void sync();
    void sessionCreated(uint response, const QString& session);
    void shortcutsBound(const QString& session, uint response, const QStringList& boundIds);
    void refuseRequested(int status);
    void deliver(const QString& session, const QString& shortcutId, bool active);
    QString shortcutIdFor(quint32 carbonKeyCode, quint32 carbonModifiers) const;

    std::unique_ptr<GlobalShortcutsPortal> m_portal;
    QString m_description;
    // Owns the deferred work, so that none of it runs once the service is gone.
    QObject m_context;
    QList<Entry> m_entries;
    Reference m_nextReference = 1;
    // The session whose binding the desktop granted, and the ids it delivers events for.
    QString m_session;
    QHash<QString, HotKey::HotKeyId> m_bound;
    // The references a binding in flight asked for.
    QList<Reference> m_requested;
    bool m_busy = false;
    bool m_dirty = false;
    bool m_syncScheduled = false;
    bool m_refused = false;
    EventHandler m_eventHandler;
    RegistrationHandler m_registrationHandler;
};

} // namespace Tessaline
