// SPDX-License-Identifier: MIT
#include "FakeGlobalShortcutsPortal.h"
#include "platform/portal/PortalHotKeyService.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>
#include <hotkey/ModifierFlags.h>

#include <QTest>

using HotKey::HotKeyEvent;
using HotKey::HotKeyId;
using Tessaline::GlobalShortcutsPortal;
using Tessaline::PortalHotKeyService;
using Tessaline::Testing::FakeGlobalShortcutsPortal;

namespace {

constexpr quint32 kCtrlAltSuper = HotKey::CarbonModifier::control | HotKey::CarbonModifier::option |
                                  HotKey::CarbonModifier::command;
constexpr quint32 kCtrlShift = HotKey::CarbonModifier::control | HotKey::CarbonModifier::shift;

// Lets the service's deferred work run.
void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace

class TestPortalHotKeyService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void registrationIsGrantedAtOnceAndBoundInTheBackground();
    void boundShortcutsPressAndRelease();
    void eventsOfOtherSessionsAndShortcutsAreIgnored();
    void declinedBindingIsARefusal();
    void failedSessionIsARefusal();
    void grantAfterARefusalLetsKeysBeTakenAgain();
    void rebindingClosesTheSessionAndBindsTheNewSet();
    void unregisteringTheLastKeyClosesTheSession();
    void changesWhileTheDesktopAnswersAreBoundAfterwards();
    void keyRemovedWhileBindingIsNotReported();
    void sameCombinationTwiceGetsTwoShortcuts();
    void keyWithoutASymbolIsAskedForWithoutATrigger();
    void destructionClosesTheSession();
    void throughTheHotKeyModule();

private:
    FakeGlobalShortcutsPortal* m_portal = nullptr;
    std::unique_ptr<PortalHotKeyService> m_service;
    QList<HotKeyEvent> m_events;
    QList<std::pair<HotKeyId, int>> m_answers;
};

void TestPortalHotKeyService::init()
{
    auto portal = std::make_unique<FakeGlobalShortcutsPortal>();
    m_portal = portal.get();
    m_service =
        std::make_unique<PortalHotKeyService>(std::move(portal), QStringLiteral("Toggle the HUD"));
    m_events.clear();
    m_answers.clear();
    m_service->installEventHandler([this](const HotKeyEvent* event) {
        m_events.append(*event);
        return HotKey::Status::noError;
    });
    m_service->installRegistrationHandler([this](HotKeyId id, int status) {
        m_answers.append({id, status});
    });
}

void TestPortalHotKeyService::cleanup()
{
    HotKey::HotKeysController::setService(nullptr);
    m_service.reset();
    m_portal = nullptr;
}

void TestPortalHotKeyService::registrationIsGrantedAtOnceAndBoundInTheBackground()
{
    const auto registration = m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    QVERIFY(registration.has_value());
    // Nothing is asked until the event loop turns.
    QCOMPARE(m_portal->sessionRequests.size(), 0);
    settle();
    QCOMPARE(m_portal->sessionRequests.size(), 1);

    const QString session = m_portal->answerSession();
    QCOMPARE(m_portal->bindings.size(), 1);
    const auto& binding = m_portal->bindings.constFirst();
    QCOMPARE(binding.session, session);
    QCOMPARE(binding.shortcuts.size(), 1);
    QCOMPARE(binding.shortcuts.constFirst().preferredTrigger, QStringLiteral("CTRL+ALT+LOGO+k"));
    QCOMPARE(binding.shortcuts.constFirst().description, QStringLiteral("Toggle the HUD"));
    QVERIFY(m_answers.isEmpty());

    m_portal->answerBinding();
    QCOMPARE(m_answers.size(), 1);
    QCOMPARE(m_answers.constFirst().first, (HotKeyId{7, 1}));
    QCOMPARE(m_answers.constFirst().second, HotKey::Status::noError);
    QVERIFY(m_service->grabsKeys());
    QVERIFY(m_portal->closed.isEmpty());
}

void TestPortalHotKeyService::boundShortcutsPressAndRelease()
{
    m_service->registerHotKey(1, kCtrlShift, HotKeyId{7, 3});
    settle();
    const QString session = m_portal->answerSession();
    const QString id = m_portal->bindings.constFirst().shortcuts.constFirst().id;
    m_portal->answerBinding();

    m_portal->activate(session, id, true);
    m_portal->activate(session, id, false);
    QCOMPARE(m_events.size(), 2);
    QCOMPARE(m_events[0].kind, HotKeyEvent::pressed);
    QCOMPARE(m_events[0].hotKeyId, (HotKeyId{7, 3}));
    QCOMPARE(m_events[1].kind, HotKeyEvent::released);
    QCOMPARE(m_events[1].hotKeyId, (HotKeyId{7, 3}));
}

