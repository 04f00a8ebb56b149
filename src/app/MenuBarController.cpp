// SPDX-License-Identifier: MIT
#include "MenuBarController.h"

#include "Branding.h"
#include "SymbolImageProvider.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>

namespace Tessaline {

MenuBarController::MenuBarController(Actions actions, QObject* parent)
    : QObject(parent), m_actions(std::move(actions))
{
    // Panels may be light or dark and cannot tint the icon for us: the logo reads on both,
    // and a mid-grey keyboard stands in when the logo is missing.
    if (const std::optional<QImage> logo = Branding::image(64))
        m_statusItem.setIcon(QIcon(QPixmap::fromImage(*logo)));
    else
        m_statusItem.setIcon(
            SymbolImageProvider::icon(QStringLiteral("keyboard.fill"), QColor(0x88, 0x88, 0x88)));
    m_statusItem.setToolTip(QStringLiteral("Tessaline"));
    connect(&m_statusItem, &QSystemTrayIcon::activated, this,
            &MenuBarController::statusItemClicked);
    m_statusItem.show();
}

MenuBarController::~MenuBarController()
{
    delete m_openMenu.data();
}

void MenuBarController::statusItemClicked(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Context)
        showMenu();
    else if (m_actions.toggleHUD)
        m_actions.toggleHUD();
}

QMenu* MenuBarController::buildMenu()
{
    auto* menu = new QMenu;
    auto add = [menu](const QString& title, const std::function<void()>& action,
                      const QKeySequence& shortcut = {}) {
        QAction* item = menu->addAction(title);
        item->setShortcut(shortcut);
        QObject::connect(item, &QAction::triggered, menu, [action] {
            if (action)
                action();
        });
        return item;
    };
    add(QStringLiteral("Open Cheat Sheet"), m_actions.toggleHUD);
    add(QStringLiteral("Browse All Shortcuts"), m_actions.browseAll);
    add(QStringLiteral("Scan Current App Menus"), m_actions.scanCurrentApp);
    add(QStringLiteral("Scan Open Apps"), m_actions.scanOpenApps);
    QMenu* helpers = menu->addMenu(QStringLiteral("Helper Actions"));
    for (TextHelperAction action : TextHelperActions::all()) {
        QAction* item = helpers->addAction(TextHelperActions::title(action));
        item->setData(TextHelperActions::rawValue(action));
        connect(item, &QAction::triggered, this,
                [this, item] { helperSelected(item->data().toString()); });
    }
    menu->addSeparator();
    add(QStringLiteral("Settings"), m_actions.showSettings, QKeySequence(Qt::CTRL | Qt::Key_Comma));
    add(QStringLiteral("First-Run Guide"), m_actions.showOnboarding);
    menu->addSeparator();
    add(
        QStringLiteral("Quit Tessaline"), [] { QApplication::quit(); }, QKeySequence::Quit);
    return menu;
}

void MenuBarController::showMenu()
{
    if (m_openMenu)
        return;
    m_openMenu = buildMenu();
    m_openMenu->exec(QCursor::pos());
    // The menu exists only while it is open; the next left click toggles the HUD again.
    if (m_openMenu)
        m_openMenu->deleteLater();
}

void MenuBarController::helperSelected(const QString& rawValue)
{
    const std::optional<TextHelperAction> action = TextHelperActions::fromRawValue(rawValue);
    if (action && m_actions.performHelper)
        m_actions.performHelper(*action);
}

} // namespace Tessaline
