// SPDX-License-Identifier: MIT
#include "platform/portal/PortalKeyInjector.h"

#include "LogCategories.h"
#include "platform/xkb/StrokeKeysyms.h"

namespace Tessaline {

namespace {

// One chord as the keysyms it sends.
struct KeysymChord
{
    QList<quint32> modifiers;
    quint32 key = StrokeKeysyms::noSymbol;
};

} // namespace

PortalKeyInjector::PortalKeyInjector(std::unique_ptr<RemoteDesktopPortal> portal, TokenStore tokens)
    : m_portal(std::move(portal)), m_tokens(std::move(tokens))
{
    m_portal->setClosedCallback([this](const QString& session) {
        if (session != m_session)
            return;
        m_session.clear();
        refuse("the desktop ended the session", RemoteDesktopPortal::responseOther);
    });
}

void PortalKeyInjector::start()
{
    if (m_state != State::Idle)
        return;
    m_state = State::Starting;
    qCInfo(lcPortalKeys) << "asking the desktop for a keyboard session";
    // The portal is owned here, so its callbacks never outlive this injector.
    m_portal->createSession(
        [this](uint response, const QString& session) { sessionCreated(response, session); });
}

PortalKeyInjector::~PortalKeyInjector()
{
    if (!m_session.isEmpty())
        m_portal->closeSession(m_session);
}

void PortalKeyInjector::sessionCreated(uint response, const QString& session)
{
    if (response != RemoteDesktopPortal::responseSuccess || session.isEmpty()) {
        refuse("the desktop created no session", response);
        return;
    }
    m_session = session;
    RemoteDesktopPortal::DeviceSelection selection;
    selection.types = RemoteDesktopPortal::keyboardDevice;
    if (m_portal->version() >= RemoteDesktopPortal::persistingVersion) {
        selection.persistMode = RemoteDesktopPortal::persistUntilRevoked;
        selection.restoreToken = m_tokens.load ? m_tokens.load() : QString();
    }
    m_portal->selectDevices(session, selection, [this](uint answer) { devicesSelected(answer); });
}

void PortalKeyInjector::devicesSelected(uint response)
{
    if (response != RemoteDesktopPortal::responseSuccess) {
        refuse("the desktop offered no keyboard", response);
        return;
    }
    m_portal->start(m_session, [this](uint answer, uint devices, const QString& token) {
        started(answer, devices, token);
    });
}

void PortalKeyInjector::started(uint response, uint devices, const QString& restoreToken)
{
    if (response != RemoteDesktopPortal::responseSuccess) {
        // A token is good for one session: the one just used is spent.
        if (m_tokens.save && m_portal->version() >= RemoteDesktopPortal::persistingVersion)
            m_tokens.save(QString());
        refuse(response == RemoteDesktopPortal::responseCancelled ? "the user declined"
                                                                  : "the desktop did not start it",
               response);
        return;
    }
    if (!(devices & RemoteDesktopPortal::keyboardDevice)) {
        refuse("the desktop granted no keyboard", response);
        return;
    }
    if (!restoreToken.isEmpty() && m_tokens.save)
        m_tokens.save(restoreToken);
    m_state = State::Running;
    qCInfo(lcPortalKeys) << "typing keys through the portal's session" << m_session;
}

void PortalKeyInjector::refuse(const char* why, uint response)
{
    qCWarning(lcPortalKeys) << "no typed keys:" << why << "(response" << response << ")";
    m_state = State::Refused;
    if (!m_session.isEmpty()) {
        m_portal->closeSession(m_session);
        m_session.clear();
    }
}

KeyPostResult PortalKeyInjector::postKeys(const QList<KeyStroke>& strokes)
{
    if (m_state == State::Idle)
        start();
    if (m_state != State::Running)
        return {KeyPostResult::NotPosted, {}};
    // Every key is found before the first one is sent, so that a missing key types nothing.
    QList<KeysymChord> chords;
    for (const KeyStroke& stroke : strokes) {
        const quint32 key = StrokeKeysyms::keysymOf(stroke.key);
        if (key == StrokeKeysyms::noSymbol)
            return {KeyPostResult::KeyNotOnLayout, stroke.key};
        chords.append({StrokeKeysyms::modifierKeysyms(stroke.modifiers), key});
    }
    for (const KeysymChord& chord : std::as_const(chords)) {
        for (const quint32 modifier : chord.modifiers)
            m_portal->notifyKeysym(m_session, modifier, true);
        m_portal->notifyKeysym(m_session, chord.key, true);
        m_portal->notifyKeysym(m_session, chord.key, false);
        for (auto it = chord.modifiers.crbegin(); it != chord.modifiers.crend(); ++it)
            m_portal->notifyKeysym(m_session, *it, false);
    }
    return {};
}

bool PortalKeyInjector::postPasteChord()
{
    return postKeys({KeyStroke{KeyStroke::Control, QStringLiteral("v")}}).status ==
           KeyPostResult::Posted;
}

} // namespace Tessaline
