// SPDX-License-Identifier: MIT
// The platform factory in a session that is not X11 (the tests run on Qt's offscreen platform):
// every service exists, and none of them grabs, injects or sees anything.
#include "platform/PlatformServices.h"

#include <hotkey/HotKey.h>
#include <hotkey/HotKeysController.h>

#include <QGuiApplication>
#include <QTest>
#include <QWindow>

using namespace Tessaline;

class TestPlatformServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offX11EveryServiceExists();
    void offX11NothingIsGrabbedOrInjected();
    void offX11HotKeysKeepTheirBoxWithoutAGrab();
    void goneServicesLeaveTheHotKeyModule();
};

void TestPlatformServices::offX11EveryServiceExists()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("offscreen"));
    const std::unique_ptr<PlatformServices> services = createPlatformServices();
    QVERIFY(services);
    QVERIFY(services->desktopEntries);
    QVERIFY(services->workspace);
    QVERIFY(services->trust);
    QVERIFY(services->elements);
    QVERIFY(services->alerts);
    QVERIFY(services->keyMonitor);
    QVERIFY(services->clipboard);
    QVERIFY(services->keyInjector);
    QVERIFY(services->clock);
    QVERIFY(services->scheduler);
    QVERIFY(services->hotKeys);
    QVERIFY(services->windowHints);
    QVERIFY(services->trayAppearance);
    QVERIFY(services->appIcons);
}

void TestPlatformServices::offX11NothingIsGrabbedOrInjected()
{
    const std::unique_ptr<PlatformServices> services = createPlatformServices();

    // An empty workspace: nothing in front, nothing running, nothing to activate.
    QVERIFY(!services->workspace->frontmostApplication());
    QVERIFY(services->workspace->runningApplications().isEmpty());
    QVERIFY(!services->workspace->activate(RunningApplication{}));
    QCOMPARE(services->workspace->ownBundleIdentifier(),
             std::optional<QString>(QStringLiteral("org.tessaline.Tessaline")));

    // No key events are watched and none is posted.
    int seen = 0;
    QVERIFY(!services->keyMonitor->start([&seen](const SystemKeyEvent&) { ++seen; }));
    services->keyMonitor->stop();
    QVERIFY(!services->keyInjector->postPasteChord());
    QCOMPARE(seen, 0);

    // Every hot key is refused.
    const auto registration = services->hotKeys->registerHotKey(40, 6400, {0x4D72766B, 1});
    QVERIFY(!registration.has_value());

    // Window hints leave the window alone.
    QWindow window;
    window.resize(100, 80);
    window.show();
    services->windowHints->skipTaskbar(window);
    QVERIFY(window.isVisible());
    QCOMPARE(window.flags() & Qt::WindowType_Mask, Qt::Window);

    // The tray's panel cannot be looked at: its icon is drawn in the neutral grey.
    const QRect icon(10, 10, 24, 24);
    QVERIFY(!services->trayAppearance->trayForeground());
    QVERIFY(!services->trayAppearance->panelColor(icon));
    QCOMPARE(services->trayAppearance->glyphColor(icon), TrayAppearance::kNeutralGlyph);
}

void TestPlatformServices::offX11HotKeysKeepTheirBoxWithoutAGrab()
{
    const std::unique_ptr<PlatformServices> services = createPlatformServices();
    HotKey::HotKeysController::setService(services->hotKeys.get());
    int presses = 0;
    auto hotKey = HotKey::HotKey::create(HotKey::KeyCombo(40, 6400), [&presses] { ++presses; });
    const HotKey::HotKeyBox* box = HotKey::HotKeysController::box(*hotKey);
    QVERIFY(box != nullptr);
    QVERIFY(!box->carbonEventHotKey.has_value());
    QVERIFY(!HotKey::HotKeysController::isEventHandlerInstalled());
    hotKey.reset();
    QCOMPARE(presses, 0);
}

void TestPlatformServices::goneServicesLeaveTheHotKeyModule()
{
    auto services = createPlatformServices();
    HotKey::HotKeysController::setService(services->hotKeys.get());
    services.reset();
    QCOMPARE(HotKey::HotKeysController::service(), nullptr);

    // Another service the module was given is left alone.
    auto first = createPlatformServices();
    auto second = createPlatformServices();
    HotKey::HotKeysController::setService(second->hotKeys.get());
    first.reset();
    QCOMPARE(HotKey::HotKeysController::service(), second->hotKeys.get());
    second.reset();
    QCOMPARE(HotKey::HotKeysController::service(), nullptr);
}

QTEST_MAIN(TestPlatformServices)
#include "tst_PlatformServices.moc"
