// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

#include <optional>

namespace Tessaline {

/// ChordText::normalized() of many chords, each distinct text worked out once: a vault repeats
/// the same few hundred chords over its packs, so indexing it mostly costs hash lookups.
class ChordKeys
{
public:
    /// The canonical text of `chord`, or none when it names no key.
    std::optional<QString> of(const QString& chord);

private:
    QHash<QString, std::optional<QString>> m_known;
};

} // namespace Tessaline
