// SPDX-License-Identifier: MIT
#include "platform/x11/XcbHotKeyService.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbHotKeyKeysyms.h"
#include "platform/x11/XcbHotKeySystemCombos.h"
#include "platform/x11/XcbReply.h"

#include <hotkey/HotKeysController.h>
#include <hotkey/ModifierFlags.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QTimer>

#include <cstdlib>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace Tessaline {
namespace {

constexpr quint16 kRelevantModifiers =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
constexpr quint8 kBadAccess = 10;
// The keyboard extension's own event codes, in the second byte of its events.
constexpr quint8 kXkbNewKeyboardNotify = 0;
constexpr quint8 kXkbMapNotify = 1;

// Carbon bits to X modifiers: command is Super (Mod4), option is Alt (Mod1).
quint16 xModifiers(quint32 carbonModifiers)
{
    quint16 mask = 0;
    if (carbonModifiers & HotKey::CarbonModifier::shift)
        mask |= XCB_MOD_MASK_SHIFT;
    if (carbonModifiers & HotKey::CarbonModifier::control)
        mask |= XCB_MOD_MASK_CONTROL;
    if (carbonModifiers & HotKey::CarbonModifier::option)
        mask |= XCB_MOD_MASK_1;
    if (carbonModifiers & HotKey::CarbonModifier::command)
        mask |= XCB_MOD_MASK_4;
    return mask;
}

struct KeySymbols
{
    explicit KeySymbols(xcb_connection_t* connection) : symbols(xcb_key_symbols_alloc(connection))
    {}
    ~KeySymbols()
    {
        if (symbols != nullptr)
            xcb_key_symbols_free(symbols);
    }
    KeySymbols(const KeySymbols&) = delete;
    KeySymbols& operator=(const KeySymbols&) = delete;

    QList<quint8> keycodes(xcb_keysym_t keysym) const
    {
        QList<quint8> codes;
        if (symbols == nullptr)
            return codes;
        const XcbReply<xcb_keycode_t> list(xcb_key_symbols_get_keycode(symbols, keysym));
        for (const xcb_keycode_t* code = list.get(); code != nullptr && *code != XCB_NO_SYMBOL;
             ++code) {
            if (!codes.contains(*code))
                codes.append(*code);
        }
        return codes;
    }

    xcb_key_symbols_t* symbols;
};

} // namespace

class XcbHotKeyService::Filter final : public QAbstractNativeEventFilter
{
public:
    explicit Filter(XcbHotKeyService& service) : m_service(service) {}
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) override
    {
        if (eventType != "xcb_generic_event_t")
            return false;
        return m_service.handleNativeEvent(message);
    }

private:
    XcbHotKeyService& m_service;
};

XcbHotKeyService::XcbHotKeyService()
    : m_filter(std::make_unique<Filter>(*this)), m_releaseTimer(std::make_unique<QTimer>()),
      m_regrabTimer(std::make_unique<QTimer>())
{
    m_releaseTimer->setSingleShot(true);
    m_releaseTimer->setInterval(0);
    QObject::connect(m_releaseTimer.get(), &QTimer::timeout, [this] { flushPendingRelease(); });
    m_regrabTimer->setSingleShot(true);
    m_regrabTimer->setInterval(0);
    QObject::connect(m_regrabTimer.get(), &QTimer::timeout, [this] { regrabAll(); });

    // Use X11 only when Qt itself runs on it, so that other sessions degrade quietly.
    xcb_connection_t* connection = X11Connection::connection();
    if (connection == nullptr)
        return;
    const xcb_window_t root = X11Connection::rootWindow(connection);
    if (root == XCB_NONE)
        return;
    m_connection = connection;
    m_root = root;
    // Qt uses the keyboard extension, and a client that does is told of layout changes through
    // its events rather than the core MappingNotify.
    static constexpr char kXkbName[] = "XKEYBOARD";
    const auto xkb = xcbReply(xcb_query_extension_reply, connection,
                              xcb_query_extension(connection, sizeof(kXkbName) - 1, kXkbName));
    if (xkb && xkb->present)
        m_xkbFirstEvent = xkb->first_event;
}

XcbHotKeyService::~XcbHotKeyService()
{
    // Hot keys that outlive this service must not reach it.
    if (HotKey::HotKeysController::service() == this)
        HotKey::HotKeysController::setService(nullptr);
    for (const auto& [reference, grab] : m_grabs)
        ungrab(grab);
    m_grabs.clear();
    updateFilter();
}

