// SPDX-License-Identifier: MIT
#include "platform/wayland/VirtualKeyboardInjector.h"

#include "LogCategories.h"
#include "platform/xkb/StrokeKeysyms.h"

#include <QElapsedTimer>

#include <cstring>
#include <optional>
#include <sys/mman.h>
#include <unistd.h>

#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

namespace Tessaline {

// The virtual-keyboard protocol (zwp_virtual_keyboard_manager_v1 and zwp_virtual_keyboard_v1,
// version 1), described for libwayland from the protocol's documentation: each request's
// name, argument signature and the interfaces of its object arguments, in the protocol's
// order. Neither interface has events.
namespace virtual_keyboard_protocol {

extern const wl_interface keyboardInterface;

const wl_interface* noTypes[] = {nullptr, nullptr, nullptr, nullptr};
const wl_interface* createTypes[] = {&wl_seat_interface, &keyboardInterface};

const wl_message keyboardRequests[] = {
    {"keymap", "uhu", noTypes},
    {"key", "uuu", noTypes},
    {"modifiers", "uuuu", noTypes},
    {"destroy", "", noTypes},
};
const wl_message managerRequests[] = {{"create_virtual_keyboard", "on", createTypes}};

const wl_interface keyboardInterface = {"zwp_virtual_keyboard_v1", 1, 4,
                                        keyboardRequests,          0, nullptr};
const wl_interface managerInterface = {
    "zwp_virtual_keyboard_manager_v1", 1, 1, managerRequests, 0, nullptr};

constexpr uint32_t kCreateRequest = 0;
constexpr uint32_t kKeymapRequest = 0;
constexpr uint32_t kKeyRequest = 1;
constexpr uint32_t kModifiersRequest = 2;
constexpr uint32_t kDestroyRequest = 3;
// wl_keyboard's keymap format and key states.
constexpr uint32_t kXkbV1Format = 1;
constexpr uint32_t kReleased = 0;
constexpr uint32_t kPressed = 1;
// Linux input key codes are XKB's minus 8.
constexpr uint32_t kEvdevOffset = 8;

} // namespace virtual_keyboard_protocol

namespace vk = virtual_keyboard_protocol;

namespace {

// A key of the virtual keyboard's keymap and whether Shift brings its symbol up.
struct MappedKey
{
    xkb_keycode_t keycode = XKB_KEYCODE_INVALID;
    bool needsShift = false;
};

// Where `keysym` sits on the first layout of `keymap`: its first level, else its second
// (Shift). Other layouts and levels are not guessed at.
std::optional<MappedKey> mappedKey(xkb_keymap* keymap, xkb_keysym_t keysym)
{
    if (keysym == XKB_KEY_NoSymbol)
        return std::nullopt;
    std::optional<MappedKey> shifted;
    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap);
         code <= xkb_keymap_max_keycode(keymap); ++code) {
        for (xkb_level_index_t level = 0; level < 2; ++level) {
            const xkb_keysym_t* syms = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(keymap, code, 0, level, &syms);
            if (count == 1 && syms[0] == keysym) {
                if (level == 0)
                    return MappedKey{code, false};
                if (!shifted)
                    shifted = MappedKey{code, true};
            }
        }
    }
    return shifted;
}

} // namespace

struct VirtualKeyboardInjector::Keyboard
{
    wl_display* display = nullptr;
    wl_registry* registry = nullptr;
    wl_proxy* manager = nullptr;
    wl_seat* seat = nullptr;
    wl_proxy* keyboard = nullptr;
    xkb_context* context = nullptr;
    xkb_keymap* keymap = nullptr;
    xkb_state* state = nullptr;
    QElapsedTimer clock;

    ~Keyboard()
    {
        if (keyboard)
            wl_proxy_marshal_flags(keyboard, vk::kDestroyRequest, nullptr,
                                   wl_proxy_get_version(keyboard), WL_MARSHAL_FLAG_DESTROY);
        if (manager)
            wl_proxy_destroy(manager);
        if (seat)
            wl_seat_destroy(seat);
        if (registry)
            wl_registry_destroy(registry);
        if (display) {
            wl_display_flush(display);
            wl_display_disconnect(display);
        }
        xkb_state_unref(state);
        xkb_keymap_unref(keymap);
        xkb_context_unref(context);
    }

    bool alive() const { return display && wl_display_get_error(display) == 0; }

    // Sends the keymap the keys are typed on, through a sealed-off memory file.
    bool sendKeymap()
    {
        char* text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
        if (!text)
            return false;
        const size_t size = std::strlen(text) + 1;
        const int fd = memfd_create("tessaline-keymap", MFD_CLOEXEC);
        bool written = fd >= 0;
        for (size_t done = 0; written && done < size;) {
            const ssize_t n = ::write(fd, text + done, size - done);
            written = n > 0;
            done += written ? size_t(n) : 0;
        }
        std::free(text);
        if (written)
            wl_proxy_marshal_flags(keyboard, vk::kKeymapRequest, nullptr,
                                   wl_proxy_get_version(keyboard), 0, vk::kXkbV1Format, fd,
                                   uint32_t(size));
        if (fd >= 0)
            ::close(fd);
        return written;
    }

