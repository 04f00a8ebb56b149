// SPDX-License-Identifier: MIT
#pragma once

#include "vault/ShortcutSearchKey.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace Tessaline {

/// The quick pre-checks of a long list of shortcuts, packed side by side: one block of kept
/// bytes and one array of masks, so that filtering the list at a keystroke reads memory in
/// order instead of one allocation per shortcut. judge(i, ...) answers for the i-th appended
/// key.
class ShortcutKeyTable
{
public:
    void reserve(qsizetype count);
    void append(const ShortcutSearchKey& key);
    qsizetype size() const { return m_masks.size(); }

    /// The verdict of the index-th key on a query: `asciiQuery` and its mask as for
    /// ShortcutSearchKey::mayMatch(), `exactQuery` as for ShortcutSearchKey::judge(). An empty
    /// query may match anything.
    ShortcutSearchKey::Verdict judge(qsizetype index, QByteArrayView asciiQuery, quint64 queryMask,
                                     bool exactQuery) const
    {
        if (asciiQuery.isEmpty())
            return ShortcutSearchKey::Verdict::MayMatch;
        if (queryMask & ~m_masks[index])
            return ShortcutSearchKey::Verdict::NoMatch;
        const qsizetype begin = index == 0 ? 0 : m_ends[index - 1];
        return ShortcutSearchKey::judge(
            QByteArrayView(m_bytes.constData() + begin, m_ends[index] - begin), asciiQuery,
            exactQuery);
    }

private:
    QByteArray m_bytes;
    /// Where each key's bytes end in m_bytes.
    QList<qsizetype> m_ends;
    QList<quint64> m_masks;
};

} // namespace Tessaline
