// SPDX-License-Identifier: MIT
#include "vault/VaultCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QStringDecoder>
#include <QStringEncoder>

#include <string>

namespace Tessaline::VaultCodec {

namespace {

// ---- Reading ---------------------------------------------------------------------------------

// A key path kept on the stack while reading; it becomes text only when an error is reported,
// so a large vault reads without building a path string per item.
struct Path
{
    const Path* parent = nullptr;
    QLatin1StringView key;
    qsizetype index = -1;

    Path field(QLatin1StringView name) const { return Path{this, name, -1}; }
    Path element(qsizetype i) const { return Path{this, {}, i}; }

    QString toString() const
    {
        QString text = parent ? parent->toString() : QString();
        if (index >= 0)
            return text + QLatin1Char('[') + QString::number(index) + QLatin1Char(']');
        if (!text.isEmpty())
            text += QLatin1Char('.');
        return text + key;
    }
};

class Reader
{
public:
    QString error;

    bool fail(const Path& path, const char* problem)
    {
        const QString where = path.toString();
        error = (where.isEmpty() ? QStringLiteral("the document") : where) + QStringLiteral(": ") +
                QLatin1StringView(problem);
        return false;
    }

    bool requiredString(const QJsonObject& object, const Path& path, QLatin1StringView key,
                        QString& out)
    {
        const QJsonValue value = object.value(key);
        if (value.isUndefined())
            return fail(path.field(key), "required key is missing");
        if (!value.isString())
            return fail(path.field(key), "expected a string");
        out = value.toString();
        return true;
    }

    bool optionalString(const QJsonObject& object, const Path& path, QLatin1StringView key,
                        std::optional<QString>& out)
    {
        const QJsonValue value = object.value(key);
        if (value.isUndefined() || value.isNull())
            return true;
        if (!value.isString())
            return fail(path.field(key), "expected a string or null");
        out = value.toString();
        return true;
    }

    bool requiredArray(const QJsonObject& object, const Path& path, QLatin1StringView key,
                       QJsonArray& out)
    {
        const QJsonValue value = object.value(key);
        if (value.isUndefined())
            return fail(path.field(key), "required key is missing");
        if (!value.isArray())
            return fail(path.field(key), "expected an array");
        out = value.toArray();
        return true;
    }

    bool item(const QJsonValue& value, const Path& path, ShortcutItem& out)
    {
        if (!value.isObject())
            return fail(path, "expected an object");
        const QJsonObject object = value.toObject();
        if (!requiredString(object, path, QLatin1StringView("name"), out.name) ||
            !requiredString(object, path, QLatin1StringView("chord"), out.chord))
            return false;

        const QJsonValue favorite = object.value(QLatin1StringView("favorite"));
        if (favorite.isBool())
            out.favorite = favorite.toBool();
        else if (!favorite.isUndefined() && !favorite.isNull())
            return fail(path.field(QLatin1StringView("favorite")), "expected a boolean or null");

        const QJsonValue tags = object.value(QLatin1StringView("tags"));
        if (tags.isArray()) {
            const Path tagsPath = path.field(QLatin1StringView("tags"));
            const QJsonArray array = tags.toArray();
            QStringList list;
            list.reserve(array.size());
            for (qsizetype i = 0; i < array.size(); ++i) {
                const QJsonValue tag = array.at(i);
                if (!tag.isString())
                    return fail(tagsPath.element(i), "expected a string");
                list.append(tag.toString());
            }
            out.tags = std::move(list);
        } else if (!tags.isUndefined() && !tags.isNull()) {
            return fail(path.field(QLatin1StringView("tags")),
                        "expected an array of strings or null");
        }

        return optionalString(object, path, QLatin1StringView("menu"), out.menu) &&
               optionalString(object, path, QLatin1StringView("note"), out.note) &&
               optionalString(object, path, QLatin1StringView("source"), out.source);
    }

    bool items(const QJsonArray& array, const Path& path, QList<ShortcutItem>& out)
    {
        out.reserve(array.size());
        for (qsizetype i = 0; i < array.size(); ++i) {
            ShortcutItem parsed;
            if (!item(array.at(i), path.element(i), parsed))
                return false;
            out.append(std::move(parsed));
        }
        return true;
    }

    bool pack(const QJsonValue& value, const Path& path, AppShortcutPack& out)
    {
        if (!value.isObject())
            return fail(path, "expected an object");
        const QJsonObject object = value.toObject();
        QJsonArray shortcuts;
        return requiredString(object, path, QLatin1StringView("name"), out.name) &&
               optionalString(object, path, QLatin1StringView("bundleID"), out.bundleID) &&
               requiredArray(object, path, QLatin1StringView("shortcuts"), shortcuts) &&
               items(shortcuts, path.field(QLatin1StringView("shortcuts")), out.shortcuts);
    }

