// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultData.h"

#include <QByteArray>
#include <QString>
#include <QStringEncoder>

#include <optional>
#include <string>

namespace Tessaline {

/// A minimal pretty-printing JSON writer for vault documents. The keys of every object are
/// written in the fixed ascending byte order of the format, so no sorting is needed here.
class VaultWriter
{
public:
    /// The document of `data`: pretty-printed, keys in ascending byte order, "/" escaped as
    /// "\/", absent optional fields omitted (never null), lists in memory order.
    static QByteArray write(const VaultData& data);

private:
    void newline();
    void openObject();
    void closeObject();
    void key(const char* name);
    void openArray(bool empty);
    void closeArray();
    void element();
    void boolean(bool value);
    void string(const QString& text);
    void optionalString(const char* name, const std::optional<QString>& value);
    void item(const ShortcutItem& item);
    void items(const QList<ShortcutItem>& list);
    void pack(const AppShortcutPack& pack);
    void root(const VaultData& data);

    // A standard string: its appends are inlined, which matters for millions of small ones.
    std::string m_out;
    qsizetype m_depth = 0;
    bool m_first = true;
    // Stateless: a lone surrogate at the end of one string never reaches into the next.
    QStringEncoder m_encoder{QStringEncoder::Utf8, QStringConverter::Flag::Stateless};
    QByteArray m_utf8;
};

} // namespace Tessaline
