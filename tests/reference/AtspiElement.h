// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityElement.h"
#include "platform/atspi/AtspiKeyBinding.h"
#include "platform/atspi/AtspiWalkState.h"

#include <memory>
#include <optional>

typedef struct _AtspiAccessible AtspiAccessible;

namespace Tessaline {

/// An accessibility element read through libatspi, one synchronous call per question. The
/// application element serves "AXMenuBar" (the menu bar under its frame); every element serves
/// the children, its trimmed name as title and the keyboard equivalent of its key binding.
class AtspiElement final : public AccessibilityElement
{
public:
    /// Takes over one reference of `accessible`. `depth` counts levels below the menu bar (-1 for
    /// the application and what lies between it and the menu bar).
    AtspiElement(AtspiAccessible* accessible, std::shared_ptr<AtspiWalkState> state, int depth);
    ~AtspiElement() override;
    AtspiElement(const AtspiElement&) = delete;
    AtspiElement& operator=(const AtspiElement&) = delete;

    QVariant attributeValue(const QString& name) const override;

    /// The object's path on its application's bus, its identity within the application.
    static QString objectPath(AtspiAccessible* accessible);

private:
    QVariant menuBar() const;
    QVariant children() const;
    std::optional<QString> title() const;
    const std::optional<MenuKeyEquivalent>& keyEquivalent() const;

    AtspiAccessible* m_accessible;
    std::shared_ptr<AtspiWalkState> m_state;
    int m_depth;
    mutable std::optional<std::optional<QString>> m_title;
    mutable std::optional<std::optional<MenuKeyEquivalent>> m_key;
};

} // namespace Tessaline
