// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiElementFactory.h"

#include "platform/atspi/AtspiMenuSnapshot.h"
#include "platform/atspi/AtspiSnapshotElement.h"

namespace Tessaline {

AccessibilityElementPtr AtspiElementFactory::applicationElement(qint64 processId)
{
    if (processId <= 0)
        return nullptr;
    const auto bus = AtspiBus::connection();
    if (!bus)
        return nullptr;
    const auto application = AtspiMenuSnapshot::findApplication(*bus, processId, kCallTimeoutMs);
    if (!application)
        return nullptr;
    return std::make_shared<AtspiSnapshotElement>(*bus, *application, kCallTimeoutMs);
}

} // namespace Tessaline
