// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <memory>

namespace Tessaline {

class AccessibilityElement;
using AccessibilityElementPtr = std::shared_ptr<AccessibilityElement>;
using AccessibilityElementList = QList<AccessibilityElementPtr>;

/// One element of another application's interface, read through the desktop's accessibility
/// service. It serves the menu attributes the scanner reads: "AXMenuBar" (an element),
/// "AXChildren" (an element list), "AXTitle" and "AXMenuItemCmdChar" (strings),
/// "AXMenuItemCmdVirtualKey" and "AXMenuItemCmdModifiers" (integers).
class AccessibilityElement
{
public:
    virtual ~AccessibilityElement();

    /// The attribute's value: a QString, an integer, an AccessibilityElementPtr or an
    /// AccessibilityElementList. An invalid QVariant when the attribute is missing or unreadable.
    virtual QVariant attributeValue(const QString& name) const = 0;
};

/// Attribute names served by every element.
namespace AccessibilityAttribute {
inline const QString menuBar = QStringLiteral("AXMenuBar");
inline const QString children = QStringLiteral("AXChildren");
inline const QString title = QStringLiteral("AXTitle");
inline const QString menuItemCmdChar = QStringLiteral("AXMenuItemCmdChar");
inline const QString menuItemCmdVirtualKey = QStringLiteral("AXMenuItemCmdVirtualKey");
inline const QString menuItemCmdModifiers = QStringLiteral("AXMenuItemCmdModifiers");
} // namespace AccessibilityAttribute

} // namespace Tessaline

Q_DECLARE_METATYPE(Tessaline::AccessibilityElementPtr)
Q_DECLARE_METATYPE(Tessaline::AccessibilityElementList)
