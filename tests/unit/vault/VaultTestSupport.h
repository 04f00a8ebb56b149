// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultCodec.h"
#include "vault/VaultStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <initializer_list>

namespace VaultTestSupport {

/// The error of a failed result, or an empty text for a success: for the messages of QVERIFY2,
/// which reads its message whether the check holds or not.
template <typename T>
QString errorText(const Tessaline::Expected<T>& result)
{
    return result ? QString() : result.error();
}

/// Up to `maxLength` of `pieces`, drawn at random and joined: small alphabets of tricky
/// characters make the collisions that random tests are after.
inline QString randomText(QRandomGenerator& random, const QStringList& pieces, int maxLength)
{
    QString result;
    const int length = random.bounded(maxLength + 1);
    for (int i = 0; i < length; ++i)
        result += pieces.at(random.bounded(pieces.size()));
    return result;
}

/// A "seed" column for a data-driven random test, one row per seed.
inline void addSeedRows(std::initializer_list<quint32> seeds)
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : seeds)
        QTest::addRow("seed %u", seed) << seed;
}

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
