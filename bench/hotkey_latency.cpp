// SPDX-License-Identifier: MIT
// Time from a synthesized press of the HUD hotkey (⌃⌥⌘K, sent through XTest like xdotool does)
// to the manager's toggle callback, through the X11 grab, the native event filter and the
// event-loop turn the manager defers to. Run inside a desktop session; prints figures only.
#include "hotkeys/HotkeyManager.h"
#include "platform/Scheduler.h"
#include "platform/x11/XcbHotKeyService.h"
#include "platform/x11/XcbReply.h"
#include "settings/DefaultsStore.h"

#include <hotkey/HotKeysController.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <vector>

namespace {

xcb_keycode_t keycodeOf(xcb_key_symbols_t* symbols, xcb_keysym_t keysym)
{
    const Tessaline::XcbReply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    return codes != nullptr ? codes.get()[0] : 0;
}

void fake(xcb_connection_t* connection, quint8 type, xcb_keycode_t keycode)
{
    xcb_test_fake_input(connection, type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

double percentile(std::vector<double> values, double fraction)
{
    std::sort(values.begin(), values.end());
    const auto index = static_cast<std::size_t>(fraction * double(values.size() - 1) + 0.5);
    return values[index];
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const int warmups = 10;
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 200;

    Tessaline::XcbHotKeyService service;
    if (!service.isAvailable()) {
        std::fprintf(stderr, "hotkey_latency: needs an X11 session (QT_QPA_PLATFORM=xcb)\n");
        return 1;
    }
    HotKey::HotKeysController::setService(&service);
    QTemporaryDir dir;
    Tessaline::DefaultsStore defaults(dir.filePath(QStringLiteral("defaults.json")));
    Tessaline::TimerScheduler scheduler;

    QElapsedTimer clock;
    clock.start();
    qint64 toggledAtNs = -1;
    QEventLoop loop;
    Tessaline::HotkeyManager manager(defaults, scheduler, [&] {
        toggledAtNs = clock.nsecsElapsed();
        loop.quit();
    });
    manager.setEnabled(true);

    xcb_connection_t* injector = xcb_connect(nullptr, nullptr);
    xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(injector);
    const xcb_keycode_t control = keycodeOf(symbols, XKB_KEY_Control_L);
    const xcb_keycode_t alt = keycodeOf(symbols, XKB_KEY_Alt_L);
    const xcb_keycode_t super = keycodeOf(symbols, XKB_KEY_Super_L);
    const xcb_keycode_t k = keycodeOf(symbols, XKB_KEY_k);

    QTimer timeout;
    timeout.setSingleShot(true);
    timeout.setInterval(1000);
    QObject::connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);

    std::vector<double> latenciesMs;
    int missed = 0;
    for (int i = 0; i < warmups + runs; ++i) {
        fake(injector, XCB_KEY_PRESS, control);
        fake(injector, XCB_KEY_PRESS, alt);
        fake(injector, XCB_KEY_PRESS, super);
        xcb_flush(injector);
        // A round trip, so that the modifiers are down before the timed press.
        Tessaline::xcbReply(xcb_get_input_focus_reply, injector, xcb_get_input_focus(injector));

        toggledAtNs = -1;
        const qint64 sentAtNs = clock.nsecsElapsed();
        fake(injector, XCB_KEY_PRESS, k);
        xcb_flush(injector);
        timeout.start();
        if (toggledAtNs < 0)
            loop.exec();
        timeout.stop();

        fake(injector, XCB_KEY_RELEASE, k);
        fake(injector, XCB_KEY_RELEASE, super);
        fake(injector, XCB_KEY_RELEASE, alt);
        fake(injector, XCB_KEY_RELEASE, control);
        Tessaline::xcbReply(xcb_get_input_focus_reply, injector, xcb_get_input_focus(injector));
        // The server's clock counts milliseconds: a press in the same millisecond as the last
        // release of its key would be taken for a key repeat, which no hand can produce.
        QThread::msleep(3);
        QCoreApplication::processEvents();

        if (i < warmups)
            continue;
        if (toggledAtNs < 0) {
            ++missed;
            continue;
        }
        latenciesMs.push_back(double(toggledAtNs - sentAtNs) / 1e6);
    }

    xcb_key_symbols_free(symbols);
    xcb_disconnect(injector);
    manager.setEnabled(false);
    HotKey::HotKeysController::setService(nullptr);

    if (latenciesMs.empty()) {
        std::printf("hotkey press -> toggle: no press reached the toggle (%d missed)\n", missed);
        return 1;
    }
    const double mean =
        std::accumulate(latenciesMs.begin(), latenciesMs.end(), 0.0) / double(latenciesMs.size());
    std::printf("hotkey press -> toggle callback, %zu presses (%d missed), goal: median < 5 ms\n",
                latenciesMs.size(), missed);
    std::printf("  median %.3f ms   p90 %.3f ms   p99 %.3f ms   mean %.3f ms   min %.3f ms   max "
                "%.3f ms\n",
                percentile(latenciesMs, 0.5), percentile(latenciesMs, 0.9),
                percentile(latenciesMs, 0.99), mean,
                *std::min_element(latenciesMs.begin(), latenciesMs.end()),
                *std::max_element(latenciesMs.begin(), latenciesMs.end()));
    return 0;
}