QList<quint16> XcbHotKeyService::lockVariants() const
{
    // The modifier that Num_Lock sets depends on the keyboard's modifier map (usually Mod2).
    quint16 numLock = 0;
    const KeySymbols symbols(m_connection);
    const QList<quint8> numLockCodes = symbols.keycodes(XKB_KEY_Num_Lock);
    const auto reply = xcbReply(xcb_get_modifier_mapping_reply, m_connection,
                                xcb_get_modifier_mapping(m_connection));
    if (reply) {
        const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(reply.get());
        const int perModifier = reply->keycodes_per_modifier;
        for (int modifier = 0; modifier < 8 && numLock == 0; ++modifier) {
            for (int i = 0; i < perModifier; ++i) {
                const xcb_keycode_t code = codes[modifier * perModifier + i];
                if (code != 0 && numLockCodes.contains(code)) {
                    numLock = quint16(1u << modifier);
                    break;
                }
            }
        }
    }
    QList<quint16> variants{0, XCB_MOD_MASK_LOCK};
    if (numLock != 0) {
        variants.append(numLock);
        variants.append(quint16(numLock | XCB_MOD_MASK_LOCK));
    }
    return variants;
}

HotKey::HotKeyService::Registration XcbHotKeyService::registerHotKey(quint32 carbonKeyCode,
                                                                     quint32 carbonModifiers,
                                                                     HotKey::HotKeyId id)
{
    if (m_connection == nullptr)
        return Unexpected(noSuchKeyStatus);
    const auto keysym = XcbHotKeyKeysyms::keysym(carbonKeyCode);
    if (!keysym)
        return Unexpected(noSuchKeyStatus);
    Grab grab;
    grab.id = id;
    grab.keysym = *keysym;
    grab.modifiers = xModifiers(carbonModifiers);
    grab.keycodes = KeySymbols(m_connection).keycodes(*keysym);
    if (grab.keycodes.isEmpty())
        return Unexpected(noSuchKeyStatus);

    // This client holds each key and modifier set once.
    for (const auto& [reference, existing] : m_grabs) {
        if (existing.modifiers == grab.modifiers && existing.keycodes == grab.keycodes)
            return Unexpected(HotKey::Status::hotKeyExists);
    }

    struct Pending
    {
        quint8 keycode;
        quint16 modifiers;
        xcb_void_cookie_t cookie;
    };
    QList<Pending> pending;
    grab.lockVariants = lockVariants();
    for (quint8 keycode : grab.keycodes) {
        for (quint16 variant : grab.lockVariants) {
            const quint16 modifiers = grab.modifiers | variant;
            pending.append({keycode, modifiers,
                            xcb_grab_key_checked(m_connection, 1, m_root, modifiers, keycode,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)});
        }
    }
    int status = HotKey::Status::noError;
    QList<Pending> granted;
    for (const Pending& request : pending) {
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(m_connection, request.cookie));
        if (!error) {
            granted.append(request);
            continue;
        }
        status = error->error_code == kBadAccess ? grabTakenStatus : noSuchKeyStatus;
    }
    if (status != HotKey::Status::noError) {
        // Another client holds one of the variants: give back the ones this client got.
        for (const Pending& request : granted)
            xcb_ungrab_key(m_connection, request.keycode, m_root, request.modifiers);
        xcb_flush(m_connection);
        return Unexpected(status);
    }

    const Reference reference = m_nextReference++;
    m_grabs.emplace(reference, std::move(grab));
    updateFilter();
    return reference;
}

void XcbHotKeyService::ungrab(const Grab& grab)
{
    // Qt's connection lives as long as the application object.
    if (m_connection == nullptr || QCoreApplication::instance() == nullptr)
        return;
    for (quint8 keycode : grab.keycodes) {
        for (quint16 variant : grab.lockVariants)
            xcb_ungrab_key(m_connection, keycode, m_root, quint16(grab.modifiers | variant));
    }
    xcb_flush(m_connection);
}

void XcbHotKeyService::unregisterHotKey(Reference reference)
{
    const auto it = m_grabs.find(reference);
    if (it == m_grabs.end())
        return;
    ungrab(it->second);
    m_grabs.erase(it);
    updateFilter();
}

void XcbHotKeyService::installEventHandler(EventHandler handler)
{
    m_handler = std::move(handler);
}

std::optional<QList<QVariantMap>> XcbHotKeyService::symbolicHotKeys()
{
    return XcbHotKeySystemCombos::read();
}

void XcbHotKeyService::updateFilter()
{
    // The filter watches the event stream only while a key is grabbed.
    auto* app = QCoreApplication::instance();
    if (app == nullptr)
        return;
    const bool wanted = !m_grabs.empty();
    if (wanted && !m_filterInstalled)
        app->installNativeEventFilter(m_filter.get());
    else if (!wanted && m_filterInstalled)
        app->removeNativeEventFilter(m_filter.get());
    m_filterInstalled = wanted;
}

