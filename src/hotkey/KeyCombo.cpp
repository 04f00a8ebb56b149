// SPDX-License-Identifier: MIT
#include "hotkey/KeyCombo.h"

#include "common/VariantTypes.h"
#include "hotkey/HotKeysController.h"

#include <QMetaType>

namespace HotKey {
namespace {

constexpr auto kKeyCodeKey = "keyCode";
constexpr auto kModifiersKey = "modifiers";

bool isNumber(const QVariant& value)
{
    return Tessaline::VariantTypes::holdsInteger(value) || value.typeId() == QMetaType::Bool ||
           value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float;
}

quint32 checkedUInt32(const QVariant& value, const char* what)
{
    bool fits = false;
    if (value.typeId() == QMetaType::ULongLong || value.typeId() == QMetaType::ULong) {
        fits = value.toULongLong() <= 0xFFFFFFFFull;
    } else {
        const qint64 number = value.toLongLong();
        fits = number >= 0 && number <= 0xFFFFFFFFll;
    }
    if (!fits)
        qFatal("KeyCombo: %s does not fit in 32 bits unsigned", what);
    return static_cast<quint32>(value.toULongLong());
}

constexpr quint32 cmd = CarbonModifier::command;
constexpr quint32 sft = CarbonModifier::shift;
constexpr quint32 opt = CarbonModifier::option;
constexpr quint32 ctl = CarbonModifier::control;

} // namespace

KeyCombo::KeyCombo(Key key, ModifierFlags modifiers)
    : carbonKeyCode(::HotKey::carbonKeyCode(key)), carbonModifiers(modifiers.carbonFlags())
{}

std::optional<KeyCombo> KeyCombo::fromDictionary(const QVariantMap& dictionary)
{
    const QVariant keyCode = dictionary.value(QLatin1String(kKeyCodeKey));
    const QVariant modifiers = dictionary.value(QLatin1String(kModifiersKey));
    if (!Tessaline::VariantTypes::holdsInteger(keyCode) ||
        !Tessaline::VariantTypes::holdsInteger(modifiers))
        return std::nullopt;
    return KeyCombo(checkedUInt32(keyCode, kKeyCodeKey), checkedUInt32(modifiers, kModifiersKey));
}

std::optional<Key> KeyCombo::key() const
{
    return keyFromCarbonKeyCode(carbonKeyCode);
}

void KeyCombo::setKey(std::optional<Key> key)
{
    carbonKeyCode = key ? ::HotKey::carbonKeyCode(*key) : 0;
}

ModifierFlags KeyCombo::modifiers() const
{
    return ModifierFlags::fromCarbonFlags(carbonModifiers);
}

void KeyCombo::setModifiers(ModifierFlags modifiers)
{
    carbonModifiers = modifiers.carbonFlags();
}

QVariantMap KeyCombo::dictionary() const
{
    return {{QLatin1String(kKeyCodeKey), QVariant::fromValue<qint64>(carbonKeyCode)},
            {QLatin1String(kModifiersKey), QVariant::fromValue<qint64>(carbonModifiers)}};
}

QString KeyCombo::description() const
{
    QString text = modifiers().description();
    if (const auto named = key())
        text += keyDescription(*named);
    return text;
}

std::optional<QString> KeyCombo::carbonKeyCodeToString(quint32)
{
    return std::nullopt;
}

QList<KeyCombo> KeyCombo::systemKeyCombos()
{
    QList<KeyCombo> combos;
    for (const NamedKeyCombo& named : namedSystemKeyCombos())
        combos.append(named.combo);
    return combos;
}

QList<NamedKeyCombo> KeyCombo::namedSystemKeyCombos()
{
    HotKeyService* service = HotKeysController::service();
    if (service == nullptr)
        return {};
    const auto entries = service->symbolicHotKeys();
    if (!entries)
        return {};
    return namedKeyCombos(*entries);
}

QList<NamedKeyCombo> KeyCombo::namedKeyCombos(const QList<QVariantMap>& entries)
{
    QList<NamedKeyCombo> combos;
    for (const QVariantMap& entry : entries) {
        const QVariant enabled = entry.value(QLatin1String(HotKeyService::enabledKey));
        const QVariant code = entry.value(QLatin1String(HotKeyService::keyCodeKey));
        const QVariant modifiers = entry.value(QLatin1String(HotKeyService::modifiersKey));
        if (!isNumber(enabled) || !enabled.toBool() || !isNumber(code) || !isNumber(modifiers))
            continue;
        combos.append({KeyCombo(static_cast<quint32>(code.toLongLong()),
                                static_cast<quint32>(modifiers.toLongLong())),
                       entry.value(QLatin1String(HotKeyService::nameKey)).toString()});
    }
    return combos;
}

QList<KeyCombo> KeyCombo::standardKeyCombos()
{
    auto combo = [](quint32 modifiers, Key key) {
        return KeyCombo(::HotKey::carbonKeyCode(key), modifiers);
    };
    return {
        combo(cmd, Key::comma),
        combo(cmd, Key::h),
        combo(opt | cmd, Key::h),
        combo(cmd, Key::q),
        combo(cmd, Key::n),
        combo(cmd, Key::o),
        combo(cmd, Key::w),
        combo(cmd, Key::s),
        combo(sft | cmd, Key::s),
        combo(cmd, Key::r),
        combo(sft | cmd, Key::p),
        combo(cmd, Key::p),
        combo(cmd, Key::z),
        combo(sft | cmd, Key::z),
        combo(cmd, Key::x),
        combo(cmd, Key::c),
        combo(cmd, Key::v),
        combo(opt | sft | cmd, Key::v),
        combo(cmd, Key::a),
        combo(cmd, Key::f),
        combo(opt | cmd, Key::f),
        combo(cmd, Key::g),
        combo(sft | cmd, Key::g),
        combo(cmd, Key::e),
        combo(cmd, Key::j),
        combo(sft | cmd, Key::semicolon),
        combo(cmd, Key::semicolon),
        combo(cmd, Key::t),
        combo(cmd, Key::b),
        combo(cmd, Key::i),
        combo(cmd, Key::u),
        combo(sft | cmd, Key::equal),
        combo(cmd, Key::minus),
        combo(sft | cmd, Key::c),
        combo(opt | cmd, Key::c),
        combo(opt | cmd, Key::v),
        combo(sft | cmd, Key::leftBracket),
        combo(sft | cmd, Key::backslash),
        combo(sft | cmd, Key::rightBracket),
        combo(ctl | cmd, Key::c),
        combo(ctl | cmd, Key::v),
        combo(opt | cmd, Key::t),
        combo(ctl | cmd, Key::s),
        combo(ctl | cmd, Key::f),
        combo(cmd, Key::m),
        combo(sft | cmd, Key::slash),
    };
}

QList<KeyCombo> KeyCombo::mainMenuKeyCombos()
{
    HotKeyService* service = HotKeysController::service();
    if (service == nullptr)
        return {};
    const auto menu = service->mainMenu();
    if (!menu)
        return {};
    return keyCombos(*menu);
}

QList<KeyCombo> KeyCombo::keyCombos(const Menu& menu)
{
    QList<KeyCombo> combos;
    for (const Menu::Item& item : menu.items) {
        if (const auto key = keyFromString(item.keyEquivalent))
            combos.append(KeyCombo(::HotKey::carbonKeyCode(*key),
                                   item.keyEquivalentModifierMask.carbonFlags()));
        if (item.submenu)
            combos.append(keyCombos(*item.submenu));
    }
    return combos;
}

} // namespace HotKey
