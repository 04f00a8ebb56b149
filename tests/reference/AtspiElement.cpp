// SPDX-License-Identifier: MIT
#include "AtspiElement.h"

#include "platform/atspi/AtspiCall.h"

#include <QQueue>

#include <atspi/atspi.h>

namespace Tessaline {

namespace {

// How far below the application the menu bar is looked for (application, frame, fillers, ...).
constexpr int kMenuBarSearchDepth = 6;

QVariant elementValue(AtspiAccessible* accessible, const std::shared_ptr<AtspiWalkState>& state,
                      int depth)
{
    return QVariant::fromValue(
        AccessibilityElementPtr(std::make_shared<AtspiElement>(accessible, state, depth)));
}

} // namespace

AtspiElement::AtspiElement(AtspiAccessible* accessible, std::shared_ptr<AtspiWalkState> state,
                           int depth)
    : m_accessible(accessible), m_state(std::move(state)), m_depth(depth)
{}

AtspiElement::~AtspiElement()
{
    if (m_accessible)
        g_object_unref(m_accessible);
}

QString AtspiElement::objectPath(AtspiAccessible* accessible)
{
    const AtspiObject* object = ATSPI_OBJECT(accessible);
    return QString::fromUtf8(object->path ? object->path : "");
}

QVariant AtspiElement::attributeValue(const QString& name) const
{
    if (m_state->failed)
        return {};
    if (name == AccessibilityAttribute::menuBar)
        return menuBar();
    if (name == AccessibilityAttribute::children)
        return children();
    if (name == AccessibilityAttribute::title) {
        const auto text = title();
        return text ? QVariant(*text) : QVariant();
    }
    if (name == AccessibilityAttribute::menuItemCmdChar) {
        const auto& key = keyEquivalent();
        return key && key->character ? QVariant(*key->character) : QVariant();
    }
    if (name == AccessibilityAttribute::menuItemCmdVirtualKey) {
        const auto& key = keyEquivalent();
        return key && key->virtualKey ? QVariant(*key->virtualKey) : QVariant();
    }
    if (name == AccessibilityAttribute::menuItemCmdModifiers) {
        const auto& key = keyEquivalent();
        return key ? QVariant(key->modifiers) : QVariant();
    }
    return {};
}

// Breadth first from the application: the menu bar sits under a frame, a few levels down.
QVariant AtspiElement::menuBar() const
{
    struct Pending
    {
        AtspiAccessible* accessible;
        int level;
    };
    QQueue<Pending> queue;
    queue.enqueue({static_cast<AtspiAccessible*>(g_object_ref(m_accessible)), 0});
    QSet<QString> seen;
    AtspiAccessible* found = nullptr;
    while (!queue.isEmpty()) {
        const Pending next = queue.dequeue();
        if (found || m_state->failed || seen.contains(objectPath(next.accessible))) {
            g_object_unref(next.accessible);
            continue;
        }
        seen.insert(objectPath(next.accessible));
        GError* error = nullptr;
        const AtspiRole role = atspi_accessible_get_role(next.accessible, &error);
        if (AtspiCall::check(error, *m_state)) {
            g_object_unref(next.accessible);
            continue;
        }
        if (role == ATSPI_ROLE_MENU_BAR) {
            found = next.accessible;
            continue;
        }
        if (next.level < kMenuBarSearchDepth) {
            const gint count = atspi_accessible_get_child_count(next.accessible, &error);
            if (!AtspiCall::check(error, *m_state)) {
                for (gint i = 0; i < count && !m_state->failed; ++i) {
                    AtspiAccessible* child =
                        atspi_accessible_get_child_at_index(next.accessible, i, &error);
                    if (AtspiCall::check(error, *m_state) || !child)
                        continue;
                    queue.enqueue({child, next.level + 1});
                }
            }
        }
        g_object_unref(next.accessible);
    }
    if (!found)
        return {};
    if (m_state->failed) {
        g_object_unref(found);
        return {};
    }
    m_state->visited.insert(objectPath(found));
    return elementValue(found, m_state, 0);
}

QVariant AtspiElement::children() const
{
    AccessibilityElementList list;
    if (m_depth >= AtspiWalkState::kMaxDepth)
        return QVariant::fromValue(list);
    GError* error = nullptr;
    const gint count = atspi_accessible_get_child_count(m_accessible, &error);
    if (AtspiCall::check(error, *m_state))
        return {};
    for (gint i = 0; i < count; ++i) {
        AtspiAccessible* child = atspi_accessible_get_child_at_index(m_accessible, i, &error);
        if (AtspiCall::check(error, *m_state)) {
            if (m_state->failed)
                return {};
            continue;
        }
        if (!child)
            continue;
        const QString path = objectPath(child);
        if (m_state->visited.contains(path) ||
            m_state->visited.size() >= AtspiWalkState::kMaxElements) {
            g_object_unref(child);
            continue;
        }
        m_state->visited.insert(path);
        list.append(std::make_shared<AtspiElement>(child, m_state, m_depth + 1));
    }
    return QVariant::fromValue(list);
}

std::optional<QString> AtspiElement::title() const
{
    if (!m_title) {
        GError* error = nullptr;
        char* name = atspi_accessible_get_name(m_accessible, &error);
        if (AtspiCall::check(error, *m_state))
            m_title = std::optional<QString>();
        else
            m_title = AtspiCall::takeString(name).trimmed();
    }
    return *m_title;
}

const std::optional<MenuKeyEquivalent>& AtspiElement::keyEquivalent() const
{
    if (!m_key) {
        m_key = std::optional<MenuKeyEquivalent>();
        // Disabled items report no actions yet still answer for the first action's binding.
        AtspiAction* action = atspi_accessible_get_action_iface(m_accessible);
        if (action) {
            GError* error = nullptr;
            char* binding = atspi_action_get_key_binding(action, 0, &error);
            g_object_unref(action);
            if (!AtspiCall::check(error, *m_state))
                m_key = AtspiKeyBinding::parse(AtspiCall::takeString(binding),
                                               title().value_or(QString()));
        }
    }
    return *m_key;
}

} // namespace Tessaline
