// SPDX-License-Identifier: MIT
#include "platform/xkb/StrokeKeysyms.h"

#include <xkbcommon/xkbcommon.h>

#include <utility>

namespace Tessaline {

namespace {

// The left-hand modifier keys a chord holds down, in the order they are pressed.
constexpr std::pair<int, quint32> kModifierKeys[] = {
    {KeyStroke::Control, XKB_KEY_Control_L},
    {KeyStroke::Alt, XKB_KEY_Alt_L},
    {KeyStroke::Shift, XKB_KEY_Shift_L},
    {KeyStroke::Super, XKB_KEY_Super_L},
};

static_assert(StrokeKeysyms::controlL == XKB_KEY_Control_L);
static_assert(StrokeKeysyms::lowerV == XKB_KEY_v);
static_assert(StrokeKeysyms::noSymbol == XKB_KEY_NoSymbol);

} // namespace

quint32 StrokeKeysyms::keysymOf(const QString& key)
{
    const QList<uint> codePoints = key.toUcs4();
    if (codePoints.size() == 1)
        return xkb_keysym_to_lower(xkb_utf32_to_keysym(codePoints.first()));
    if (key.isEmpty())
        return noSymbol;
    const QByteArray name = key.toUtf8();
    const xkb_keysym_t keysym = xkb_keysym_from_name(name.constData(), XKB_KEYSYM_NO_FLAGS);
    if (keysym != XKB_KEY_NoSymbol)
        return keysym;
    return xkb_keysym_from_name(name.constData(), XKB_KEYSYM_CASE_INSENSITIVE);
}

QList<quint32> StrokeKeysyms::modifierKeysyms(int modifiers)
{
    QList<quint32> keysyms;
    for (const auto& [modifier, keysym] : kModifierKeys) {
        if (modifiers & modifier)
            keysyms.append(keysym);
    }
    return keysyms;
}

} // namespace Tessaline
