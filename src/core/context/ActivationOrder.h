// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Tessaline {

/// Which application is in front, from reports of windows becoming active and inactive that
/// may reach Tessaline out of order between applications: a window losing the focus can report
/// itself active once more just before it reports the loss, after the window that took the
/// focus has spoken. The front is the application activated last that has not been deactivated
/// since; while none is active (Tessaline's own window has the focus), the last front stays.
class ActivationOrder
{
public:
    /// A window of `id` became active. True when the front changed.
    bool activated(const QString& id);
    /// The active window of `id` became inactive. True when the front changed.
    bool deactivated(const QString& id);
    std::optional<QString> front() const { return m_front; }

private:
    /// Applications with an active window, the latest first.
    QStringList m_active;
    std::optional<QString> m_front;
};

} // namespace Tessaline
