// SPDX-License-Identifier: MIT
#include "platform/portal/PortalHotKeyService.h"

#include "LogCategories.h"

#include <hotkey/KeyCombo.h>
#include <hotkey/ShortcutTrigger.h>

#include <QTimer>

#include <algorithm>

namespace Tessaline {

PortalHotKeyService::PortalHotKeyService(std::unique_ptr<GlobalShortcutsPortal> portal,
                                         QString description)
    : m_portal(std::move(portal)), m_description(std::move(description))
{
    m_portal->setShortcutCallback([this](const QString& session, const QString& shortcutId,
                                         bool active) { deliver(session, shortcutId, active); });
}

PortalHotKeyService::~PortalHotKeyService()
{
    if (!m_session.isEmpty())
        m_portal->closeSession(m_session);
}

// The desktop may answer a binding only after the user went through a dialog, so the answer
// cannot be waited for here without freezing the application. The key is granted at once and
// bound in the background; a refusal comes later through the registration handler, which leaves
// the hot key in the state of one refused at once (registered, never delivered).
HotKey::HotKeyService::Registration PortalHotKeyService::registerHotKey(quint32 carbonKeyCode,
                                                                        quint32 carbonModifiers,
                                                                        HotKey::HotKeyId id)
{
    Entry entry;
    entry.reference = m_nextReference++;
    entry.id = id;
    entry.shortcut.id = shortcutIdFor(carbonKeyCode, carbonModifiers);
    entry.shortcut.description = m_description;
    entry.shortcut.preferredTrigger =
        HotKey::ShortcutTrigger::fromCombo(HotKey::KeyCombo(carbonKeyCode, carbonModifiers))
            .value_or(QString());
    m_entries.append(entry);
    scheduleSync();
    return entry.reference;
}

void PortalHotKeyService::unregisterHotKey(Reference reference)
{
    const auto removed = m_entries.removeIf(
        [reference](const Entry& entry) { return entry.reference == reference; });
    if (removed > 0)
        scheduleSync();
}

void PortalHotKeyService::installEventHandler(EventHandler handler)
{
    m_eventHandler = std::move(handler);
}

void PortalHotKeyService::installRegistrationHandler(RegistrationHandler handler)
{
    m_registrationHandler = std::move(handler);
}

// Changes made in one turn of the event loop (a rebind unregisters, then registers) become one
// binding.
void PortalHotKeyService::scheduleSync()
{
    m_dirty = true;
    if (m_busy || m_syncScheduled)
        return;
    m_syncScheduled = true;
    QTimer::singleShot(0, &m_context, [this] {
        m_syncScheduled = false;
        if (!m_busy && m_dirty)
            sync();
    });
}

// A session binds its shortcuts once, so every change closes the session and binds the whole
// set in a new one; no shortcuts left means no session.
void PortalHotKeyService::sync()
{
    m_dirty = false;
    if (!m_session.isEmpty()) {
        m_portal->closeSession(m_session);
        m_session.clear();
        m_bound.clear();
    }
    if (m_entries.isEmpty())
        return;
    m_busy = true;
    m_requested.clear();
    for (const Entry& entry : std::as_const(m_entries))
        m_requested.append(entry.reference);
    // The portal is owned here, so its callbacks never outlive this service.
    m_portal->createSession(
        [this](uint response, const QString& session) { sessionCreated(response, session); });
}

void PortalHotKeyService::sessionCreated(uint response, const QString& session)
{
    if (response != GlobalShortcutsPortal::responseSuccess || session.isEmpty()) {
        qCWarning(lcHotKey) << "the desktop created no global-shortcuts session, response"
                            << response;
        refuseRequested(refusedStatus);
        return;
    }
    if (m_dirty) {
        // The keys changed while the session was made: bind the new set in a fresh one.
        m_portal->closeSession(session);
        m_busy = false;
        sync();
        return;
    }
    QList<GlobalShortcutsPortal::Shortcut> shortcuts;
    for (const Entry& entry : std::as_const(m_entries)) {
        if (m_requested.contains(entry.reference))
            shortcuts.append(entry.shortcut);
    }
    m_portal->bindShortcuts(session, shortcuts,
                            [this, session](uint answer, const QStringList& boundIds) {
                                shortcutsBound(session, answer, boundIds);
                            });
}

void PortalHotKeyService::shortcutsBound(const QString& session, uint response,
                                         const QStringList& boundIds)
{
    m_busy = false;
    const bool granted = response == GlobalShortcutsPortal::responseSuccess;
    qCDebug(lcHotKey) << "the desktop bound" << boundIds << "in" << session;
    if (!granted)
        qCWarning(lcHotKey) << "the desktop did not bind the hot keys, response" << response;
    // The session is kept even when empty-handed: closing it is what ends its shortcuts.
    m_session = session;
    QList<std::pair<HotKey::HotKeyId, int>> answers;
    bool refused = false;
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        if (!m_requested.contains(it->reference)) {
            ++it;
            continue;
        }
        if (granted && boundIds.contains(it->shortcut.id)) {
            m_bound.insert(it->shortcut.id, it->id);
            answers.append({it->id, HotKey::Status::noError});
            ++it;
        } else {
            // A refused key is forgotten here; its owner keeps it without a reference.
            answers.append({it->id, refusedStatus});
            refused = true;
            it = m_entries.erase(it);
        }
    }
    m_requested.clear();
    m_refused = refused;
    for (const auto& [id, status] : answers) {
        if (m_registrationHandler)
            m_registrationHandler(id, status);
    }
    if (m_dirty)
        scheduleSync();
}

void PortalHotKeyService::refuseRequested(int status)
{
    m_busy = false;
    QList<HotKey::HotKeyId> refusedIds;
    m_entries.removeIf([this, &refusedIds](const Entry& entry) {
        if (!m_requested.contains(entry.reference))
            return false;
        refusedIds.append(entry.id);
        return true;
    });
    m_requested.clear();
    m_refused = !refusedIds.isEmpty();
    for (const HotKey::HotKeyId& id : std::as_const(refusedIds)) {
        if (m_registrationHandler)
            m_registrationHandler(id, status);
    }
    if (m_dirty)
        scheduleSync();
}

void PortalHotKeyService::deliver(const QString& session, const QString& shortcutId, bool active)
{
    qCDebug(lcHotKey) << "shortcut" << shortcutId << (active ? "pressed" : "released") << "in"
                      << session;
    if (session != m_session || !m_eventHandler)
        return;
    const auto it = m_bound.constFind(shortcutId);
    if (it == m_bound.constEnd())
        return;
    const HotKey::HotKeyEvent event{active ? HotKey::HotKeyEvent::pressed
                                           : HotKey::HotKeyEvent::released,
                                    *it, HotKey::Status::noError};
    m_eventHandler(&event);
}

// Ids name the combination, so that a desktop that remembers shortcuts by id keeps the user's
// choice for the same combination across starts; a second key with the same combination gets a
// numbered id of its own.
QString PortalHotKeyService::shortcutIdFor(quint32 carbonKeyCode, quint32 carbonModifiers) const
{
    const QString base = QStringLiteral("hotkey-%1-%2").arg(carbonKeyCode).arg(carbonModifiers);
    QString candidate = base;
    for (int number = 2;; ++number) {
        const bool taken = std::any_of(m_entries.cbegin(), m_entries.cend(),
                                       [&](const Entry& e) { return e.shortcut.id == candidate; });
        if (!taken)
            return candidate;
        candidate = base + QLatin1Char('-') + QString::number(number);
    }
}

} // namespace Tessaline
