// SPDX-License-Identifier: MIT
#pragma once

#include <hotkey/HotKeyService.h>

#include <QList>

#include <map>
#include <memory>
#include <optional>

class QTimer;
struct xcb_connection_t;

namespace Tessaline {

/// System-wide hot keys on X11: each registration grabs its key on the root window through
/// Qt's own connection, also with the NumLock and CapsLock variants, and the presses and
/// releases reach the installed handler on the Qt main thread. When the application does not
/// run on X11 every registration fails quietly.
class XcbHotKeyService final : public HotKey::HotKeyService
{
public:
    XcbHotKeyService();
    ~XcbHotKeyService() override;
    XcbHotKeyService(const XcbHotKeyService&) = delete;
    XcbHotKeyService& operator=(const XcbHotKeyService&) = delete;

    /// True when the Qt platform is xcb and its connection is usable.
    bool isAvailable() const { return m_connection != nullptr; }

    Registration registerHotKey(quint32 carbonKeyCode, quint32 carbonModifiers,
                                HotKey::HotKeyId id) override;
    void unregisterHotKey(Reference reference) override;
    void installEventHandler(EventHandler handler) override;
    std::optional<QList<QVariantMap>> symbolicHotKeys() override;

    /// Status of a registration refused because another client holds the key.
    static constexpr int grabTakenStatus = HotKey::Status::hotKeyExists;
    /// Status of a registration whose key has no symbol or no key on this keyboard.
    static constexpr int noSuchKeyStatus = -50;

private:
    class Filter;
    friend class Filter;

    struct Grab
    {
        HotKey::HotKeyId id;
        /// The key's symbol: its keycodes are looked up again when the keyboard mapping changes.
        quint32 keysym = 0;
        QList<quint8> keycodes;
        quint16 modifiers = 0;
        /// The lock modifiers (none, CapsLock, NumLock, both) the key was grabbed with.
        QList<quint16> lockVariants;
        /// Between a press and its release; further presses meanwhile are key repeats.
        bool isDown = false;
        /// Server time of the last release delivered, to know a repeat's press by it.
        std::optional<quint32> lastReleaseTime;
    };

    struct PendingRelease
    {
        Reference reference;
        quint32 time;
    };

    bool handleNativeEvent(void* message);
    bool isKeyboardMappingChange(const void* event) const;
    void regrabAll();
    void deliver(const Grab& grab, quint32 kind);
    void flushPendingRelease();
    QList<quint16> lockVariants() const;
    void ungrab(const Grab& grab);
    void updateFilter();

    xcb_connection_t* m_connection = nullptr;
    quint32 m_root = 0;
    EventHandler m_handler;
    std::map<Reference, Grab> m_grabs;
    Reference m_nextReference = 1;
    std::unique_ptr<Filter> m_filter;
    // A held key repeats as a release and a press with the same time stamp; a release waits
    // one event-loop turn for such a press before it counts.
    std::optional<PendingRelease> m_pendingRelease;
    std::unique_ptr<QTimer> m_releaseTimer;
    bool m_filterInstalled = false;
    /// First event code of the X keyboard extension (0 when the server has none).
    quint8 m_xkbFirstEvent = 0;
    /// Mapping changes come in bursts; the keys are grabbed again once per burst.
    std::unique_ptr<QTimer> m_regrabTimer;
};

} // namespace Tessaline