    void key(xkb_keycode_t keycode, bool down)
    {
        wl_proxy_marshal_flags(keyboard, vk::kKeyRequest, nullptr, wl_proxy_get_version(keyboard),
                               0, uint32_t(clock.elapsed()), keycode - vk::kEvdevOffset,
                               down ? vk::kPressed : vk::kReleased);
        const auto changed = xkb_state_update_key(state, keycode, down ? XKB_KEY_DOWN : XKB_KEY_UP);
        if (changed & (XKB_STATE_MODS_DEPRESSED | XKB_STATE_MODS_LATCHED | XKB_STATE_MODS_LOCKED |
                       XKB_STATE_LAYOUT_EFFECTIVE)) {
            wl_proxy_marshal_flags(keyboard, vk::kModifiersRequest, nullptr,
                                   wl_proxy_get_version(keyboard), 0,
                                   xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
                                   xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
                                   xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
                                   xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE));
        }
    }
};

std::unique_ptr<VirtualKeyboardInjector> VirtualKeyboardInjector::create()
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"))
        return nullptr;
    auto keyboard = std::make_unique<Keyboard>();
    keyboard->display = wl_display_connect(nullptr);
    if (!keyboard->display)
        return nullptr;

    static const wl_registry_listener registryListener = {
        [](void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t) {
            auto* keyboard = static_cast<Keyboard*>(data);
            if (std::strcmp(interface, vk::managerInterface.name) == 0 && !keyboard->manager)
                keyboard->manager = static_cast<wl_proxy*>(
                    wl_registry_bind(registry, name, &vk::managerInterface, 1));
            else if (std::strcmp(interface, wl_seat_interface.name) == 0 && !keyboard->seat)
                keyboard->seat =
                    static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        },
        [](void*, wl_registry*, uint32_t) {},
    };
    keyboard->registry = wl_display_get_registry(keyboard->display);
    wl_registry_add_listener(keyboard->registry, &registryListener, keyboard.get());
    if (wl_display_roundtrip(keyboard->display) < 0 || !keyboard->manager || !keyboard->seat) {
        qCInfo(lcWayland) << "the compositor offers no virtual keyboard";
        return nullptr;
    }

    keyboard->context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    keyboard->keymap = keyboard->context ? xkb_keymap_new_from_names(keyboard->context, nullptr,
                                                                     XKB_KEYMAP_COMPILE_NO_FLAGS)
                                         : nullptr;
    keyboard->state = keyboard->keymap ? xkb_state_new(keyboard->keymap) : nullptr;
    if (!keyboard->state) {
        qCWarning(lcWayland) << "no keymap could be compiled for the virtual keyboard";
        return nullptr;
    }
    keyboard->keyboard = static_cast<wl_proxy*>(
        wl_proxy_marshal_flags(keyboard->manager, vk::kCreateRequest, &vk::keyboardInterface, 1, 0,
                               keyboard->seat, nullptr));
    // A compositor that does not let this client type ends the connection with an error,
    // which the round trip brings back.
    if (!keyboard->keyboard || !keyboard->sendKeymap() ||
        wl_display_roundtrip(keyboard->display) < 0) {
        qCInfo(lcWayland) << "the compositor refused a virtual keyboard";
        return nullptr;
    }
    keyboard->clock.start();
    return std::unique_ptr<VirtualKeyboardInjector>(
        new VirtualKeyboardInjector(std::move(keyboard)));
}

VirtualKeyboardInjector::VirtualKeyboardInjector(std::unique_ptr<Keyboard> keyboard)
    : m_keyboard(std::move(keyboard))
{}

VirtualKeyboardInjector::~VirtualKeyboardInjector() = default;

bool VirtualKeyboardInjector::postPasteChord()
{
    return postKeys({KeyStroke{KeyStroke::Control, QStringLiteral("v")}}).status ==
           KeyPostResult::Posted;
}

KeyPostResult VirtualKeyboardInjector::postKeys(const QList<KeyStroke>& strokes)
{
    if (!m_keyboard->alive())
        return KeyPostResult{KeyPostResult::NotPosted, {}};

    // Every key is looked up before the first one is typed: all or nothing.
    struct Typed
    {
        QList<xkb_keycode_t> modifiers;
        xkb_keycode_t key = XKB_KEYCODE_INVALID;
    };
    QList<Typed> plan;
    for (const KeyStroke& stroke : strokes) {
        const std::optional<MappedKey> key =
            mappedKey(m_keyboard->keymap, StrokeKeysyms::keysymOf(stroke.key));
        if (!key)
            return KeyPostResult{KeyPostResult::KeyNotOnLayout, stroke.key};
        int modifiers = stroke.modifiers | (key->needsShift ? KeyStroke::Shift : 0);
        Typed typed;
        typed.key = key->keycode;
        for (quint32 keysym : StrokeKeysyms::modifierKeysyms(modifiers)) {
            const std::optional<MappedKey> modifier = mappedKey(m_keyboard->keymap, keysym);
            if (!modifier)
                return KeyPostResult{KeyPostResult::KeyNotOnLayout, stroke.key};
            typed.modifiers.append(modifier->keycode);
        }
        plan.append(typed);
    }

    for (const Typed& typed : std::as_const(plan)) {
        for (xkb_keycode_t modifier : typed.modifiers)
            m_keyboard->key(modifier, true);
        m_keyboard->key(typed.key, true);
        m_keyboard->key(typed.key, false);
        for (auto it = typed.modifiers.crbegin(); it != typed.modifiers.crend(); ++it)
            m_keyboard->key(*it, false);
    }
    // The round trip makes sure the compositor has the keys before the caller goes on (a paste
    // restores the clipboard later) and brings back a refusal.
    if (wl_display_roundtrip(m_keyboard->display) < 0) {
        qCWarning(lcWayland) << "the compositor took the virtual keyboard away";
        return KeyPostResult{KeyPostResult::NotPosted, {}};
    }
    return KeyPostResult{};
}

} // namespace Tessaline
