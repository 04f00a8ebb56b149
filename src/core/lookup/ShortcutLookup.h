// SPDX-License-Identifier: MIT
#pragma once

#include "lookup/BoundShortcut.h"
#include "lookup/DesktopShortcut.h"
#include "vault/AppShortcutPack.h"
#include "vault/ShortcutItem.h"

#include <QHash>
#include <QList>
#include <QString>

namespace Tessaline {

/// Answers "what does this key do?": every shortcut bound to a chord in the given app packs,
/// the global list and the desktop's own bindings. Each chord is normalized once, when the
/// lookup is made, so a question costs one hash lookup whatever the vault's size.
class ShortcutLookup
{
public:
    /// Indexes `packs` (one app's pack, or all of them), the `global` list and `desktop`.
    ShortcutLookup(const QList<AppShortcutPack>& packs, const QList<ShortcutItem>& global,
                   const QList<DesktopShortcut>& desktop);

    /// Source of the global list's shortcuts.
    static QString globalSource(); // "Global"
    /// The note of a desktop binding's item, its detail line in a list.
    static QString desktopNote(); // "The desktop takes this key"

    /// The shortcuts bound to `chord`, written in either form: the packs' items first (packs
    /// and items in stored order), then the global ones, then the desktop's. Empty when the
    /// chord names no key or nothing is bound to it.
    QList<BoundShortcut> which(const QString& chord) const;

    /// How many shortcuts were indexed (those whose chord names a key).
    qsizetype size() const { return m_shortcuts.size(); }

private:
    void add(BoundShortcut shortcut, const QString& normalizedChord);

    QList<BoundShortcut> m_shortcuts;
    QHash<QString, QList<qsizetype>> m_byChord;
};

} // namespace Tessaline
