// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace Tessaline {

/// A text prepared once for matching many queries against it: its characters' comparison keys
/// (lower-cased, composed) and the case and separator flags of its characters as written.
/// Pure ASCII text keeps only its bytes; text made of simple units (see
/// Graphemes::isSimpleUnit) skips grapheme segmentation. FuzzyMatch gives the same results for a
/// prepared text as for the plain string.
class FuzzyText
{
public:
    enum Flag : quint8
    {
        Separator = 0x1,
        Lowercase = 0x2,
        Uppercase = 0x4,
    };

    /// Keys at or above this value stand for characters of more than one scalar; their
    /// composed text is kept beside them.
    static constexpr char32_t kWideKey = 0x80000000u;

    FuzzyText() = default;
    explicit FuzzyText(const QString& text);

    const QString& text() const { return m_text; }
    /// Number of characters of the text as written.
    qsizetype size() const { return m_size; }
    /// Number of characters of the lower-cased text (the same as size() in practice).
    qsizetype lowerSize() const { return m_lowerSize; }

    /// True when the text is ASCII without carriage returns: one byte per character.
    bool isAscii() const { return m_isAscii; }
    const QByteArray& asciiBytes() const { return m_ascii; }

    /// The comparison key of lower-cased character `index` (< lowerSize()).
    char32_t keyAt(qsizetype index) const;
    /// The composed text of a wide key (empty for a single-scalar character).
    QString wideKeyAt(qsizetype index) const;
    /// The flags of character `index` as written (< size()).
    quint8 flagsAt(qsizetype index) const;

    /// The key of a single scalar, as used for every single-scalar character.
    static constexpr char32_t asciiKey(unsigned char byte)
    {
        return (byte >= 'A' && byte <= 'Z') ? char32_t(byte + ('a' - 'A')) : char32_t(byte);
    }
    /// The flags of a single-scalar character.
    static quint8 scalarFlags(char32_t scalar);
    /// The flags of an ASCII character: only the separators and the letters have any.
    static constexpr quint8 asciiFlags(unsigned char byte)
    {
        if (byte == ' ' || byte == '/' || byte == '>' || byte == '-' || byte == '_')
            return Separator;
        if (byte >= 'a' && byte <= 'z')
            return Lowercase;
        if (byte >= 'A' && byte <= 'Z')
            return Uppercase;
        return 0;
    }

    /// What matching needs of one UTF-16 unit of a basic-plane character standing alone.
    struct UnitInfo
    {
        char16_t key; ///< the unit lower-cased (valid when `simple`)
        quint8 flags; ///< its flags
        bool simple;  ///< a simple unit whose lower-case form is one simple unit
    };
    /// Looked up in a table filled block by block on first use (main thread only).
    static const UnitInfo& unitInfo(char16_t unit);

    /// Key and, for wide keys, composed text of one lower-cased character.
    static char32_t keyOf(const QString& lowerCharacter, QString* wide);

private:
    QString m_text;
    qsizetype m_size = 0;
    qsizetype m_lowerSize = 0;
    bool m_isAscii = true;
    QByteArray m_ascii;
    QList<char32_t> m_keys;
    QList<quint8> m_flags;
    QStringList m_wide; // empty unless some key is wide; then aligned with m_keys
};

} // namespace Tessaline
