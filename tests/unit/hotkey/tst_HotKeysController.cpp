// SPDX-License-Identifier: MIT
#include "FakeHotKeyService.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>

#include <QTest>

using HotKey::HotKeyEvent;
using HotKey::HotKeyId;
using HotKey::HotKeysController;
using HotKey::Key;
using HotKey::KeyCombo;
using HotKey::ModifierFlags;
using Tessaline::Testing::FakeHotKeyService;
namespace Status = HotKey::Status;

class TestHotKeysController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void signatureIsMrvk();
    void threeInitializersRegisterTheSameCombo();
    void registrationUsesTheNextIdAndSignature();
    void handlerIsInstalledOnceAtTheFirstSuccess();
    void sameComboGetsDifferentIdsAndTheServiceDecides();
    void failedRegistrationKeepsItsBoxSilently();
    void lateAnswersReachTheHotKey();
    void registeringTwiceDoesNothing();
    void pressAndReleaseCallTheirHandlers();
    void pauseAndUnpauseGiveANewId();
    void destructionUnregisters();
    void deadHotKeyIsRemovedAtItsNextEvent();
    void unhandledEvents();

private:
    std::unique_ptr<FakeHotKeyService> m_service;
};

void TestHotKeysController::init()
{
    m_service = std::make_unique<FakeHotKeyService>();
    HotKeysController::setService(m_service.get());
}

void TestHotKeysController::cleanup()
{
    QVERIFY(HotKeysController::hotKeys().empty());
    HotKeysController::setService(nullptr);
    m_service.reset();
}

void TestHotKeysController::signatureIsMrvk()
{
    QCOMPARE(HotKeysController::eventHotKeySignature, 0x4D72766Bu);
}

void TestHotKeysController::threeInitializersRegisterTheSameCombo()
{
    const ModifierFlags flags(ModifierFlags::control | ModifierFlags::option |
                              ModifierFlags::command);
    auto fromCombo = HotKey::HotKey::create(KeyCombo(40, 6400));
    auto fromCodes = HotKey::HotKey::create(40, 6400);
    auto fromKey = HotKey::HotKey::create(Key::k, flags);
    QCOMPARE(m_service->registrations.size(), 3);
    for (const auto& call : m_service->registrations) {
        QCOMPARE(call.keyCode, 40u);
        QCOMPARE(call.modifiers, 6400u);
    }
    QCOMPARE(fromKey->keyCombo(), KeyCombo(40, 6400));
    QVERIFY(fromCombo->identifier() != fromCodes->identifier());
    QVERIFY(fromCodes->identifier() != fromKey->identifier());
    QVERIFY(!fromKey->isPaused());
}

void TestHotKeysController::registrationUsesTheNextIdAndSignature()
{
    const quint32 before = HotKeysController::hotKeysCount();
    auto hotKey = HotKey::HotKey::create(KeyCombo(1, 256));
    QCOMPARE(HotKeysController::hotKeysCount(), before + 1);
    QCOMPARE(m_service->registrations.size(), 1);
    QCOMPARE(m_service->registrations.first().id,
             (HotKeyId{HotKeysController::eventHotKeySignature, before + 1}));
    const HotKey::HotKeyBox* box = HotKeysController::box(*hotKey);
    QVERIFY(box != nullptr);
    QCOMPARE(box->carbonHotKeyID, before + 1);
    QCOMPARE(box->identifier, hotKey->identifier());
    QCOMPARE(box->hotKey.lock(), hotKey);
    QVERIFY(box->carbonEventHotKey.has_value());
    QCOMPARE(HotKeysController::hotKey(before + 1), hotKey);
}

void TestHotKeysController::handlerIsInstalledOnceAtTheFirstSuccess()
{
    m_service->decide = [](quint32, quint32, HotKeyId) {
        return HotKey::HotKeyService::Registration(Tessaline::Unexpected(-1));
    };
    auto refused = HotKey::HotKey::create(KeyCombo(2, 256));
    QCOMPARE(m_service->handlerInstalls, 0);
    QVERIFY(!HotKeysController::isEventHandlerInstalled());

    m_service->decide = {};
    auto first = HotKey::HotKey::create(KeyCombo(3, 256));
    auto second = HotKey::HotKey::create(KeyCombo(4, 256));
    QCOMPARE(m_service->handlerInstalls, 1);
    QVERIFY(HotKeysController::isEventHandlerInstalled());

    // The handler stays installed when every hot key is gone.
    first.reset();
    second.reset();
    refused.reset();
    QVERIFY(HotKeysController::isEventHandlerInstalled());
    auto third = HotKey::HotKey::create(KeyCombo(5, 256));
    QCOMPARE(m_service->handlerInstalls, 1);
}

