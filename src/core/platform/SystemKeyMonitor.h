// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>
#include <optional>

namespace Tessaline {

/// A key event seen system-wide: either a key-down of an ordinary key, or a system-defined
/// event such as a volume, brightness or media key.
struct SystemKeyEvent
{
    enum class Type
    {
        KeyDown = 10,
        SystemDefined = 14
    };

    /// Modifier flag values of key events.
    enum ModifierFlag : quint64
    {
        CapsLock = 0x10000,
        Shift = 0x20000,
        Control = 0x40000,
        Option = 0x80000,
        Command = 0x100000,
    };

    /// The subtype of system-defined events that carry the auxiliary control buttons.
    static constexpr qint16 kAuxControlButtons = 8;
    /// Key states of auxiliary control buttons (bits 8 to 15 of data1).
    static constexpr int kKeyStateDown = 0x0A;
    static constexpr int kKeyStateUp = 0x0B;

    /// Key types of auxiliary control buttons (bits 16 to 31 of data1).
    enum AuxKeyType : int
    {
        SoundUp = 0,
        SoundDown = 1,
        BrightnessUp = 2,
        BrightnessDown = 3,
        Mute = 7,
        Play = 16,
        Next = 17,
        Previous = 18,
    };

    Type type = Type::KeyDown;
    /// Key-down only: the modifiers held, as ModifierFlag bits.
    quint64 modifierFlags = 0;
    /// Key-down only: the characters of the key with no modifier applied; absent for keys
    /// that produce none.
    std::optional<QString> charactersIgnoringModifiers;
    /// Key-down only: the name of the key with no modifier applied, as the keyboard layout
    /// names it ("Print", "a", "F5"); empty when unknown.
    QString keyName;
    /// System-defined only.
    qint16 subtype = 0;
    qint64 data1 = 0;

    static SystemKeyEvent keyDown(quint64 modifierFlags, std::optional<QString> characters,
                                  QString keyName = QString())
    {
        SystemKeyEvent event;
        event.type = Type::KeyDown;
        event.modifierFlags = modifierFlags;
        event.charactersIgnoringModifiers = std::move(characters);
        event.keyName = std::move(keyName);
        return event;
    }

    static SystemKeyEvent systemDefined(qint16 subtype, qint64 data1)
    {
        SystemKeyEvent event;
        event.type = Type::SystemDefined;
        event.subtype = subtype;
        event.data1 = data1;
        return event;
    }

    /// An auxiliary control button: data1 holds the key type in its upper 16 bits, the key
    /// state in bits 8 to 15 and the repeat flag in bit 0.
    static SystemKeyEvent auxControlButton(int keyType, int keyState, bool repeat = false)
    {
        const quint32 data = (static_cast<quint32>(keyType) << 16) |
                             ((static_cast<quint32>(keyState) & 0xFF) << 8) | (repeat ? 1 : 0);
        return systemDefined(kAuxControlButtons, static_cast<qint64>(data));
    }

    friend bool operator==(const SystemKeyEvent&, const SystemKeyEvent&) = default;
};

/// Watches key-down and system-defined key events that go to other applications. Events
/// aimed at one of Tessaline's own windows are not delivered.
class SystemKeyMonitor
{
public:
    using Handler = std::function<void(const SystemKeyEvent&)>;

    virtual ~SystemKeyMonitor() = default;
    /// Starts delivering events to `handler`, replacing an earlier handler. False when the
    /// desktop offers no such events; the monitor then stays stopped.
    virtual bool start(Handler handler) = 0;
    /// Stops delivering events and drops the handler.
    virtual void stop() = 0;
    /// After start() returned false: one line for the user on why no events come and what to
    /// do about it; empty when there is nothing the user can do.
    virtual QString unavailableReason() const { return {}; }
};

} // namespace Tessaline