void TestPortalHotKeyService::eventsOfOtherSessionsAndShortcutsAreIgnored()
{
    m_service->registerHotKey(1, kCtrlShift, HotKeyId{7, 3});
    settle();
    const QString session = m_portal->answerSession();
    const QString id = m_portal->bindings.constFirst().shortcuts.constFirst().id;
    // Before the binding is granted nothing is delivered.
    m_portal->activate(session, id);
    m_portal->answerBinding();
    m_portal->activate(QStringLiteral("/session/other"), id);
    m_portal->activate(session, QStringLiteral("unknown"));
    QVERIFY(m_events.isEmpty());
}

void TestPortalHotKeyService::declinedBindingIsARefusal()
{
    m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    const QString session = m_portal->answerSession();
    const QString id = m_portal->bindings.constFirst().shortcuts.constFirst().id;
    m_portal->answerBinding(GlobalShortcutsPortal::responseCancelled);

    QCOMPARE(m_answers.size(), 1);
    QCOMPARE(m_answers.constFirst().first, (HotKeyId{7, 1}));
    QCOMPARE(m_answers.constFirst().second, PortalHotKeyService::refusedStatus);
    QVERIFY(!m_service->grabsKeys());
    m_portal->activate(session, id);
    QVERIFY(m_events.isEmpty());
}

void TestPortalHotKeyService::failedSessionIsARefusal()
{
    m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    m_portal->answerSession(GlobalShortcutsPortal::responseOther);
    QVERIFY(m_portal->bindings.isEmpty());
    QCOMPARE(m_answers.size(), 1);
    QCOMPARE(m_answers.constFirst().second, PortalHotKeyService::refusedStatus);
    QVERIFY(!m_service->grabsKeys());
}

void TestPortalHotKeyService::grantAfterARefusalLetsKeysBeTakenAgain()
{
    const auto first = m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    m_portal->answerSession();
    m_portal->answerBinding(GlobalShortcutsPortal::responseCancelled);
    QVERIFY(!m_service->grabsKeys());

    // The refused key is no longer the service's; unregistering it asks nothing.
    m_service->unregisterHotKey(*first);
    m_service->registerHotKey(38, kCtrlShift, HotKeyId{7, 2});
    settle();
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    // The previous, empty-handed session is closed before the new one is asked for.
    QCOMPARE(m_portal->closed, QStringList{QStringLiteral("/session/1")});
    m_portal->answerSession();
    QCOMPARE(m_portal->bindings.constFirst().shortcuts.size(), 1);
    QCOMPARE(m_portal->bindings.constFirst().shortcuts.constFirst().preferredTrigger,
             QStringLiteral("CTRL+SHIFT+j"));
    QVERIFY(!m_service->grabsKeys());
    m_portal->answerBinding();
    QVERIFY(m_service->grabsKeys());
    QCOMPARE(m_answers.constLast().first, (HotKeyId{7, 2}));
    QCOMPARE(m_answers.constLast().second, HotKey::Status::noError);
}

void TestPortalHotKeyService::rebindingClosesTheSessionAndBindsTheNewSet()
{
    const auto first = m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    const QString firstSession = m_portal->answerSession();
    const QString firstId = m_portal->bindings.constFirst().shortcuts.constFirst().id;
    m_portal->answerBinding();

    // A rebind within one turn: one new session, with the new combination only.
    m_service->unregisterHotKey(*first);
    m_service->registerHotKey(1, kCtrlShift, HotKeyId{7, 2});
    settle();
    QCOMPARE(m_portal->closed, QStringList{firstSession});
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    const QString secondSession = m_portal->answerSession();
    QCOMPARE(m_portal->bindings.size(), 1);
    QCOMPARE(m_portal->bindings.constFirst().shortcuts.size(), 1);
    QCOMPARE(m_portal->bindings.constFirst().shortcuts.constFirst().preferredTrigger,
             QStringLiteral("CTRL+SHIFT+s"));
    const QString secondId = m_portal->bindings.constFirst().shortcuts.constFirst().id;
    QVERIFY(secondId != firstId);
    m_portal->answerBinding();

    m_portal->activate(firstSession, firstId);
    QVERIFY(m_events.isEmpty());
    m_portal->activate(secondSession, secondId);
    QCOMPARE(m_events.size(), 1);
    QCOMPARE(m_events.constFirst().hotKeyId, (HotKeyId{7, 2}));
}

void TestPortalHotKeyService::unregisteringTheLastKeyClosesTheSession()
{
    const auto reference = m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    const QString session = m_portal->answerSession();
    const QString id = m_portal->bindings.constFirst().shortcuts.constFirst().id;
    m_portal->answerBinding();

    m_service->unregisterHotKey(*reference);
    settle();
    QCOMPARE(m_portal->closed, QStringList{session});
    QVERIFY(m_portal->sessionRequests.isEmpty());
    m_portal->activate(session, id);
    QVERIFY(m_events.isEmpty());
    // An unknown reference changes nothing.
    m_service->unregisterHotKey(999);
    settle();
    QCOMPARE(m_portal->closed.size(), 1);
}

