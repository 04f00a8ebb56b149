// SPDX-License-Identifier: MIT
#pragma once

#include <hotkey/HotKeyService.h>

#include <QList>

#include <map>
#include <memory>

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
        QList<quint8> keycodes;
        quint16 modifiers = 0;
    };

    bool handleNativeEvent(void* message);
    QList<quint16> lockVariants() const;
    void ungrab(const Grab& grab);
    void updateFilter();

    xcb_connection_t* m_connection = nullptr;
    quint32 m_root = 0;
    EventHandler m_handler;
    std::map<Reference, Grab> m_grabs;
    Reference m_nextReference = 1;
    std::unique_ptr<Filter> m_filter;
    bool m_filterInstalled = false;
};

} // namespace Tessaline
