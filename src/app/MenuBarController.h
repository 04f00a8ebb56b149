// SPDX-License-Identifier: MIT
#pragma once

#include "helpers/TextHelperAction.h"

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>

#include <functional>

class QMenu;

namespace Tessaline {

/// Tessaline's permanent place on screen: a tray icon. A left click toggles the HUD; a right
/// click opens a menu of every command, built anew each time.
class MenuBarController : public QObject
{
    Q_OBJECT
public:
    struct Actions
    {
        std::function<void()> toggleHUD;
        std::function<void()> browseAll;
        std::function<void()> scanCurrentApp;
        std::function<void()> scanOpenApps;
        std::function<void()> showSettings;
        std::function<void()> showOnboarding;
        std::function<void(TextHelperAction)> performHelper;
    };

    explicit MenuBarController(Actions actions, QObject* parent = nullptr);
    ~MenuBarController() override;

    QSystemTrayIcon& statusItem() { return m_statusItem; }
    /// Builds the command menu; the caller owns it. Exposed so the menu can be checked.
    QMenu* buildMenu();

    /// A click on the tray icon: the context click opens the menu, any other click toggles.
    void statusItemClicked(QSystemTrayIcon::ActivationReason reason);
    /// Pops the command menu up at the pointer and waits until it closes.
    void showMenu();
    /// A helper menu entry: runs the helper named by the raw value, ignores unknown values.
    void helperSelected(const QString& rawValue);

private:
    Actions m_actions;
    QSystemTrayIcon m_statusItem;
    QPointer<QMenu> m_openMenu;
};

} // namespace Tessaline
