// SPDX-License-Identifier: MIT
#include "lookup/ChordConflict.h"

namespace Tessaline {

QString ChordConflict::reason() const
{
    if (kind == Kind::DesktopTakes)
        return QStringLiteral("The desktop takes this key: ") + other;
    return QStringLiteral("Also bound to “%1” in this app").arg(other);
}

} // namespace Tessaline
