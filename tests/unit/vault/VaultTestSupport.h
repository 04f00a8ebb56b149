// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultCodec.h"
#include "vault/VaultStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace VaultTestSupport {

inline Tessaline::ShortcutItem item(const QString& name, const QString& chord,
                                    std::optional<bool> favorite = {})
{
    Tessaline::ShortcutItem result;
    result.name = name;
    result.chord = chord;
    result.favorite = favorite;
    return result;
}

inline QStringList names(const QList<Tessaline::ShortcutItem>& items)
{
    QStringList result;
    for (const Tessaline::ShortcutItem& entry : items)
        result << entry.name;
    return result;
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

/// A store configuration inside a private temporary folder: the data file under
/// "data/Tessaline" (which does not exist yet) and seed candidates under "seeds".
inline Tessaline::VaultStore::Configuration configurationIn(const QTemporaryDir& dir,
                                                            const QStringList& seedNames = {})
{
    Tessaline::VaultStore::Configuration configuration;
    configuration.dataFilePath = dir.filePath(QStringLiteral("data/Tessaline/keybinds.json"));
    for (const QString& name : seedNames)
        configuration.seedCandidates << dir.filePath(QStringLiteral("seeds/") + name);
    return configuration;
}

} // namespace VaultTestSupport
