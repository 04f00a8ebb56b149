// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultData.h"
#include "vault/VaultKeyPath.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace Tessaline {

/// Reads a vault document straight from its bytes into the records, without building a JSON
/// tree first: large vaults load several times faster. It reports the same key-path errors as
/// VaultTreeReader. On anything it does not accept as JSON it gives up and leaves the
/// description of the syntax error to QJsonDocument, so that messages and byte offsets stay
/// those of one parser.
class VaultReader
{
public:
    enum class Outcome
    {
        Ok,
        TypeError,
        SyntaxError
    };

    /// Reads `json`, which must outlive the reader.
    explicit VaultReader(QByteArrayView json);

    Outcome read(VaultData& out);
    /// After a TypeError: what is wrong and where.
    const QString& error() const { return m_error; }

private:
    static constexpr int kMaxDepth = 1024;

    char peek() const { return m_p < m_end ? *m_p : '\0'; }
    void skipSpace();
    bool syntax();
    Outcome typeError(const VaultKeyPath& path, const char* problem);
    bool fail(const VaultKeyPath& path, const char* problem);
    bool literal(const char* word);
    static int hexValue(char c);
    bool appendUtf8(QString& out, const char* from, const char* to, bool ascii);
    bool string(QString& out);
    bool key(QByteArrayView& out, QByteArray& storage);
    bool number();
    template <typename OnValue>
    bool object(OnValue&& onValue);
    template <typename OnElement>
    bool array(OnElement&& onElement);
    bool skipValue();
    bool wrongType(const VaultKeyPath& path, const char* problem);
    bool requiredString(const VaultKeyPath& path, QString& out, bool& seen);
    bool optionalString(const VaultKeyPath& path, std::optional<QString>& out);
    bool item(const VaultKeyPath& path, ShortcutItem& out);
    template <typename T, typename ReadElement>
    bool objectArray(const VaultKeyPath& path, QList<T>& out, ReadElement readElement);
    bool itemArray(const VaultKeyPath& path, QList<ShortcutItem>& out);
    bool pack(const VaultKeyPath& path, AppShortcutPack& out);
    bool packArray(const VaultKeyPath& path, QList<AppShortcutPack>& out);

    const char* m_p;
    const char* m_end;
    int m_depth = 0;
    Outcome m_outcome = Outcome::Ok;
    QString m_error;
};

} // namespace Tessaline
