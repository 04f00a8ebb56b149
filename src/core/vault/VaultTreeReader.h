// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "vault/VaultData.h"
#include "vault/VaultKeyPath.h"

#include <QLatin1StringView>

#include <optional>

class QJsonArray;
class QJsonDocument;
class QJsonObject;
class QJsonValue;

namespace Tessaline {

/// Reads a vault from a parsed JSON document, with the same rules and key-path errors as
/// VaultReader. Slower than reading the bytes directly; the codec takes it for documents that
/// QJsonDocument accepts and VaultReader does not (a byte-order mark, for one).
class VaultTreeReader
{
public:
    static Expected<VaultData> read(const QJsonDocument& document);

private:
    bool fail(const VaultKeyPath& path, const char* problem);
    bool requiredString(const QJsonObject& object, const VaultKeyPath& path, QLatin1StringView key,
                        QString& out);
    bool optionalString(const QJsonObject& object, const VaultKeyPath& path, QLatin1StringView key,
                        std::optional<QString>& out);
    bool requiredArray(const QJsonObject& object, const VaultKeyPath& path, QLatin1StringView key,
                       QJsonArray& out);
    bool item(const QJsonValue& value, const VaultKeyPath& path, ShortcutItem& out);
    bool items(const QJsonArray& array, const VaultKeyPath& path, QList<ShortcutItem>& out);
    bool pack(const QJsonValue& value, const VaultKeyPath& path, AppShortcutPack& out);
    bool root(const QJsonDocument& document, VaultData& out);

    QString m_error;
};

} // namespace Tessaline
