// SPDX-License-Identifier: MIT
#include "AtspiPlainElementFactory.h"

#include "AtspiElement.h"
#include "platform/atspi/AtspiCall.h"
#include "platform/atspi/AtspiElementFactory.h"

#include <atspi/atspi.h>

namespace Tessaline {

AccessibilityElementPtr AtspiPlainElementFactory::applicationElement(qint64 processId)
{
    if (processId <= 0)
        return nullptr;
    static const bool initialized = [] {
        atspi_init();
        // No extra allowance for applications this process has just met.
        atspi_set_timeout(AtspiElementFactory::kCallTimeoutMs, 0);
        return true;
    }();
    Q_UNUSED(initialized);

    auto state = std::make_shared<AtspiWalkState>();
    AtspiAccessible* desktop = atspi_get_desktop(0);
    if (!desktop)
        return nullptr;
    GError* error = nullptr;
    const gint count = atspi_accessible_get_child_count(desktop, &error);
    AtspiAccessible* found = nullptr;
    if (!AtspiCall::check(error, *state)) {
        for (gint i = 0; i < count && !found; ++i) {
            AtspiAccessible* application = atspi_accessible_get_child_at_index(desktop, i, &error);
            if (AtspiCall::check(error, *state) || !application)
                continue;
            const guint pid = atspi_accessible_get_process_id(application, &error);
            if (!AtspiCall::check(error, *state) && pid == processId)
                found = application;
            else
                g_object_unref(application);
        }
    }
    g_object_unref(desktop);
    if (!found)
        return nullptr;
    return std::make_shared<AtspiElement>(found, state, -1);
}

} // namespace Tessaline