    bool root(const QJsonDocument& document, VaultData& out)
    {
        const Path path;
        if (!document.isObject())
            return fail(path, "expected an object");
        const QJsonObject object = document.object();
        QJsonArray global;
        QJsonArray apps;
        if (!optionalString(object, path, QLatin1StringView("_comment"), out.comment) ||
            !requiredArray(object, path, QLatin1StringView("global"), global) ||
            !requiredArray(object, path, QLatin1StringView("apps"), apps) ||
            !items(global, path.field(QLatin1StringView("global")), out.global))
            return false;
        const Path appsPath = path.field(QLatin1StringView("apps"));
        out.apps.reserve(apps.size());
        for (qsizetype i = 0; i < apps.size(); ++i) {
            AppShortcutPack parsed;
            if (!pack(apps.at(i), appsPath.element(i), parsed))
                return false;
            out.apps.append(std::move(parsed));
        }
        return true;
    }
};

// ---- Fast reading --------------------------------------------------------------------------

// Reads a vault document straight from its bytes into the records, without building a JSON
// tree first: large vaults load several times faster. It reports the same key-path errors as
// Reader. On anything it does not accept as JSON it gives up and lets QJsonDocument describe
// the syntax error, so that messages and byte offsets stay those of one parser.
class FastReader
{
public:
    enum class Outcome
    {
        Ok,
        TypeError,
        SyntaxError
    };

    FastReader(const char* begin, const char* end) : m_p(begin), m_end(end) {}

    QString error;

    Outcome read(VaultData& out)
    {
        const Path path;
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

private:
    static constexpr int kMaxDepth = 1024;

    char peek() const { return m_p < m_end ? *m_p : '\0'; }

    void skipSpace()
    {
        while (m_p < m_end && (*m_p == ' ' || *m_p == '\n' || *m_p == '\r' || *m_p == '\t'))
            ++m_p;
    }

    bool syntax()
    {
        m_outcome = Outcome::SyntaxError;
        return false;
    }

    Outcome typeError(const Path& path, const char* problem)
    {
        const QString where = path.toString();
        error = (where.isEmpty() ? QStringLiteral("the document") : where) + QStringLiteral(": ") +
                QLatin1StringView(problem);
        m_outcome = Outcome::TypeError;
        return m_outcome;
    }

    bool fail(const Path& path, const char* problem)
    {
        typeError(path, problem);
        // The rest of the document is not read; a syntax error there is found by the caller.
        return false;
    }

    bool literal(const char* word)
    {
        for (; *word; ++word, ++m_p) {
            if (m_p >= m_end || *m_p != *word)
                return syntax();
        }
        return true;
    }

    static int hexValue(char c)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        if (c >= 'A' && c <= 'F')
            return c - 'A' + 10;
        return -1;
    }

    bool appendUtf8(QString& out, const char* from, const char* to, bool ascii)
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
    bool string(QString& out)
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
    bool key(QByteArrayView& out, QByteArray& storage)
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

    bool number()
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
    bool object(OnValue&& onValue)
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
    bool array(OnElement&& onElement)
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

    bool skipValue()
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
    bool wrongType(const Path& path, const char* problem)
    {
        return skipValue() && fail(path, problem);
    }

    bool requiredString(const Path& path, QString& out, bool& seen)
    {
        seen = true;
        if (peek() != '"')
            return wrongType(path, "expected a string");
        out.clear();
        return string(out);
    }

    bool optionalString(const Path& path, std::optional<QString>& out)
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

    bool item(const Path& path, ShortcutItem& out)
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
                const Path tagsPath = path.field(QLatin1StringView("tags"));
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
    bool objectArray(const Path& path, QList<T>& out, ReadElement readElement)
    {
        if (peek() != '[')
            return wrongType(path, "expected an array");
        return array([&](qsizetype index) {
            out.emplaceBack();
            return (this->*readElement)(path.element(index), out.back());
        });
    }

    bool itemArray(const Path& path, QList<ShortcutItem>& out)
    {
        return objectArray(path, out, &FastReader::item);
    }

    bool pack(const Path& path, AppShortcutPack& out)
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

    bool packArray(const Path& path, QList<AppShortcutPack>& out)
    {
        return objectArray(path, out, &FastReader::pack);
    }

    const char* m_p;
    const char* m_end;
    int m_depth = 0;
    Outcome m_outcome = Outcome::Ok;
};

// ---- Writing ---------------------------------------------------------------------------------

// A minimal pretty-printing JSON writer. The keys of every object are written in the fixed
// ascending byte order of the format, so no sorting is needed here.
class Writer
{
public:
    // A standard string: its appends are inlined, which matters for millions of small ones.
    std::string out;

    void newline()
    {
        out += '\n';
        out.append(m_depth * 2, ' ');
    }

    void openObject()
    {
        out += '{';
        ++m_depth;
        m_first = true;
    }
    void closeObject()
    {
        --m_depth;
        newline();
        out += '}';
        m_first = false;
    }
    void key(const char* name)
    {
        if (!m_first)
            out += ',';
        m_first = false;
        newline();
        out += '"';
        out += name;
        out += "\" : ";
    }
    void openArray(bool empty)
    {
        out += empty ? "[]" : "[";
        if (!empty)
            ++m_depth;
        // An empty array is complete: whatever follows it needs a comma.
        m_first = !empty;
    }
    void closeArray()
    {
        --m_depth;
        newline();
        out += ']';
        m_first = false;
    }
    void element()
    {
        if (!m_first)
            out += ',';
        m_first = false;
        newline();
    }

