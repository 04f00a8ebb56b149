// SPDX-License-Identifier: MIT
#include "platform/atspi/AtspiSnapshotElement.h"

namespace Tessaline {

AtspiSnapshotElement::AtspiSnapshotElement(QDBusConnection bus, AtspiReference application,
                                           int timeoutMs)
    : m_bus(std::move(bus)), m_application(std::move(application)), m_timeoutMs(timeoutMs)
{}

AtspiSnapshotElement::AtspiSnapshotElement(std::shared_ptr<const AtspiMenuSnapshot> snapshot,
                                           int index)
    : m_snapshot(std::move(snapshot)), m_index(index)
{}

QVariant AtspiSnapshotElement::menuBar() const
{
    if (!m_bus)
        return {};
    auto snapshot = AtspiMenuSnapshot::read(*m_bus, m_application, m_timeoutMs);
    if (!snapshot)
        return {};
    return QVariant::fromValue(AccessibilityElementPtr(std::make_shared<AtspiSnapshotElement>(
        std::make_shared<const AtspiMenuSnapshot>(std::move(*snapshot)), 0)));
}

QVariant AtspiSnapshotElement::attributeValue(const QString& name) const
{
    if (!m_snapshot)
        return name == AccessibilityAttribute::menuBar ? menuBar() : QVariant();
    const AtspiMenuSnapshot::Node& node = m_snapshot->nodes().at(m_index);
    if (name == AccessibilityAttribute::children) {
        AccessibilityElementList children;
        for (int child : node.children)
            children.append(std::make_shared<AtspiSnapshotElement>(m_snapshot, child));
        return QVariant::fromValue(children);
    }
    if (name == AccessibilityAttribute::title)
        return node.title ? QVariant(*node.title) : QVariant();
    if (name == AccessibilityAttribute::menuItemCmdChar)
        return node.key && node.key->character ? QVariant(*node.key->character) : QVariant();
    if (name == AccessibilityAttribute::menuItemCmdVirtualKey)
        return node.key && node.key->virtualKey ? QVariant(*node.key->virtualKey) : QVariant();
    if (name == AccessibilityAttribute::menuItemCmdModifiers)
        return node.key ? QVariant(node.key->modifiers) : QVariant();
    return {};
}

} // namespace Tessaline
