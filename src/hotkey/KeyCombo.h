// SPDX-License-Identifier: MIT
#pragma once

#include "hotkey/Key.h"
#include "hotkey/Menu.h"
#include "hotkey/ModifierFlags.h"

#include <QList>
#include <QVariantMap>

#include <optional>

namespace HotKey {

struct NamedKeyCombo;

/// A key code and modifier bits, both in Carbon's form.
struct KeyCombo
{
    quint32 carbonKeyCode = 0;
    quint32 carbonModifiers = 0;

    constexpr KeyCombo(quint32 keyCode, quint32 modifiers)
        : carbonKeyCode(keyCode), carbonModifiers(modifiers)
    {}
    /// The key's code with the flags converted to Carbon bits.
    KeyCombo(Key key, ModifierFlags modifiers);

    /// A combo from a dictionary holding "keyCode" and "modifiers" as integers; none when either
    /// is missing or not an integer. A value outside 32 bits unsigned is a fatal error.
    static std::optional<KeyCombo> fromDictionary(const QVariantMap& dictionary);

    /// The key the code names, if any.
    std::optional<Key> key() const;
    /// Stores the key's code, or 0 for none.
    void setKey(std::optional<Key> key);

    ModifierFlags modifiers() const;
    void setModifiers(ModifierFlags modifiers);

    bool isValid() const { return true; }

    /// {"keyCode": code, "modifiers": Carbon bits}, both integers.
    QVariantMap dictionary() const;

    /// The modifiers' description followed by the key's (left out when the code names no key).
    QString description() const;

    /// There is no name for a bare code; always none.
    static std::optional<QString> carbonKeyCodeToString(quint32 carbonKeyCode);

    /// The combinations the desktop itself already uses, as its hot-key service reports them.
    static QList<KeyCombo> systemKeyCombos();
    /// The same combinations, each with the setting that binds it (empty when unnamed).
    static QList<NamedKeyCombo> namedSystemKeyCombos();
    /// The enabled entries of `entries`, in the form the hot-key service reports them, in order.
    static QList<NamedKeyCombo> namedKeyCombos(const QList<QVariantMap>& entries);
    /// The 46 combinations that standard menus conventionally use.
    static QList<KeyCombo> standardKeyCombos();
    /// The combinations of the application's main menu; empty when it has none.
    static QList<KeyCombo> mainMenuKeyCombos();
    /// The combinations of a menu's items, each followed by those of its submenu.
    static QList<KeyCombo> keyCombos(const Menu& menu);

    constexpr bool operator==(const KeyCombo&) const = default;
};

/// A combination with the name of the setting that binds it.
struct NamedKeyCombo
{
    KeyCombo combo;
    QString name;

    bool operator==(const NamedKeyCombo&) const = default;
};

} // namespace HotKey
