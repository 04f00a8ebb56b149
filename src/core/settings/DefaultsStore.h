// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>
#include <QString>

#include <memory>
#include <optional>

namespace Tessaline {

/// The user-defaults store: typed values under flat keys such as "Hotkey.enabled", kept in a
/// JSON file under the user's config folder. A value reads back with the type it was written
/// with, so a string stored under an integer key is told apart from a missing one.
class DefaultsStore
{
public:
    enum class ValueType
    {
        Missing,
        Bool,
        Integer,
        Double,
        String
    };

    /// Whether the store may write: a reader creates no folder.
    enum class Access
    {
        ReadWrite,
        ReadOnly
    };

    /// Opens the defaults at `filePath`, or at the user's config folder
    /// ($XDG_CONFIG_HOME/Tessaline/defaults.json) when the path is empty.
    explicit DefaultsStore(const QString& filePath = {}, Access access = Access::ReadWrite);
    ~DefaultsStore();
    DefaultsStore(const DefaultsStore&) = delete;
    DefaultsStore& operator=(const DefaultsStore&) = delete;

    /// Where the defaults of this user live when no path is given.
    static QString defaultFilePath();

    QString filePath() const;
    ValueType type(const QString& key) const;
    bool contains(const QString& key) const { return type(key) != ValueType::Missing; }

    /// Each getter yields a value only when the key holds a value of exactly that type.
    std::optional<bool> boolValue(const QString& key) const;
    std::optional<qint64> integerValue(const QString& key) const;
    std::optional<double> doubleValue(const QString& key) const;
    std::optional<QString> stringValue(const QString& key) const;

    /// A ReadOnly store ignores the setters and removals.
    void setBool(const QString& key, bool value);
    void setInteger(const QString& key, qint64 value);
    void setDouble(const QString& key, double value);
    void setString(const QString& key, const QString& value);
    /// Sets the string, or removes the key when `value` is absent.
    void setOptionalString(const QString& key, const std::optional<QString>& value);
    void remove(const QString& key);

    /// Writes pending changes to the file now (they are also written on destruction).
    void sync();

private:
    QVariant raw(const QString& key) const;
    void write(const QString& key, const QVariant& value);

    std::unique_ptr<QSettings> m_settings;
    Access m_access;
};

} // namespace Tessaline
