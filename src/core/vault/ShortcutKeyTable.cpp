// SPDX-License-Identifier: MIT
#include "vault/ShortcutKeyTable.h"

namespace Tessaline {

void ShortcutKeyTable::reserve(qsizetype count)
{
    m_ends.reserve(count);
    m_masks.reserve(count);
}

void ShortcutKeyTable::append(const ShortcutSearchKey& key)
{
    m_bytes.append(key.kept());
    m_ends.append(m_bytes.size());
    m_masks.append(key.mask());
}

} // namespace Tessaline
