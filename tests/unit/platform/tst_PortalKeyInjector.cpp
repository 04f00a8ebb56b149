// SPDX-License-Identifier: MIT
#include "FakeRemoteDesktopPortal.h"
#include "platform/portal/PortalKeyInjector.h"

#include <QTest>

using Tessaline::KeyPostResult;
using Tessaline::KeyStroke;
using Tessaline::PortalKeyInjector;
using Tessaline::RemoteDesktopPortal;
using Tessaline::Testing::FakeRemoteDesktopPortal;
using Key = FakeRemoteDesktopPortal::Key;
using State = PortalKeyInjector::State;

namespace {

constexpr quint32 kControl = 0xffe3, kAlt = 0xffe9, kShift = 0xffe1, kSuper = 0xffeb;
constexpr quint32 kV = 0x76, kN = 0x6e, kReturn = 0xff0d;

} // namespace

class TestPortalKeyInjector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void nothingIsAskedUntilTheFirstKey();
    void sessionAsksForAKeyboardAtOnce();
    void nothingIsPostedUntilTheSessionRuns();
    void pasteChordIsControlV();
    void chordsAreTypedModifiersFirstAndReleasedLastFirst();
    void aKeyWithoutAKeysymTypesNothing();
    void declinedStartTakesNoKeysForGood();
    void failedSessionOrSelectionTakesNoKeys();
    void startWithoutAKeyboardTakesNoKeys();
    void sessionEndedByTheDesktopTakesNoKeys();
    void closedSignalOfAnotherSessionIsIgnored();
    void destructionClosesTheSession();
    void versionOneAsksForNoPersistence();
    void persistingPortalPassesTheStoredTokenAndKeepsTheNewOne();
    void declinedRestoreForgetsTheSpentToken();

private:
    /// An injector whose session was asked for (`started`), as after its first post.
    PortalKeyInjector& makeInjector(uint version = 1, bool started = true);

    FakeRemoteDesktopPortal* m_portal = nullptr;
    std::unique_ptr<PortalKeyInjector> m_injector;
    QString m_storedToken;
    QStringList m_saved;
};

void TestPortalKeyInjector::init()
{
    m_storedToken.clear();
    m_saved.clear();
}

void TestPortalKeyInjector::cleanup()
{
    m_injector.reset();
    m_portal = nullptr;
}

PortalKeyInjector& TestPortalKeyInjector::makeInjector(uint version, bool started)
{
    auto portal = std::make_unique<FakeRemoteDesktopPortal>(version);
    m_portal = portal.get();
    PortalKeyInjector::TokenStore tokens{[this] { return m_storedToken; },
                                         [this](const QString& token) {
                                             m_storedToken = token;
                                             m_saved.append(token);
                                         }};
    m_injector = std::make_unique<PortalKeyInjector>(std::move(portal), std::move(tokens));
    if (started)
        m_injector->start();
    return *m_injector;
}

void TestPortalKeyInjector::nothingIsAskedUntilTheFirstKey()
{
    PortalKeyInjector& injector = makeInjector(1, false);
    QCOMPARE(injector.state(), State::Idle);
    QVERIFY(m_portal->sessionRequests.isEmpty());
    // The first paste asks for the session and is not typed itself.
    QVERIFY(!injector.postPasteChord());
    QCOMPARE(injector.state(), State::Starting);
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    // Asked once only, however many posts follow, and start() adds nothing.
    QCOMPARE(injector.postKeys({{KeyStroke::Control, QStringLiteral("n")}}).status,
             KeyPostResult::NotPosted);
    injector.start();
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    const QString session = m_portal->grant();
    QVERIFY(injector.postPasteChord());
    QCOMPARE(m_portal->keys.size(), 4);
    QCOMPARE(m_portal->keys.first().session, session);
}

void TestPortalKeyInjector::sessionAsksForAKeyboardAtOnce()
{
    PortalKeyInjector& injector = makeInjector();
    QCOMPARE(injector.state(), State::Starting);
    QCOMPARE(m_portal->sessionRequests.size(), 1);
    const QString session = m_portal->answerSession();
    QCOMPARE(m_portal->selections.size(), 1);
    QCOMPARE(m_portal->selections.first().session, session);
    QCOMPARE(m_portal->selections.first().selection.types, RemoteDesktopPortal::keyboardDevice);
    QVERIFY(m_portal->starts.isEmpty());
    m_portal->answerSelection();
    QCOMPARE(m_portal->starts.size(), 1);
    QCOMPARE(m_portal->starts.first().session, session);
    QCOMPARE(injector.state(), State::Starting);
    m_portal->answerStart();
    QCOMPARE(injector.state(), State::Running);
    QVERIFY(m_portal->closed.isEmpty());
}