bool XcbHotKeyService::handleNativeEvent(void* message)
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if (isKeyboardMappingChange(event)) {
        m_regrabTimer->start();
        return false; // Qt reloads its own keymap from the same event
    }
    // The top bit marks events sent by another client; they count the same.
    const quint8 type = event->response_type & 0x7f;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
        return false;
    const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event);
    const bool pressed = type == XCB_KEY_PRESS;
    // When one of Tessaline's own windows takes the focus while the hot key is held (the HUD
    // it opens), the key's release goes to that window instead of the root. It still ends the
    // press; the window gets the event too.
    const bool fromRoot = key->event == m_root;
    if (!fromRoot && pressed)
        return false;
    const quint16 modifiers = key->state & kRelevantModifiers;

    // A press belongs to the grab of its key and modifiers; a release to the grab of its key
    // that is down, whatever modifiers were let go before it.
    std::optional<Reference> match;
    for (const auto& [reference, grab] : m_grabs) {
        if (grab.keycodes.contains(key->detail) &&
            (pressed ? grab.modifiers == modifiers : grab.isDown)) {
            match = reference;
            break;
        }
    }
    if (!match)
        return false;

    if (!pressed) {
        flushPendingRelease();
        if (m_grabs.count(*match) != 0) {
            m_pendingRelease = PendingRelease{*match, key->time};
            m_releaseTimer->start();
        }
        return fromRoot;
    }
    if (m_pendingRelease && m_pendingRelease->reference == *match &&
        m_pendingRelease->time == key->time) {
        // A key repeat: neither its release nor its press counts.
        m_pendingRelease.reset();
        m_releaseTimer->stop();
        return true;
    }
    flushPendingRelease();
    const auto it = m_grabs.find(*match);
    // With detectable key repeat a held key sends presses only: one press until the release.
    if (it == m_grabs.end() || it->second.isDown)
        return true;
    it->second.isDown = true;
    // A repeat whose release was already delivered, when the pair came in separate batches.
    if (it->second.lastReleaseTime == key->time)
        return true;
    deliver(it->second, HotKey::HotKeyEvent::pressed);
    return true;
}

bool XcbHotKeyService::isKeyboardMappingChange(const void* message) const
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const quint8 type = event->response_type & 0x7f;
    if (type == XCB_MAPPING_NOTIFY) {
        const auto* mapping = static_cast<const xcb_mapping_notify_event_t*>(message);
        return mapping->request == XCB_MAPPING_KEYBOARD || mapping->request == XCB_MAPPING_MODIFIER;
    }
    if (m_xkbFirstEvent == 0 || type != m_xkbFirstEvent)
        return false;
    // The second byte of a keyboard-extension event names its kind.
    const quint8 xkbType = event->pad0;
    return xkbType == kXkbNewKeyboardNotify || xkbType == kXkbMapNotify;
}

// A new layout or modifier map may put a grabbed key's symbol on other keycodes (or move
// NumLock to another modifier); the old grabs would then answer the wrong key. Every grab is
// given back and taken again for the keycodes the symbol has now.
void XcbHotKeyService::regrabAll()
{
    if (m_connection == nullptr)
        return;
    const QList<quint16> variants = lockVariants();
    const KeySymbols symbols(m_connection);
    for (auto& [reference, grab] : m_grabs) {
        const QList<quint8> keycodes = symbols.keycodes(grab.keysym);
        if (keycodes == grab.keycodes && variants == grab.lockVariants)
            continue;
        ungrab(grab);
        grab.keycodes = keycodes;
        grab.lockVariants = variants;
        grab.isDown = false;
        QList<xcb_void_cookie_t> cookies;
        for (quint8 keycode : grab.keycodes) {
            for (quint16 variant : grab.lockVariants) {
                cookies.append(xcb_grab_key_checked(m_connection, 1, m_root,
                                                    quint16(grab.modifiers | variant), keycode,
                                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
            }
        }
        // A variant another client took meanwhile stays theirs; its error is taken here so that
        // it never reaches Qt's log.
        for (const xcb_void_cookie_t cookie : cookies)
            std::free(xcb_request_check(m_connection, cookie));
    }
    xcb_flush(m_connection);
}

void XcbHotKeyService::flushPendingRelease()
{
    if (!m_pendingRelease)
        return;
    const Reference reference = m_pendingRelease->reference;
    const quint32 time = m_pendingRelease->time;
    m_pendingRelease.reset();
    m_releaseTimer->stop();
    const auto it = m_grabs.find(reference);
    if (it == m_grabs.end())
        return;
    it->second.isDown = false;
    it->second.lastReleaseTime = time;
    deliver(it->second, HotKey::HotKeyEvent::released);
}

void XcbHotKeyService::deliver(const Grab& grab, quint32 kind)
{
    if (!m_handler)
        return;
    const HotKey::HotKeyEvent event{kind, grab.id, HotKey::Status::noError};
    // Copy the handler: it may unregister hot keys and so change the grabs.
    const EventHandler handler = m_handler;
    handler(&event);
}

} // namespace Tessaline
