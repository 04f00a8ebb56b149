// SPDX-License-Identifier: MIT
#include "vault/VaultReader.h"

#include <QStringDecoder>

namespace Tessaline {

VaultReader::VaultReader(QByteArrayView json) : m_p(json.begin()), m_end(json.end()) {}

VaultReader::Outcome VaultReader::read(VaultData& out)
{
    const VaultKeyPath path;
    skipSpace();
    if (peek() != '{') {
        if (!skipValue())
            return Outcome::SyntaxError;
        return typeError(path, "expected an object");
    }
    bool sawGlobal = false;
    bool sawApps = false;
    const bool ok = object([&](QByteArrayView key) {
        if (key == "global") {
            sawGlobal = true;
            out.global.clear();
            return itemArray(path.field(QLatin1StringView("global")), out.global);
        }
        if (key == "apps") {
            sawApps = true;
            out.apps.clear();
            return packArray(path.field(QLatin1StringView("apps")), out.apps);
        }
        if (key == "_comment")
            return optionalString(path.field(QLatin1StringView("_comment")), out.comment);
        return skipValue();
    });
    if (!ok)
        return m_outcome;
    skipSpace();
    if (m_p != m_end)
        return Outcome::SyntaxError;
    if (!sawGlobal)
        return typeError(path.field(QLatin1StringView("global")), "required key is missing");
    if (!sawApps)
        return typeError(path.field(QLatin1StringView("apps")), "required key is missing");
    return Outcome::Ok;
}

void VaultReader::skipSpace()
{
    while (m_p < m_end && (*m_p == ' ' || *m_p == '\n' || *m_p == '\r' || *m_p == '\t'))
        ++m_p;
}

bool VaultReader::syntax()
{
    m_outcome = Outcome::SyntaxError;
    return false;
}

VaultReader::Outcome VaultReader::typeError(const VaultKeyPath& path, const char* problem)
{
    m_error = path.problem(problem);
    m_outcome = Outcome::TypeError;
    return m_outcome;
}

bool VaultReader::fail(const VaultKeyPath& path, const char* problem)
{
    typeError(path, problem);
    // The rest of the document is not read; a syntax error there is found by the caller.
    return false;
}

bool VaultReader::literal(const char* word)
{
    for (; *word; ++word, ++m_p) {
        if (m_p >= m_end || *m_p != *word)
            return syntax();
    }
    return true;
}

int VaultReader::hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool VaultReader::appendUtf8(QString& out, const char* from, const char* to, bool ascii)
{
    if (ascii) {
        out += QLatin1StringView(from, to - from);
        return true;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    out += decoder.decode(QByteArrayView(from, to - from));
    return !decoder.hasError() || syntax();
}

// At an opening quote: reads the string.
bool VaultReader::string(QString& out)
{
    ++m_p;
    const char* segment = m_p;
    bool ascii = true;
    while (true) {
        if (m_p >= m_end)
            return syntax();
        const auto c = static_cast<unsigned char>(*m_p);
        if (c == '"') {
            if (out.isEmpty() && ascii) {
                out = QString::fromLatin1(segment, m_p - segment);
            } else if (!appendUtf8(out, segment, m_p, ascii)) {
                return false;
            }
            ++m_p;
            return true;
        }
        if (c < 0x20)
            return syntax();
        if (c >= 0x80)
            ascii = false;
        if (c != '\\') {
            ++m_p;
            continue;
        }
        if (!appendUtf8(out, segment, m_p, ascii))
            return false;
        ascii = true;
        ++m_p;
        if (m_p >= m_end)
            return syntax();
        switch (*m_p++) {
        case '"':
            out += QLatin1Char('"');
            break;
        case '\\':
            out += QLatin1Char('\\');
            break;
        case '/':
            out += QLatin1Char('/');
            break;
        case 'b':
            out += QLatin1Char('\b');
            break;
        case 'f':
            out += QLatin1Char('\f');
            break;
        case 'n':
            out += QLatin1Char('\n');
            break;
        case 'r':
            out += QLatin1Char('\r');
            break;
        case 't':
            out += QLatin1Char('\t');
            break;
        case 'u': {
            if (m_end - m_p < 4)
                return syntax();
            int unit = 0;
            for (int i = 0; i < 4; ++i) {
                const int digit = hexValue(m_p[i]);
                if (digit < 0)
                    return syntax();
                unit = unit * 16 + digit;
            }
            m_p += 4;
            out += QChar(char16_t(unit));
            break;
        }
        default:
            return syntax();
        }
        segment = m_p;
    }
}

// At an opening quote: the key's bytes when it has no escapes (the usual case), else its
// decoded text as UTF-8 in `storage`.
bool VaultReader::key(QByteArrayView& out, QByteArray& storage)
{
    const char* start = m_p + 1;
    const char* q = start;
    // Plain ASCII keys are used as they stand; anything else is decoded (and validated).
    while (q < m_end && *q != '"' && *q != '\\' && static_cast<unsigned char>(*q) >= 0x20 &&
           static_cast<unsigned char>(*q) < 0x80)
        ++q;
    if (q < m_end && *q == '"') {
        out = QByteArrayView(start, q - start);
        m_p = q + 1;
        return true;
    }
    QString decoded;
    if (!string(decoded))
        return false;
    storage = decoded.toUtf8();
    out = storage;
    return true;
}

bool VaultReader::number()
{
    const char* start = m_p;
    if (peek() == '-')
        ++m_p;
    if (peek() == '0') {
        ++m_p;
    } else if (peek() >= '1' && peek() <= '9') {
        while (peek() >= '0' && peek() <= '9')
            ++m_p;
    } else {
        return syntax();
    }
    if (peek() == '.') {
        ++m_p;
        if (!(peek() >= '0' && peek() <= '9'))
            return syntax();
        while (peek() >= '0' && peek() <= '9')
            ++m_p;
    }
    if (peek() == 'e' || peek() == 'E') {
        ++m_p;
        if (peek() == '+' || peek() == '-')
            ++m_p;
        if (!(peek() >= '0' && peek() <= '9'))
            return syntax();
        while (peek() >= '0' && peek() <= '9')
            ++m_p;
    }
    return m_p > start;
}

// Reads an object, handing each key to `onValue`, which must consume the value.
template <typename OnValue>
bool VaultReader::object(OnValue&& onValue)
{
    if (++m_depth > kMaxDepth)
        return syntax();
    ++m_p; // '{'
    skipSpace();
    if (peek() == '}') {
        ++m_p;
        --m_depth;
        return true;
    }
    QByteArray storage;
    while (true) {
        skipSpace();
        if (peek() != '"')
            return syntax();
        QByteArrayView name;
        if (!key(name, storage))
            return false;
        skipSpace();
        if (peek() != ':')
            return syntax();
        ++m_p;
        skipSpace();
        if (!onValue(name))
            return false;
        skipSpace();
        if (peek() == ',') {
            ++m_p;
            continue;
        }
        if (peek() == '}') {
            ++m_p;
            --m_depth;
            return true;
        }
        return syntax();
    }
}

// Reads an array, handing each element's index to `onElement`.
template <typename OnElement>
bool VaultReader::array(OnElement&& onElement)
{
    if (++m_depth > kMaxDepth)
        return syntax();
    ++m_p; // '['
    skipSpace();
    if (peek() == ']') {
        ++m_p;
        --m_depth;
        return true;
    }
    for (qsizetype index = 0;; ++index) {
        skipSpace();
        if (!onElement(index))
            return false;
        skipSpace();
        if (peek() == ',') {
            ++m_p;
            continue;
        }
        if (peek() == ']') {
            ++m_p;
            --m_depth;
            return true;
        }
        return syntax();
    }
}

bool VaultReader::skipValue()
{
    switch (peek()) {
    case '{':
        return object([this](QByteArrayView) { return skipValue(); });
    case '[':
        return array([this](qsizetype) { return skipValue(); });
    case '"': {
        QString ignored;
        return string(ignored);
    }
    case 't':
        return literal("true");
    case 'f':
        return literal("false");
    case 'n':
        return literal("null");
    default:
        return number();
    }
}

// A value that is not of the expected type: checked for syntax, then reported.
bool VaultReader::wrongType(const VaultKeyPath& path, const char* problem)
{
    return skipValue() && fail(path, problem);
}

bool VaultReader::requiredString(const VaultKeyPath& path, QString& out, bool& seen)
{
    seen = true;
    if (peek() != '"')
        return wrongType(path, "expected a string");
    out.clear();
    return string(out);
}

bool VaultReader::optionalString(const VaultKeyPath& path, std::optional<QString>& out)
{
    if (peek() == 'n') {
        out.reset();
        return literal("null");
    }
    if (peek() != '"')
        return wrongType(path, "expected a string or null");
    QString value;
    if (!string(value))
        return false;
    out = std::move(value);
    return true;
}

bool VaultReader::item(const VaultKeyPath& path, ShortcutItem& out)
{
    if (peek() != '{')
        return wrongType(path, "expected an object");
    bool sawName = false;
    bool sawChord = false;
    const bool ok = object([&](QByteArrayView key) {
        if (key == "name")
            return requiredString(path.field(QLatin1StringView("name")), out.name, sawName);
        if (key == "chord")
            return requiredString(path.field(QLatin1StringView("chord")), out.chord, sawChord);
        if (key == "favorite") {
            switch (peek()) {
            case 't':
                out.favorite = true;
                return literal("true");
            case 'f':
                out.favorite = false;
                return literal("false");
            case 'n':
                out.favorite.reset();
                return literal("null");
            default:
                return wrongType(path.field(QLatin1StringView("favorite")),
                                 "expected a boolean or null");
            }
        }
        if (key == "tags") {
            const VaultKeyPath tagsPath = path.field(QLatin1StringView("tags"));
            if (peek() == 'n') {
                out.tags.reset();
                return literal("null");
            }
            if (peek() != '[')
                return wrongType(tagsPath, "expected an array of strings or null");
            QStringList tags;
            const bool read = array([&](qsizetype index) {
                if (peek() != '"')
                    return wrongType(tagsPath.element(index), "expected a string");
                QString tag;
                if (!string(tag))
                    return false;
                tags.append(std::move(tag));
                return true;
            });
            out.tags = std::move(tags);
            return read;
        }
        if (key == "menu")
            return optionalString(path.field(QLatin1StringView("menu")), out.menu);
        if (key == "note")
            return optionalString(path.field(QLatin1StringView("note")), out.note);
        if (key == "source")
            return optionalString(path.field(QLatin1StringView("source")), out.source);
        return skipValue();
    });
    if (!ok)
        return false;
    if (!sawName)
        return fail(path.field(QLatin1StringView("name")), "required key is missing");
    if (!sawChord)
        return fail(path.field(QLatin1StringView("chord")), "required key is missing");
    return true;
}

/// An array of objects, each read by `readElement` into a new element of `out`.
template <typename T, typename ReadElement>
bool VaultReader::objectArray(const VaultKeyPath& path, QList<T>& out, ReadElement readElement)
{
    if (peek() != '[')
        return wrongType(path, "expected an array");
    return array([&](qsizetype index) {
        out.emplaceBack();
        return (this->*readElement)(path.element(index), out.back());
    });
}

bool VaultReader::itemArray(const VaultKeyPath& path, QList<ShortcutItem>& out)
{
    return objectArray(path, out, &VaultReader::item);
}

bool VaultReader::pack(const VaultKeyPath& path, AppShortcutPack& out)
{
    if (peek() != '{')
        return wrongType(path, "expected an object");
    bool sawName = false;
    bool sawShortcuts = false;
    const bool ok = object([&](QByteArrayView key) {
        if (key == "name")
            return requiredString(path.field(QLatin1StringView("name")), out.name, sawName);
        if (key == "bundleID")
            return optionalString(path.field(QLatin1StringView("bundleID")), out.bundleID);
        if (key == "shortcuts") {
            sawShortcuts = true;
            out.shortcuts.clear();
            return itemArray(path.field(QLatin1StringView("shortcuts")), out.shortcuts);
        }
        return skipValue();
    });
    if (!ok)
        return false;
    if (!sawName)
        return fail(path.field(QLatin1StringView("name")), "required key is missing");
    if (!sawShortcuts)
        return fail(path.field(QLatin1StringView("shortcuts")), "required key is missing");
    return true;
}

bool VaultReader::packArray(const VaultKeyPath& path, QList<AppShortcutPack>& out)
{
    return objectArray(path, out, &VaultReader::pack);
}

} // namespace Tessaline
