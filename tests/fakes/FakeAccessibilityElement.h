// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElement.h"
#include "platform/AccessibilityElementFactory.h"

#include <QHash>

namespace Tessaline::Testing {

/// An element whose attributes the test sets one by one; a read of anything else is absent.
class FakeAccessibilityElement final : public AccessibilityElement
{
public:
    QHash<QString, QVariant> attributes;
    mutable int reads = 0;

    QVariant attributeValue(const QString& name) const override
    {
        ++reads;
        return attributes.value(name);
    }

    /// Sets "AXChildren" to `children`.
    void setChildren(const QList<std::shared_ptr<FakeAccessibilityElement>>& children)
    {
        AccessibilityElementList list;
        for (const auto& child : children)
            list.append(child);
        attributes.insert(AccessibilityAttribute::children, QVariant::fromValue(list));
    }
};

using FakeElementPtr = std::shared_ptr<FakeAccessibilityElement>;

/// A titled element with no key equivalent.
inline FakeElementPtr makeMenu(const QVariant& title, const QList<FakeElementPtr>& children = {})
{
    auto element = std::make_shared<FakeAccessibilityElement>();
    if (title.isValid())
        element->attributes.insert(AccessibilityAttribute::title, title);
    element->setChildren(children);
    return element;
}

/// A menu item with a command character (none when empty) and a modifier mask (none when
/// negative).
inline FakeElementPtr makeItem(const QString& title, const QString& character, int modifiers = -1)
{
    auto element = std::make_shared<FakeAccessibilityElement>();
    element->attributes.insert(AccessibilityAttribute::title, title);
    if (!character.isEmpty())
        element->attributes.insert(AccessibilityAttribute::menuItemCmdChar, character);
    if (modifiers >= 0)
        element->attributes.insert(AccessibilityAttribute::menuItemCmdModifiers, modifiers);
    return element;
}

/// An application element whose "AXMenuBar" holds a menu bar with `menus`.
inline FakeElementPtr makeApplication(const QList<FakeElementPtr>& menus)
{
    auto menuBar = makeMenu(QVariant(), menus);
    auto application = std::make_shared<FakeAccessibilityElement>();
    application->attributes.insert(AccessibilityAttribute::menuBar,
                                   QVariant::fromValue(AccessibilityElementPtr(menuBar)));
    return application;
}

/// Hands out the application elements the test registered by process id.
class FakeAccessibilityElementFactory final : public AccessibilityElementFactory
{
public:
    QHash<qint64, AccessibilityElementPtr> applications;
    QList<qint64> requested;

    AccessibilityElementPtr applicationElement(qint64 processId) override
    {
        requested.append(processId);
        return applications.value(processId);
    }
};

} // namespace Tessaline::Testing
