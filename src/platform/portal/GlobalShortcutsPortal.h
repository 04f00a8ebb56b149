// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace Tessaline {

/// The desktop's global-shortcuts service as the hot-key service uses it: sessions that bind a
/// set of shortcuts, and the presses and releases of bound shortcuts. Every answer comes later,
/// through a callback, since the desktop may first ask the user.
class GlobalShortcutsPortal
{
public:
    /// Answer codes of a request: granted, cancelled by the user, failed for another reason.
    static constexpr uint responseSuccess = 0;
    static constexpr uint responseCancelled = 1;
    static constexpr uint responseOther = 2;

    struct Shortcut
    {
        QString id;
        QString description;
        /// The combination asked for in the trigger form ("CTRL+SHIFT+s"); empty for none.
        QString preferredTrigger;
    };

    /// The answer to a new session: its handle when `response` is responseSuccess.
    using SessionCallback = std::function<void(uint response, const QString& session)>;
    /// The answer to a binding: the ids of the shortcuts the desktop bound.
    using BindCallback = std::function<void(uint response, const QStringList& boundIds)>;
    /// A bound shortcut was pressed (`active` true) or released.
    using ShortcutCallback =
        std::function<void(const QString& session, const QString& shortcutId, bool active)>;

    virtual ~GlobalShortcutsPortal() = default;

    virtual void createSession(SessionCallback callback) = 0;
    /// Binds `shortcuts` in `session`; a session takes one binding only.
    virtual void bindShortcuts(const QString& session, const QList<Shortcut>& shortcuts,
                               BindCallback callback) = 0;
    /// Ends a session; its shortcuts stop being delivered.
    virtual void closeSession(const QString& session) = 0;
    virtual void setShortcutCallback(ShortcutCallback callback) = 0;
};

} // namespace Tessaline
