// SPDX-License-Identifier: MIT
#include "lookup/ChordKeys.h"

#include "vault/ChordText.h"

namespace Tessaline {

std::optional<QString> ChordKeys::of(const QString& chord)
{
    const auto known = m_known.constFind(chord);
    if (known != m_known.constEnd())
        return *known;
    return *m_known.insert(chord, ChordText::normalized(chord));
}

} // namespace Tessaline