void TestHotKeysController::sameComboGetsDifferentIdsAndTheServiceDecides()
{
    // Like the system, the fake refuses a combination that is already registered.
    m_service->decide = [this](quint32 code, quint32 modifiers, HotKeyId) {
        for (const auto& [reference, entry] : m_service->active) {
            if (entry.keyCode == code && entry.modifiers == modifiers)
                return HotKey::HotKeyService::Registration(
                    Tessaline::Unexpected(Status::hotKeyExists));
        }
        static HotKey::HotKeyService::Reference next = 100;
        return HotKey::HotKeyService::Registration(next++);
    };
    int firstPresses = 0;
    int secondPresses = 0;
    auto first = HotKey::HotKey::create(KeyCombo(40, 6400), [&] { ++firstPresses; });
    auto second = HotKey::HotKey::create(KeyCombo(40, 6400), [&] { ++secondPresses; });

    const HotKey::HotKeyBox* firstBox = HotKeysController::box(*first);
    const HotKey::HotKeyBox* secondBox = HotKeysController::box(*second);
    QVERIFY(firstBox && secondBox);
    QVERIFY(firstBox->carbonHotKeyID != secondBox->carbonHotKeyID);
    QVERIFY(firstBox->carbonEventHotKey.has_value());
    QVERIFY(!secondBox->carbonEventHotKey.has_value());

    QCOMPARE(m_service->press(40, 6400), 1);
    QCOMPARE(firstPresses, 1);
    QCOMPARE(secondPresses, 0);

    // When the service accepts both, both get references.
    m_service->decide = {};
    auto third = HotKey::HotKey::create(KeyCombo(40, 6400), [&] { ++secondPresses; });
    QVERIFY(HotKeysController::box(*third)->carbonEventHotKey.has_value());
    QCOMPARE(m_service->press(40, 6400), 2);
    QCOMPARE(firstPresses, 2);
    QCOMPARE(secondPresses, 1);
}

void TestHotKeysController::failedRegistrationKeepsItsBoxSilently()
{
    m_service->decide = [](quint32, quint32, HotKeyId) {
        return HotKey::HotKeyService::Registration(Tessaline::Unexpected(Status::hotKeyExists));
    };
    auto hotKey = HotKey::HotKey::create(KeyCombo(6, 256), [] {});
    const HotKey::HotKeyBox* box = HotKeysController::box(*hotKey);
    QVERIFY(box != nullptr);
    QVERIFY(!box->carbonEventHotKey.has_value());
    QCOMPARE(HotKeysController::hotKeys().size(), std::size_t(1));

    // Unregistering a box without a reference does not reach the service.
    hotKey.reset();
    QVERIFY(m_service->unregistrations.isEmpty());
}

void TestHotKeysController::lateAnswersReachTheHotKey()
{
    // Setting the service installs the handler of late answers.
    QVERIFY(m_service->registrationHandler);
    QList<int> told;
    auto hotKey = HotKey::HotKey::create(KeyCombo(6, 256), [] {});
    hotKey->setRegistrationHandler([&told](int status) { told.append(status); });
    const HotKey::HotKeyBox* box = HotKeysController::box(*hotKey);
    QVERIFY(box != nullptr && box->carbonEventHotKey.has_value());
    const quint32 id = box->carbonHotKeyID;

    // Foreign signatures and unknown ids are ignored.
    m_service->answerLate(HotKeyId{0x41424344, id}, -50);
    m_service->answerLate(HotKeyId{HotKeysController::eventHotKeySignature, id + 100}, -50);
    QVERIFY(told.isEmpty());
    QVERIFY(box->carbonEventHotKey.has_value());

    m_service->answerLate(HotKeyId{HotKeysController::eventHotKeySignature, id}, Status::noError);
    QCOMPARE(told, QList<int>{Status::noError});
    QVERIFY(box->carbonEventHotKey.has_value());

    // A refusal leaves the box as a refusal at once does: kept, without a reference, and the
    // service is not asked to unregister what it already gave up.
    m_service->answerLate(HotKeyId{HotKeysController::eventHotKeySignature, id}, -50);
    QCOMPARE(told, (QList<int>{Status::noError, -50}));
    QVERIFY(!box->carbonEventHotKey.has_value());
    QCOMPARE(HotKeysController::hotKeys().size(), std::size_t(1));
    hotKey.reset();
    QVERIFY(m_service->unregistrations.isEmpty());
}

void TestHotKeysController::registeringTwiceDoesNothing()
{
    auto hotKey = HotKey::HotKey::create(KeyCombo(7, 256));
    const quint32 count = HotKeysController::hotKeysCount();
    HotKeysController::registerHotKey(hotKey);
    hotKey->setPaused(false); // already registered
    QCOMPARE(HotKeysController::hotKeysCount(), count);
    QCOMPARE(m_service->registrations.size(), 1);
    QCOMPARE(HotKeysController::hotKeys().size(), std::size_t(1));
}

void TestHotKeysController::pressAndReleaseCallTheirHandlers()
{
    int downs = 0;
    int ups = 0;
    auto hotKey = HotKey::HotKey::create(
        KeyCombo(40, 6400), [&] { ++downs; }, [&] { ++ups; });
    const HotKeyId id = m_service->registrations.last().id;
    QCOMPARE(m_service->deliver(id, HotKeyEvent::pressed), Status::noError);
    QCOMPARE(downs, 1);
    QCOMPARE(ups, 0);
    QCOMPARE(m_service->deliver(id, HotKeyEvent::released), Status::noError);
    QCOMPARE(ups, 1);

    // Without a key-up handler a release is not handled.
    hotKey->setKeyUpHandler({});
    QCOMPARE(m_service->deliver(id, HotKeyEvent::released), Status::eventNotHandled);
    QCOMPARE(ups, 1);
    QCOMPARE(downs, 1);
}

