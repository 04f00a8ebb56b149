// SPDX-License-Identifier: MIT
#include "vault/VaultTreeReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace Tessaline {

Expected<VaultData> VaultTreeReader::read(const QJsonDocument& document)
{
    VaultTreeReader reader;
    VaultData data;
    if (!reader.root(document, data))
        return Unexpected(std::move(reader.m_error));
    return data;
}

bool VaultTreeReader::fail(const VaultKeyPath& path, const char* problem)
{
    m_error = path.problem(problem);
    return false;
}

bool VaultTreeReader::requiredString(const QJsonObject& object, const VaultKeyPath& path,
                                     QLatin1StringView key, QString& out)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return fail(path.field(key), "required key is missing");
    if (!value.isString())
        return fail(path.field(key), "expected a string");
    out = value.toString();
    return true;
}

bool VaultTreeReader::optionalString(const QJsonObject& object, const VaultKeyPath& path,
                                     QLatin1StringView key, std::optional<QString>& out)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull())
        return true;
    if (!value.isString())
        return fail(path.field(key), "expected a string or null");
    out = value.toString();
    return true;
}

bool VaultTreeReader::requiredArray(const QJsonObject& object, const VaultKeyPath& path,
                                    QLatin1StringView key, QJsonArray& out)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return fail(path.field(key), "required key is missing");
    if (!value.isArray())
        return fail(path.field(key), "expected an array");
    out = value.toArray();
    return true;
}

bool VaultTreeReader::item(const QJsonValue& value, const VaultKeyPath& path, ShortcutItem& out)
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
        const VaultKeyPath tagsPath = path.field(QLatin1StringView("tags"));
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
        return fail(path.field(QLatin1StringView("tags")), "expected an array of strings or null");
    }

    return optionalString(object, path, QLatin1StringView("menu"), out.menu) &&
           optionalString(object, path, QLatin1StringView("note"), out.note) &&
           optionalString(object, path, QLatin1StringView("source"), out.source);
}

bool VaultTreeReader::items(const QJsonArray& array, const VaultKeyPath& path,
                            QList<ShortcutItem>& out)
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

bool VaultTreeReader::pack(const QJsonValue& value, const VaultKeyPath& path, AppShortcutPack& out)
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

bool VaultTreeReader::root(const QJsonDocument& document, VaultData& out)
{
    const VaultKeyPath path;
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
    const VaultKeyPath appsPath = path.field(QLatin1StringView("apps"));
    out.apps.reserve(apps.size());
    for (qsizetype i = 0; i < apps.size(); ++i) {
        AppShortcutPack parsed;
        if (!pack(apps.at(i), appsPath.element(i), parsed))
            return false;
        out.apps.append(std::move(parsed));
    }
    return true;
}

} // namespace Tessaline
