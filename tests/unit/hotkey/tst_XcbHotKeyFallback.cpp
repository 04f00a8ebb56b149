// SPDX-License-Identifier: MIT
// Off X11 (here Qt's offscreen platform) the X11 hot-key service stays out of the way: every
// registration fails quietly and hot keys still work as objects.
#include "platform/x11/XcbHotKeyService.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>

#include <QGuiApplication>
#include <QTest>

using Tessaline::XcbHotKeyService;

class TestXcbHotKeyFallback : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registrationFailsQuietlyOffX11();
    void destroyedServiceLeavesTheRegistry();
};

void TestXcbHotKeyFallback::registrationFailsQuietlyOffX11()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("offscreen"));
    XcbHotKeyService service;
    QVERIFY(!service.isAvailable());
    const auto registration = service.registerHotKey(40, 6400, {0x4D72766B, 1});
    QVERIFY(!registration.has_value());
    QCOMPARE(registration.error(), XcbHotKeyService::noSuchKeyStatus);

    HotKey::HotKeysController::setService(&service);
    int downs = 0;
    auto hotKey = HotKey::HotKey::create(HotKey::KeyCombo(40, 6400), [&] { ++downs; });
    const HotKey::HotKeyBox* box = HotKey::HotKeysController::box(*hotKey);
    QVERIFY(box != nullptr);
    QVERIFY(!box->carbonEventHotKey.has_value());
    QVERIFY(!HotKey::HotKeysController::isEventHandlerInstalled());
    hotKey.reset();
    QVERIFY(HotKey::HotKeysController::hotKeys().empty());
    HotKey::HotKeysController::setService(nullptr);
    QCOMPARE(downs, 0);
}

void TestXcbHotKeyFallback::destroyedServiceLeavesTheRegistry()
{
    auto service = std::make_unique<XcbHotKeyService>();
    HotKey::HotKeysController::setService(service.get());
    auto hotKey = HotKey::HotKey::create(HotKey::KeyCombo(40, 6400));
    service.reset();
    QCOMPARE(HotKey::HotKeysController::service(), nullptr);
    // A hot key that outlives the service is dropped without reaching it.
    hotKey.reset();
    QVERIFY(HotKey::HotKeysController::hotKeys().empty());
}

QTEST_MAIN(TestXcbHotKeyFallback)
#include "tst_XcbHotKeyFallback.moc"
