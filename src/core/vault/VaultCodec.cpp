// SPDX-License-Identifier: MIT
#include "vault/VaultCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>

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

// ---- Writing ---------------------------------------------------------------------------------

// A minimal pretty-printing JSON writer. The keys of every object are written in the fixed
// ascending byte order of the format, so no sorting is needed here.
class Writer
{
public:
    QByteArray out;

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
        const QByteArray utf8 = text.toUtf8();
        out += '"';
        for (const char c : utf8) {
            const auto byte = static_cast<unsigned char>(c);
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
                if (byte < 0x20) {
                    out += "\\u00";
                    out += hex[byte >> 4];
                    out += hex[byte & 0xF];
                } else {
                    out += c;
                }
            }
        }
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
};

} // namespace

DecodeResult decode(const QByteArray& json)
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
    return writer.out;
}

} // namespace Tessaline::VaultCodec
