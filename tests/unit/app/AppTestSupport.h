// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultCodec.h"
#include "vault/VaultStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace AppTestSupport {

inline Tessaline::ShortcutItem item(const QString& name, const QString& chord)
{
    Tessaline::ShortcutItem result;
    result.name = name;
    result.chord = chord;
    return result;
}

inline Tessaline::AppShortcutPack pack(const QString& name, std::optional<QString> bundleID,
                                       QList<Tessaline::ShortcutItem> shortcuts)
{
    return Tessaline::AppShortcutPack{name, std::move(bundleID), std::move(shortcuts)};
}

/// Writes `data` as the vault file of a private folder and returns the store configuration
/// that reads it (no seed: the file is the whole vault).
inline Tessaline::VaultStore::Configuration writeVault(const QTemporaryDir& dir,
                                                       const Tessaline::VaultData& data)
{
    Tessaline::VaultStore::Configuration configuration;
    configuration.dataFilePath = dir.filePath(QStringLiteral("data/keybinds.json"));
    QDir().mkpath(QFileInfo(configuration.dataFilePath).absolutePath());
    QFile file(configuration.dataFilePath);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(Tessaline::VaultCodec::encode(data));
    return configuration;
}

} // namespace AppTestSupport