void TestPortalKeyInjector::nothingIsPostedUntilTheSessionRuns()
{
    PortalKeyInjector& injector = makeInjector();
    const QList<KeyStroke> chord{{KeyStroke::Control, QStringLiteral("n")}};

    // Each step of the start: the post is refused at once, and not kept for later.
    QVERIFY(!injector.postPasteChord());
    QCOMPARE(injector.postKeys(chord).status, KeyPostResult::NotPosted);
    const QString session = m_portal->answerSession();
    QVERIFY(!injector.postPasteChord());
    m_portal->answerSelection();
    QCOMPARE(injector.postKeys(chord).status, KeyPostResult::NotPosted);
    m_portal->answerStart();
    QVERIFY(m_portal->keys.isEmpty());

    QCOMPARE(injector.postKeys(chord).status, KeyPostResult::Posted);
    const QList<Key> typed{{session, kControl, true},
                           {session, kN, true},
                           {session, kN, false},
                           {session, kControl, false}};
    QCOMPARE(m_portal->keys, typed);
}

void TestPortalKeyInjector::pasteChordIsControlV()
{
    PortalKeyInjector& injector = makeInjector();
    const QString session = m_portal->grant();
    QVERIFY(injector.postPasteChord());
    const QList<Key> typed{{session, kControl, true},
                           {session, kV, true},
                           {session, kV, false},
                           {session, kControl, false}};
    QCOMPARE(m_portal->keys, typed);
}

void TestPortalKeyInjector::chordsAreTypedModifiersFirstAndReleasedLastFirst()
{
    PortalKeyInjector& injector = makeInjector();
    const QString session = m_portal->grant();
    const QList<KeyStroke> strokes{
        {KeyStroke::Super | KeyStroke::Shift | KeyStroke::Alt | KeyStroke::Control,
         QStringLiteral("N")},
        {0, QStringLiteral("Return")}};
    QCOMPARE(injector.postKeys(strokes).status, KeyPostResult::Posted);
    const QList<Key> typed{
        {session, kControl, true},  {session, kAlt, true},    {session, kShift, true},
        {session, kSuper, true},    {session, kN, true},      {session, kN, false},
        {session, kSuper, false},   {session, kShift, false}, {session, kAlt, false},
        {session, kControl, false}, {session, kReturn, true}, {session, kReturn, false}};
    QCOMPARE(m_portal->keys, typed);
}

void TestPortalKeyInjector::aKeyWithoutAKeysymTypesNothing()
{
    PortalKeyInjector& injector = makeInjector();
    m_portal->grant();
    const KeyPostResult result = injector.postKeys(
        {{KeyStroke::Control, QStringLiteral("a")}, {0, QStringLiteral("NoSuchKey")}});
    QCOMPARE(result.status, KeyPostResult::KeyNotOnLayout);
    QCOMPARE(result.key, QStringLiteral("NoSuchKey"));
    QVERIFY(m_portal->keys.isEmpty());
    QCOMPARE(injector.state(), State::Running);
}

void TestPortalKeyInjector::declinedStartTakesNoKeysForGood()
{
    PortalKeyInjector& injector = makeInjector();
    const QString session = m_portal->answerSession();
    m_portal->answerSelection();
    m_portal->answerStart(RemoteDesktopPortal::responseCancelled, 0);
    QCOMPARE(injector.state(), State::Refused);
    QCOMPARE(m_portal->closed, QStringList{session});
    QVERIFY(!injector.postPasteChord());
    QCOMPARE(injector.postKeys({{0, QStringLiteral("a")}}).status, KeyPostResult::NotPosted);
    QVERIFY(m_portal->keys.isEmpty());
    // The user is not asked again by every post.
    QVERIFY(m_portal->sessionRequests.isEmpty());
    QVERIFY(m_portal->starts.isEmpty());
}

void TestPortalKeyInjector::failedSessionOrSelectionTakesNoKeys()
{
    PortalKeyInjector& injector = makeInjector();
    m_portal->answerSession(RemoteDesktopPortal::responseOther);
    QCOMPARE(injector.state(), State::Refused);
    QVERIFY(m_portal->selections.isEmpty());
    QVERIFY(m_portal->closed.isEmpty());
    QVERIFY(!injector.postPasteChord());

    PortalKeyInjector& second = makeInjector();
    const QString session = m_portal->answerSession();
    m_portal->answerSelection(RemoteDesktopPortal::responseOther);
    QCOMPARE(second.state(), State::Refused);
    QVERIFY(m_portal->starts.isEmpty());
    QCOMPARE(m_portal->closed, QStringList{session});
    QVERIFY(!second.postPasteChord());
    QVERIFY(m_portal->keys.isEmpty());
}