    void boolean(bool value) { out += value ? "true" : "false"; }

    void string(const QString& text)
    {
        static const char hex[] = "0123456789abcdef";
        // The text's UTF-8 goes through one reused buffer rather than a new array per string.
        const qsizetype room = m_encoder.requiredSpace(text.size());
        if (m_utf8.size() < room)
            m_utf8.resize(std::max(room, 2 * m_utf8.size()));
        char* const begin = m_utf8.data();
        const char* const end = m_encoder.appendToBuffer(begin, text);
        const char* run = begin;
        out += '"';
        // Runs of bytes that need no escape are copied whole.
        for (const char* p = run; p < end; ++p) {
            const auto byte = static_cast<unsigned char>(*p);
            if (byte >= 0x20 && byte != '"' && byte != '\\' && byte != '/')
                continue;
            out.append(run, p - run);
            run = p + 1;
            switch (byte) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '/':
                out += "\\/";
                break;
            case '\b':
                out += "\\b";
                break;
            case '\f':
                out += "\\f";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                out += "\\u00";
                out += hex[byte >> 4];
                out += hex[byte & 0xF];
            }
        }
        out.append(run, end - run);
        out += '"';
    }

    void optionalString(const char* name, const std::optional<QString>& value)
    {
        if (value) {
            key(name);
            string(*value);
        }
    }

    void item(const ShortcutItem& item)
    {
        openObject();
        key("chord");
        string(item.chord);
        if (item.favorite) {
            key("favorite");
            boolean(*item.favorite);
        }
        optionalString("menu", item.menu);
        key("name");
        string(item.name);
        optionalString("note", item.note);
        optionalString("source", item.source);
        if (item.tags) {
            key("tags");
            openArray(item.tags->isEmpty());
            if (!item.tags->isEmpty()) {
                for (const QString& tag : *item.tags) {
                    element();
                    string(tag);
                }
                closeArray();
            }
        }
        closeObject();
    }

    void items(const QList<ShortcutItem>& list)
    {
        openArray(list.isEmpty());
        if (list.isEmpty())
            return;
        for (const ShortcutItem& entry : list) {
            element();
            item(entry);
        }
        closeArray();
    }

    void pack(const AppShortcutPack& pack)
    {
        openObject();
        optionalString("bundleID", pack.bundleID);
        key("name");
        string(pack.name);
        key("shortcuts");
        items(pack.shortcuts);
        closeObject();
    }

    void root(const VaultData& data)
    {
        qsizetype itemCount = data.global.size();
        for (const AppShortcutPack& pack : data.apps)
            itemCount += pack.shortcuts.size();
        out.reserve(static_cast<std::size_t>(itemCount) * 200 + 1024);
        openObject();
        optionalString("_comment", data.comment);
        key("apps");
        openArray(data.apps.isEmpty());
        if (!data.apps.isEmpty()) {
            for (const AppShortcutPack& entry : data.apps) {
                element();
                pack(entry);
            }
            closeArray();
        }
        key("global");
        items(data.global);
        closeObject();
        out += '\n';
    }

private:
    qsizetype m_depth = 0;
    bool m_first = true;
    // Stateless: a lone surrogate at the end of one string never reaches into the next.
    QStringEncoder m_encoder{QStringEncoder::Utf8, QStringConverter::Flag::Stateless};
    QByteArray m_utf8;
};

} // namespace

DecodeResult decode(const QByteArray& json)
{
    VaultData data;
    FastReader fast(json.constData(), json.constData() + json.size());
    const FastReader::Outcome outcome = fast.read(data);
    if (outcome == FastReader::Outcome::Ok)
        return {std::move(data), {}};

    // Something is wrong. A syntax error anywhere in the document is reported as such, with
    // the offset QJsonDocument gives; otherwise the wrong key found above is.
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        return {std::nullopt, QStringLiteral("syntax error at byte offset %1: %2")
                                  .arg(parseError.offset)
                                  .arg(parseError.errorString())};
    }
    if (outcome == FastReader::Outcome::TypeError)
        return {std::nullopt, fast.error};
    // The fast reader refused what QJsonDocument accepts: read the document tree instead.
    Reader reader;
    VaultData fromTree;
    if (!reader.root(document, fromTree))
        return {std::nullopt, reader.error};
    return {std::move(fromTree), {}};
}

DecodeResult decodeTree(const QByteArray& json)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        return {std::nullopt, QStringLiteral("syntax error at byte offset %1: %2")
                                  .arg(parseError.offset)
                                  .arg(parseError.errorString())};
    }
    Reader reader;
    VaultData data;
    if (!reader.root(document, data))
        return {std::nullopt, reader.error};
    return {std::move(data), {}};
}

QByteArray encode(const VaultData& data)
{
    Writer writer;
    writer.root(data);
    return QByteArray(writer.out.data(), static_cast<qsizetype>(writer.out.size()));
}

} // namespace Tessaline::VaultCodec
