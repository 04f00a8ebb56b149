// SPDX-License-Identifier: MIT
#include "context/ActivationOrder.h"

namespace Tessaline {

bool ActivationOrder::activated(const QString& id)
{
    m_active.removeAll(id);
    m_active.prepend(id);
    const bool changed = m_front != id;
    m_front = id;
    return changed;
}

bool ActivationOrder::deactivated(const QString& id)
{
    m_active.removeAll(id);
    if (m_front != id || m_active.isEmpty())
        return false;
    m_front = m_active.first();
    return true;
}

} // namespace Tessaline
