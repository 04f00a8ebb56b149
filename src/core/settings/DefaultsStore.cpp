// SPDX-License-Identifier: MIT
#include "settings/DefaultsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

namespace Tessaline {
namespace {

// The file holds one JSON object; each key maps to {"type": ..., "value": ...} so that the
// four value types survive a round trip (JSON alone cannot tell 3 from 3.0).
constexpr auto kTypeKey = "type";
constexpr auto kValueKey = "value";

QString typeName(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return QStringLiteral("bool");
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return QStringLiteral("integer");
    case QMetaType::Double:
    case QMetaType::Float:
        return QStringLiteral("double");
    default:
        return QStringLiteral("string");
    }
}

bool readJson(QIODevice& device, QSettings::SettingsMap& map)
{
    const QByteArray bytes = device.readAll();
    if (bytes.trimmed().isEmpty())
        return true;
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return false;
    const QJsonObject root = document.object();
    for (auto it = root.begin(); it != root.end(); ++it) {
        const QJsonObject entry = it.value().toObject();
        const QString type = entry.value(QLatin1String(kTypeKey)).toString();
        const QJsonValue value = entry.value(QLatin1String(kValueKey));
        if (type == QLatin1String("bool") && value.isBool())
            map.insert(it.key(), value.toBool());
        else if (type == QLatin1String("integer") && value.isDouble())
            map.insert(it.key(), QVariant::fromValue<qint64>(value.toInteger()));
        else if (type == QLatin1String("double") && value.isDouble())
            map.insert(it.key(), value.toDouble());
        else if (type == QLatin1String("string") && value.isString())
            map.insert(it.key(), value.toString());
        // Entries of any other shape are dropped: they read as missing.
    }
    return true;
}

bool writeJson(QIODevice& device, const QSettings::SettingsMap& map)
{
    QJsonObject root;
    for (auto it = map.begin(); it != map.end(); ++it) {
        const QString type = typeName(it.value());
        QJsonValue value;
        if (type == QLatin1String("bool"))
            value = it.value().toBool();
        else if (type == QLatin1String("integer"))
            value = it.value().toLongLong();
        else if (type == QLatin1String("double"))
            value = it.value().toDouble();
        else
            value = it.value().toString();
        root.insert(it.key(), QJsonObject{{QLatin1String(kTypeKey), type},
                                          {QLatin1String(kValueKey), value}});
    }
    return device.write(QJsonDocument(root).toJson(QJsonDocument::Indented)) >= 0;
}

QSettings::Format jsonFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("json"), readJson, writeJson);
    return format;
}

} // namespace

DefaultsStore::DefaultsStore(const QString& filePath, Access access) : m_access(access)
{
    const QString path = filePath.isEmpty() ? defaultFilePath() : filePath;
    if (access == Access::ReadWrite)
        QDir().mkpath(QFileInfo(path).absolutePath());
    m_settings = std::make_unique<QSettings>(path, jsonFormat());
}

DefaultsStore::~DefaultsStore()
{
    m_settings->sync();
}

QString DefaultsStore::defaultFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Tessaline/defaults.json");
}

QString DefaultsStore::filePath() const
{
    return m_settings->fileName();
}

QVariant DefaultsStore::raw(const QString& key) const
{
    return m_settings->value(key);
}

DefaultsStore::ValueType DefaultsStore::type(const QString& key) const
{
    const QVariant value = raw(key);
    if (!value.isValid())
        return ValueType::Missing;
    const QString name = typeName(value);
    if (name == QLatin1String("bool"))
        return ValueType::Bool;
    if (name == QLatin1String("integer"))
        return ValueType::Integer;
    if (name == QLatin1String("double"))
        return ValueType::Double;
    return ValueType::String;
}

std::optional<bool> DefaultsStore::boolValue(const QString& key) const
{
    if (type(key) != ValueType::Bool)
        return std::nullopt;
    return raw(key).toBool();
}

std::optional<qint64> DefaultsStore::integerValue(const QString& key) const
{
    if (type(key) != ValueType::Integer)
        return std::nullopt;
    return raw(key).toLongLong();
}

std::optional<double> DefaultsStore::doubleValue(const QString& key) const
{
    if (type(key) != ValueType::Double)
        return std::nullopt;
    return raw(key).toDouble();
}

std::optional<QString> DefaultsStore::stringValue(const QString& key) const
{
    if (type(key) != ValueType::String)
        return std::nullopt;
    return raw(key).toString();
}

void DefaultsStore::write(const QString& key, const QVariant& value)
{
    if (m_access == Access::ReadOnly)
        return;
    m_settings->setValue(key, value);
}

void DefaultsStore::setBool(const QString& key, bool value)
{
    write(key, value);
}

void DefaultsStore::setInteger(const QString& key, qint64 value)
{
    write(key, QVariant::fromValue<qint64>(value));
}

void DefaultsStore::setDouble(const QString& key, double value)
{
    write(key, value);
}

void DefaultsStore::setString(const QString& key, const QString& value)
{
    write(key, value);
}

void DefaultsStore::setOptionalString(const QString& key, const std::optional<QString>& value)
{
    if (value)
        setString(key, *value);
    else
        remove(key);
}

void DefaultsStore::remove(const QString& key)
{
    if (m_access == Access::ReadOnly)
        return;
    m_settings->remove(key);
}

void DefaultsStore::sync()
{
    m_settings->sync();
}

} // namespace Tessaline
