// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElement.h"
#include "platform/atspi/AtspiBus.h"
#include "platform/atspi/AtspiMenuSnapshot.h"

#include <memory>

namespace Tessaline {

/// An element served from a menu snapshot. The application element reads the snapshot when its
/// "AXMenuBar" is asked for; every element below it answers from memory.
class AtspiSnapshotElement final : public AccessibilityElement
{
public:
    /// The application element of `application` on `bus`.
    AtspiSnapshotElement(QDBusConnection bus, AtspiReference application, int timeoutMs);
    /// Node `index` of `snapshot`.
    AtspiSnapshotElement(std::shared_ptr<const AtspiMenuSnapshot> snapshot, int index);

    QVariant attributeValue(const QString& name) const override;

private:
    QVariant menuBar() const;

    std::optional<QDBusConnection> m_bus;
    AtspiReference m_application;
    int m_timeoutMs = 0;
    std::shared_ptr<const AtspiMenuSnapshot> m_snapshot;
    int m_index = -1;
};

} // namespace Tessaline
