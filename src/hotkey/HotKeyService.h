// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "hotkey/Menu.h"

#include <QList>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace HotKey {

/// Status codes of registration and event handling.
namespace Status {
inline constexpr int noError = 0;
inline constexpr int eventNotHandled = -9874;
inline constexpr int hotKeyExists = -9878;
} // namespace Status

/// The id under which a hot key is registered with the system: a signature and a number.
struct HotKeyId
{
    quint32 signature = 0;
    quint32 id = 0;
    constexpr bool operator==(const HotKeyId&) const = default;
};

/// A hot-key event as the system delivers it.
struct HotKeyEvent
{
    static constexpr quint32 pressed = 5;
    static constexpr quint32 released = 6;

    quint32 kind = pressed;
    HotKeyId hotKeyId;
    /// Non-zero when the event's hot-key id could not be read; handling then returns it.
    int idReadStatus = Status::noError;
};

/// The system's side of hot keys: registering a key code with modifier bits under an id, and
/// delivering pressed and released events carrying that id to one installed handler.
class HotKeyService
{
public:
    using Reference = quint64;
    using EventHandler = std::function<int(const HotKeyEvent*)>;
    /// Told a registration's final answer when the system gives it after `registerHotKey` has
    /// returned: Status::noError when granted, else the status that says why it was refused.
    using RegistrationHandler = std::function<void(HotKeyId id, int status)>;

    /// The reference of a granted registration, or the status code that says why the system
    /// refused it (for example Status::hotKeyExists).
    using Registration = Tessaline::Expected<Reference, int>;

    /// Keys of each entry that `symbolicHotKeys()` reports.
    static constexpr auto enabledKey = "enabled";
    static constexpr auto keyCodeKey = "keyCode";
    static constexpr auto modifiersKey = "modifiers";
    /// Optional: the setting that binds the entry, e.g. "org.gnome.desktop.wm.keybindings close".
    static constexpr auto nameKey = "name";

    virtual ~HotKeyService() = default;

    virtual Registration registerHotKey(quint32 carbonKeyCode, quint32 carbonModifiers,
                                        HotKeyId id) = 0;
    virtual void unregisterHotKey(Reference reference) = 0;
    /// Installs the handler that every later event is passed to.
    virtual void installEventHandler(EventHandler handler) = 0;
    /// Installs the handler of late answers. A service whose answer is the one `registerHotKey`
    /// returns never calls it.
    virtual void installRegistrationHandler(RegistrationHandler) {}

    /// False for a session that lets no application take a key system-wide (then every
    /// registration is refused and the user binds a command in the desktop's own settings).
    virtual bool grabsKeys() const { return true; }

    /// The hot keys the desktop itself uses, one map per entry with `enabledKey`, `keyCodeKey`
    /// and `modifiersKey`; none when they cannot be read.
    virtual std::optional<QList<QVariantMap>> symbolicHotKeys() { return std::nullopt; }
    /// The application's main menu, when it has one.
    virtual std::optional<Menu> mainMenu() { return std::nullopt; }
};

} // namespace HotKey