void TestPortalKeyInjector::startWithoutAKeyboardTakesNoKeys()
{
    PortalKeyInjector& injector = makeInjector();
    const QString session = m_portal->answerSession();
    m_portal->answerSelection();
    m_portal->answerStart(RemoteDesktopPortal::responseSuccess, 2 /* a pointer only */);
    QCOMPARE(injector.state(), State::Refused);
    QCOMPARE(m_portal->closed, QStringList{session});
    QVERIFY(!injector.postPasteChord());
    QVERIFY(m_portal->keys.isEmpty());
}

void TestPortalKeyInjector::sessionEndedByTheDesktopTakesNoKeys()
{
    PortalKeyInjector& injector = makeInjector();
    QStringList closed;
    m_portal->closedLog = &closed;
    const QString session = m_portal->grant();
    QVERIFY(injector.postPasteChord());
    const qsizetype sent = m_portal->keys.size();
    m_portal->closedCallback(session);
    QCOMPARE(injector.state(), State::Refused);
    QVERIFY(!injector.postPasteChord());
    QCOMPARE(m_portal->keys.size(), sent);
    // The desktop closed it already: it is not closed again, now or at the end.
    m_injector.reset();
    QVERIFY(closed.isEmpty());
}

void TestPortalKeyInjector::closedSignalOfAnotherSessionIsIgnored()
{
    PortalKeyInjector& injector = makeInjector();
    m_portal->grant();
    m_portal->closedCallback(QStringLiteral("/session/other"));
    QCOMPARE(injector.state(), State::Running);
    QVERIFY(injector.postPasteChord());
}

void TestPortalKeyInjector::destructionClosesTheSession()
{
    makeInjector();
    QStringList closed;
    m_portal->closedLog = &closed;
    const QString session = m_portal->grant();
    QVERIFY(closed.isEmpty());
    m_injector.reset();
    QCOMPARE(closed, QStringList{session});

    // A session still starting is closed too.
    makeInjector();
    m_portal->closedLog = &closed;
    closed.clear();
    const QString starting = m_portal->answerSession();
    m_injector.reset();
    QCOMPARE(closed, QStringList{starting});
}

void TestPortalKeyInjector::versionOneAsksForNoPersistence()
{
    m_storedToken = QStringLiteral("left over");
    makeInjector(1);
    m_portal->answerSession();
    QCOMPARE(m_portal->selections.first().selection.persistMode, 0u);
    QCOMPARE(m_portal->selections.first().selection.restoreToken, QString());
    m_portal->answerSelection();
    m_portal->answerStart(RemoteDesktopPortal::responseCancelled, 0);
    QVERIFY(m_saved.isEmpty());
}

void TestPortalKeyInjector::persistingPortalPassesTheStoredTokenAndKeepsTheNewOne()
{
    // The first start: no token yet, the permission asked to persist; the desktop's token kept.
    makeInjector(2);
    m_portal->answerSession();
    QCOMPARE(m_portal->selections.first().selection.persistMode,
             RemoteDesktopPortal::persistUntilRevoked);
    QCOMPARE(m_portal->selections.first().selection.restoreToken, QString());
    m_portal->answerSelection();
    m_portal->answerStart(RemoteDesktopPortal::responseSuccess, RemoteDesktopPortal::keyboardDevice,
                          QStringLiteral("token-1"));
    QCOMPARE(m_saved, QStringList{QStringLiteral("token-1")});

    // The next start passes it, and keeps the one handed back in its place.
    PortalKeyInjector& second = makeInjector(2);
    m_portal->answerSession();
    QCOMPARE(m_portal->selections.first().selection.restoreToken, QStringLiteral("token-1"));
    QCOMPARE(m_portal->selections.first().selection.persistMode,
             RemoteDesktopPortal::persistUntilRevoked);
    m_portal->answerSelection();
    m_portal->answerStart(RemoteDesktopPortal::responseSuccess, RemoteDesktopPortal::keyboardDevice,
                          QStringLiteral("token-2"));
    QCOMPARE(second.state(), State::Running);
    QCOMPARE(m_storedToken, QStringLiteral("token-2"));

    // A desktop that hands back no token leaves the stored one alone.
    makeInjector(2);
    m_portal->grant();
    QCOMPARE(m_storedToken, QStringLiteral("token-2"));
}

void TestPortalKeyInjector::declinedRestoreForgetsTheSpentToken()
{
    m_storedToken = QStringLiteral("revoked");
    PortalKeyInjector& injector = makeInjector(2);
    m_portal->answerSession();
    QCOMPARE(m_portal->selections.first().selection.restoreToken, QStringLiteral("revoked"));
    m_portal->answerSelection();
    m_portal->answerStart(RemoteDesktopPortal::responseCancelled, 0);
    QCOMPARE(injector.state(), State::Refused);
    QCOMPARE(m_storedToken, QString());
    QCOMPARE(m_saved, QStringList{QString()});
}

QTEST_APPLESS_MAIN(TestPortalKeyInjector)
#include "tst_PortalKeyInjector.moc"
