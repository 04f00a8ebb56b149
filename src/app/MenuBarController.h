// SPDX-License-Identifier: MIT
#pragma once

#include "helpers/TextHelperAction.h"

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <functional>

class QMenu;

namespace Tessaline {

class TrayAppearance;

/// Tessaline's permanent place on screen: a tray icon. A left click toggles the HUD; a right
/// click opens a menu of every command, built anew each time. The icon is a one-colour keyboard
/// drawn to read on the panel that hosts it (the colour logo stays the application's icon).
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

    /// The tray's icon name in the icon theme, for hosts that take icons by name.
    static constexpr char kTrayIconName[] = "org.tessaline.Tessaline-symbolic";

    MenuBarController(Actions actions, const TrayAppearance& appearance, QObject* parent = nullptr);
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
    /// Draws the tray icon again for the panel around its place on screen now.
    void updateIcon();

private:
    Actions m_actions;
    const TrayAppearance* m_appearance;
    QSystemTrayIcon m_statusItem;
    /// Waits for the tray to give the icon its place, then draws it for the panel there.
    QTimer m_placeWatch;
    int m_placeChecks = 0;
    QPointer<QMenu> m_openMenu;
};

} // namespace Tessaline
