// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemKeyMonitor.h"
#include "platform/x11/RawKeyTranslator.h"

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <memory>
#include <optional>

struct xcb_connection_t;

namespace Tessaline {

/// Watches every key the user presses anywhere on the X11 desktop through XInput2 raw key
/// events on the root window, received on Qt's own connection. Purely event-driven: nothing
/// runs while no key is pressed. Keys pressed while one of Tessaline's own windows has the
/// focus are not delivered.
class XInputKeyMonitor final : public SystemKeyMonitor, private QAbstractNativeEventFilter
{
public:
    XInputKeyMonitor();
    ~XInputKeyMonitor() override;
    XInputKeyMonitor(const XInputKeyMonitor&) = delete;
    XInputKeyMonitor& operator=(const XInputKeyMonitor&) = delete;

    /// False when Qt does not run on xcb or the server lacks XInput2 or XKB.
    bool start(Handler handler) override;
    void stop() override;
    bool isRunning() const { return m_running; }

private:
    struct ContextDeleter
    {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
    };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool connect();
    bool loadKeymap();
    bool selectRawKeys(bool enable);
    void handleRawKey(bool press, std::uint32_t keycode, bool repeat);
    bool ownWindowHasFocus() const;

    Handler m_handler;
    bool m_running = false;
    xcb_connection_t* m_connection = nullptr;
    std::uint32_t m_root = 0;
    std::uint8_t m_xinputOpcode = 0;
    std::uint8_t m_xkbBaseEvent = 0;
    std::int32_t m_keyboardDevice = -1;
    std::unique_ptr<xkb_context, ContextDeleter> m_context;
    std::optional<RawKeyTranslator> m_translator;
};

} // namespace Tessaline