void TestHotKeysController::pauseAndUnpauseGiveANewId()
{
    int downs = 0;
    auto hotKey = HotKey::HotKey::create(KeyCombo(40, 6400), [&] { ++downs; });
    const HotKeyId oldId = m_service->registrations.last().id;
    const auto oldReference = HotKeysController::box(*hotKey)->carbonEventHotKey;

    hotKey->setPaused(true);
    QVERIFY(hotKey->isPaused());
    QCOMPARE(m_service->unregistrations, QList<quint64>{*oldReference});
    QVERIFY(HotKeysController::box(*hotKey) == nullptr);
    QCOMPARE(m_service->deliver(oldId), Status::eventNotHandled);
    QCOMPARE(m_service->press(40, 6400), 0);

    hotKey->setPaused(false);
    QVERIFY(!hotKey->isPaused());
    const HotKeyId newId = m_service->registrations.last().id;
    QCOMPARE(m_service->registrations.size(), 2);
    QVERIFY(newId.id != oldId.id);
    QCOMPARE(HotKeysController::box(*hotKey)->carbonHotKeyID, newId.id);

    QCOMPARE(m_service->deliver(oldId), Status::eventNotHandled);
    QCOMPARE(downs, 0);
    QCOMPARE(m_service->deliver(newId), Status::noError);
    QCOMPARE(downs, 1);
}

void TestHotKeysController::destructionUnregisters()
{
    auto hotKey = HotKey::HotKey::create(KeyCombo(8, 256), [] {});
    const HotKeyId id = m_service->registrations.last().id;
    const auto reference = *HotKeysController::box(*hotKey)->carbonEventHotKey;
    hotKey.reset();
    QCOMPARE(m_service->unregistrations, QList<quint64>{reference});
    QVERIFY(m_service->active.empty());
    QVERIFY(HotKeysController::hotKeys().empty());
    QCOMPARE(m_service->deliver(id), Status::eventNotHandled);
}

void TestHotKeysController::deadHotKeyIsRemovedAtItsNextEvent()
{
    int downs = 0;
    auto hotKey = HotKey::HotKey::create(KeyCombo(9, 256), [&] { ++downs; });
    hotKey->setPaused(true);

    // Register the same object through a second owner, then drop that owner: the registry's
    // weak reference dies while its box is still stored.
    {
        auto token = std::make_shared<int>(0);
        std::shared_ptr<HotKey::HotKey> alias(token, hotKey.get());
        HotKeysController::registerHotKey(alias);
    }
    QCOMPARE(HotKeysController::hotKeys().size(), std::size_t(1));
    const HotKeyId id = m_service->registrations.last().id;
    QVERIFY(HotKeysController::hotKeys().begin()->second.hotKey.expired());

    QCOMPARE(m_service->deliver(id), Status::eventNotHandled);
    QVERIFY(HotKeysController::hotKeys().empty());
    QCOMPARE(downs, 0);
    QVERIFY(!HotKeysController::hotKey(id.id));
}

void TestHotKeysController::unhandledEvents()
{
    int downs = 0;
    auto hotKey = HotKey::HotKey::create(KeyCombo(10, 256), [&] { ++downs; });
    const HotKeyId id = m_service->registrations.last().id;

    QCOMPARE(HotKeysController::handleEvent(nullptr), Status::eventNotHandled);

    const HotKeyEvent unreadable{HotKeyEvent::pressed, id, -9870};
    QCOMPARE(HotKeysController::handleEvent(&unreadable), -9870);

    const HotKeyEvent foreign{HotKeyEvent::pressed, HotKeyId{0x41424344, id.id}, 0};
    QCOMPARE(HotKeysController::handleEvent(&foreign), Status::eventNotHandled);

    const HotKeyEvent unknown{HotKeyEvent::pressed,
                              HotKeyId{HotKeysController::eventHotKeySignature, id.id + 1000}, 0};
    QCOMPARE(HotKeysController::handleEvent(&unknown), Status::eventNotHandled);

    const HotKeyEvent otherKind{7, id, 0};
    QCOMPARE(HotKeysController::handleEvent(&otherKind), Status::eventNotHandled);

    hotKey->setKeyDownHandler({});
    QCOMPARE(m_service->deliver(id), Status::eventNotHandled);
    QCOMPARE(downs, 0);

    const HotKeyEvent pressed{HotKeyEvent::pressed, id, 0};
    hotKey->setKeyDownHandler([&] { ++downs; });
    QCOMPARE(HotKeysController::handleEvent(&pressed), Status::noError);
    QCOMPARE(downs, 1);
}

QTEST_GUILESS_MAIN(TestHotKeysController)
#include "tst_HotKeysController.moc"