void TestPortalHotKeyService::changesWhileTheDesktopAnswersAreBoundAfterwards()
{
    const auto first = m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    // The user changes the key while the desktop is still making the session.
    m_service->unregisterHotKey(*first);
    m_service->registerHotKey(1, kCtrlShift, HotKeyId{7, 2});
    settle();
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    const QString stale = m_portal->answerSession();
    // The stale session is closed unbound and a new one asked for.
    QCOMPARE(m_portal->closed, QStringList{stale});
    QVERIFY(m_portal->bindings.isEmpty());
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    m_portal->answerSession();
    QCOMPARE(m_portal->bindings.constFirst().shortcuts.constFirst().preferredTrigger,
             QStringLiteral("CTRL+SHIFT+s"));
    m_portal->answerBinding();
    QCOMPARE(m_answers.size(), 1);
    QCOMPARE(m_answers.constFirst().first, (HotKeyId{7, 2}));
}

void TestPortalHotKeyService::keyRemovedWhileBindingIsNotReported()
{
    const auto first = m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    const QString session = m_portal->answerSession();
    m_service->unregisterHotKey(*first);
    settle();
    // The binding in flight is answered first; then its session is closed.
    QVERIFY(m_portal->sessionRequests.isEmpty());
    m_portal->answerBinding(GlobalShortcutsPortal::responseCancelled);
    QVERIFY(m_answers.isEmpty());
    settle();
    QCOMPARE(m_portal->closed, QStringList{session});
    QVERIFY(m_portal->sessionRequests.isEmpty());
}

void TestPortalHotKeyService::sameCombinationTwiceGetsTwoShortcuts()
{
    m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 2});
    settle();
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    const QString session = m_portal->answerSession();
    const auto shortcuts = m_portal->bindings.constFirst().shortcuts;
    QCOMPARE(shortcuts.size(), 2);
    QVERIFY(shortcuts[0].id != shortcuts[1].id);
    QCOMPARE(shortcuts[0].preferredTrigger, shortcuts[1].preferredTrigger);
    m_portal->answerBinding();
    m_portal->activate(session, shortcuts[1].id);
    QCOMPARE(m_events.size(), 1);
    QCOMPARE(m_events.constFirst().hotKeyId, (HotKeyId{7, 2}));
}

void TestPortalHotKeyService::keyWithoutASymbolIsAskedForWithoutATrigger()
{
    m_service->registerHotKey(63, kCtrlShift, HotKeyId{7, 1});
    settle();
    m_portal->answerSession();
    QCOMPARE(m_portal->bindings.constFirst().shortcuts.constFirst().preferredTrigger, QString());
}

void TestPortalHotKeyService::destructionClosesTheSession()
{
    m_service->registerHotKey(40, kCtrlAltSuper, HotKeyId{7, 1});
    settle();
    const QString session = m_portal->answerSession();
    m_portal->answerBinding();
    // The portal goes with the service; it reports its last close to a list the test keeps.
    QStringList closedAtExit;
    m_portal->closedLog = &closedAtExit;
    m_service.reset();
    m_portal = nullptr;
    QCOMPARE(closedAtExit, QStringList{session});
}

// Through the hot-key module as the application uses it: a declined binding leaves the hot key
// registered without a reference, as a key refused at once is, and tells its owner.
void TestPortalHotKeyService::throughTheHotKeyModule()
{
    HotKey::HotKeysController::setService(m_service.get());
    int pressed = 0;
    QList<int> told;
    auto hotKey = HotKey::HotKey::create(40, kCtrlAltSuper, [&pressed] { ++pressed; });
    hotKey->setRegistrationHandler([&told](int status) { told.append(status); });
    const HotKey::HotKeyBox* box = HotKey::HotKeysController::box(*hotKey);
    QVERIFY(box != nullptr);
    QVERIFY(box->carbonEventHotKey.has_value());
    QVERIFY(HotKey::HotKeysController::isEventHandlerInstalled());

    settle();
    const QString session = m_portal->answerSession();
    const QString id = m_portal->bindings.constFirst().shortcuts.constFirst().id;
    m_portal->answerBinding();
    QCOMPARE(told, QList<int>{HotKey::Status::noError});
    m_portal->activate(session, id);
    QCOMPARE(pressed, 1);

    // Rebinding as the hotkey manager does: drop the key, make a new one.
    hotKey = HotKey::HotKey::create(1, kCtrlShift, [&pressed] { ++pressed; });
    hotKey->setRegistrationHandler([&told](int status) { told.append(status); });
    settle();
    m_portal->answerSession();
    m_portal->answerBinding(GlobalShortcutsPortal::responseCancelled);
    QCOMPARE(told.constLast(), PortalHotKeyService::refusedStatus);
    box = HotKey::HotKeysController::box(*hotKey);
    QVERIFY(box != nullptr);
    QVERIFY(!box->carbonEventHotKey.has_value());
    QVERIFY(!m_service->grabsKeys());
    hotKey.reset();
    HotKey::HotKeysController::setService(nullptr);
}

QTEST_GUILESS_MAIN(TestPortalHotKeyService)
#include "tst_PortalHotKeyService.moc"
