// SPDX-License-Identifier: MIT
#include "platform/x11/XTestKeyInjector.h"

#include "LogCategories.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbReply.h"
#include "platform/xkb/StrokeKeysyms.h"

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <optional>

namespace Tessaline {

namespace {

struct KeySymbolsDeleter
{
    void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};

xcb_keycode_t firstKeycode(xcb_key_symbols_t* symbols, xcb_keysym_t keysym)
{
    const XcbReply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    return codes ? codes.get()[0] : xcb_keycode_t(XCB_NO_SYMBOL);
}

// One synthetic key event, checked so that a refusal is seen.
bool fakeKey(xcb_connection_t* connection, uint8_t type, xcb_keycode_t keycode)
{
    const xcb_void_cookie_t cookie = xcb_test_fake_input_checked(
        connection, type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, XCB_NONE);
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
    if (error)
        qCWarning(lcX11) << "XTEST refused key event" << type << keycode << "error"
                         << error->error_code;
    return !error;
}

// Releases every modifier key that is down now, so that it does not join the paste chord.
void releaseHeldModifiers(xcb_connection_t* connection)
{
    const XcbReply<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    const XcbReply<xcb_query_keymap_reply_t> keymap(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    if (!mapping || !keymap)
        return;
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(mapping.get());
    const int count = xcb_get_modifier_mapping_keycodes_length(mapping.get());
    for (int i = 0; i < count; ++i) {
        const xcb_keycode_t keycode = keycodes[i];
        if (keycode != XCB_NO_SYMBOL && (keymap->keys[keycode / 8] & (1u << (keycode % 8))))
            fakeKey(connection, XCB_KEY_RELEASE, keycode);
    }
}

// A key of the current layout and whether Shift brings its symbol up.
struct LayoutKey
{
    xcb_keycode_t keycode = 0;
    bool needsShift = false;
};

// Where `keysym` sits on the first group of the current layout. A symbol reached only through
// another group or level is reported missing rather than guessed at.
std::optional<LayoutKey> layoutKey(xcb_key_symbols_t* symbols, xcb_keysym_t keysym)
{
    if (keysym == XKB_KEY_NoSymbol)
        return std::nullopt;
    const XcbReply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    if (!codes)
        return std::nullopt;
    std::optional<LayoutKey> shifted;
    for (const xcb_keycode_t* code = codes.get(); *code != XCB_NO_SYMBOL; ++code) {
        if (xcb_key_symbols_get_keysym(symbols, *code, 0) == keysym)
            return LayoutKey{*code, false};
        if (!shifted && xcb_key_symbols_get_keysym(symbols, *code, 1) == keysym)
            shifted = LayoutKey{*code, true};
    }
    return shifted;
}

} // namespace

KeyPostResult XTestKeyInjector::postKeys(const QList<KeyStroke>& strokes)
{
    xcb_connection_t* connection = X11Connection::connection();
    if (!connection)
        return {KeyPostResult::NotPosted, {}};
    const std::unique_ptr<xcb_key_symbols_t, KeySymbolsDeleter> symbols(
        xcb_key_symbols_alloc(connection));
    if (!symbols)
        return {KeyPostResult::NotPosted, {}};

    // Every key is found before the first one is typed, so that a missing key types nothing.
    struct Planned
    {
        QList<xcb_keycode_t> modifiers;
        xcb_keycode_t key;
    };
    QList<Planned> plan;
    for (const KeyStroke& stroke : strokes) {
        const std::optional<LayoutKey> key =
            layoutKey(symbols.get(), StrokeKeysyms::keysymOf(stroke.key));
        if (!key)
            return {KeyPostResult::KeyNotOnLayout, stroke.key};
        const int modifiers = stroke.modifiers | (key->needsShift ? KeyStroke::Shift : 0);
        Planned planned{{}, key->keycode};
        for (const quint32 keysym : StrokeKeysyms::modifierKeysyms(modifiers)) {
            const xcb_keycode_t code = firstKeycode(symbols.get(), keysym);
            if (code == XCB_NO_SYMBOL)
                return {KeyPostResult::NotPosted, {}};
            planned.modifiers.append(code);
        }
        plan.append(planned);
    }

    releaseHeldModifiers(connection);
    bool posted = true;
    for (const Planned& chord : plan) {
        qsizetype pressed = 0;
        for (; posted && pressed < chord.modifiers.size(); ++pressed)
            posted = fakeKey(connection, XCB_KEY_PRESS, chord.modifiers.at(pressed));
        if (posted) {
            posted = fakeKey(connection, XCB_KEY_PRESS, chord.key);
            if (posted)
                posted = fakeKey(connection, XCB_KEY_RELEASE, chord.key);
        }
        // The modifiers pressed go up again whatever happened above, last one first.
        while (pressed > 0) {
            if (!fakeKey(connection, XCB_KEY_RELEASE, chord.modifiers.at(--pressed)))
                posted = false;
        }
        if (!posted)
            break;
    }
    xcb_flush(connection);
    return posted ? KeyPostResult{} : KeyPostResult{KeyPostResult::NotPosted, {}};
}

bool XTestKeyInjector::postPasteChord()
{
    xcb_connection_t* connection = X11Connection::connection();
    if (!connection)
        return false;

    const std::unique_ptr<xcb_key_symbols_t, KeySymbolsDeleter> symbols(
        xcb_key_symbols_alloc(connection));
    if (!symbols)
        return false;
    const xcb_keycode_t control = firstKeycode(symbols.get(), StrokeKeysyms::controlL);
    const xcb_keycode_t v = firstKeycode(symbols.get(), StrokeKeysyms::lowerV);
    if (control == XCB_NO_SYMBOL || v == XCB_NO_SYMBOL)
        return false;

    releaseHeldModifiers(connection);

    bool posted = fakeKey(connection, XCB_KEY_PRESS, control);
    if (posted) {
        posted = fakeKey(connection, XCB_KEY_PRESS, v);
        if (posted)
            posted = fakeKey(connection, XCB_KEY_RELEASE, v);
    }
    // Control goes up again whatever happened above.
    if (!fakeKey(connection, XCB_KEY_RELEASE, control))
        posted = false;
    xcb_flush(connection);
    return posted;
}

} // namespace Tessaline
