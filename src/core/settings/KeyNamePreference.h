// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ChordText.h"

#include <QObject>
#include <QString>

namespace Tessaline {

class DefaultsStore;

/// How the user wants chords drawn: in words ("Ctrl+Shift+S", the default, as Linux desktops
/// write them) or in the vault's symbols ("⌃ ⇧ S"). Kept in the user defaults under
/// "KeyNames.style" as "words" or "symbols"; only drawing follows it, the vault keeps symbols.
class KeyNamePreference : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool words READ usesWords WRITE setUsesWords NOTIFY styleChanged)

public:
    static constexpr auto defaultsKey = "KeyNames.style";

    /// Reads the choice from `defaults`; a missing or unknown value means words.
    explicit KeyNamePreference(DefaultsStore& defaults, QObject* parent = nullptr);

    /// The choice stored in `defaults`, without keeping anything.
    static KeyNameStyle read(const DefaultsStore& defaults);

    KeyNameStyle style() const { return m_style; }
    /// Stores the choice and writes it to the defaults.
    void setStyle(KeyNameStyle style);

    bool usesWords() const { return m_style == KeyNameStyle::Words; }
    void setUsesWords(bool words) { setStyle(words ? KeyNameStyle::Words : KeyNameStyle::Symbols); }

    /// `chord`, stored in symbols, as the user wants it drawn.
    QString draw(const QString& chord) const { return ChordText::display(chord, m_style); }

Q_SIGNALS:
    void styleChanged();

private:
    DefaultsStore& m_defaults;
    KeyNameStyle m_style;
};

} // namespace Tessaline
