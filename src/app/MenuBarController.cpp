// SPDX-License-Identifier: MIT
#include "MenuBarController.h"

#include "SymbolImageProvider.h"
#include "platform/TrayAppearance.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>

namespace Tessaline {

namespace {

// The bundled glyph: a keyboard in one colour, which the icon tints.
constexpr char kTrayGlyph[] = ":/icons/org.tessaline.Tessaline-symbolic.svg";
// The tray takes its time to embed the icon: look for its place this often, this many times.
constexpr int kPlaceCheckMs = 250;
constexpr int kPlaceChecks = 40;

} // namespace

MenuBarController::MenuBarController(Actions actions, const TrayAppearance& appearance,
                                     QObject* parent)
    : QObject(parent), m_actions(std::move(actions)), m_appearance(&appearance)
{
    updateIcon();
    m_statusItem.setToolTip(QStringLiteral("Tessaline"));
    connect(&m_statusItem, &QSystemTrayIcon::activated, this,
            &MenuBarController::statusItemClicked);
    m_statusItem.show();

    // An XEmbed tray places the icon some time after it is shown; only then can the panel
    // around it be read.
    m_placeWatch.setInterval(kPlaceCheckMs);
    connect(&m_placeWatch, &QTimer::timeout, this, [this] {
        ++m_placeChecks;
        if (!m_statusItem.geometry().isEmpty()) {
            m_placeWatch.stop();
            updateIcon();
        } else if (m_placeChecks >= kPlaceChecks) {
            m_placeWatch.stop();
        }
    });
    if (!m_appearance->hostTakesIconNames())
        m_placeWatch.start();
}

void MenuBarController::updateIcon()
{
    const TrayAppearance::Rgb rgb = m_appearance->glyphColor(m_statusItem.geometry());
    const QIcon glyph = SymbolImageProvider::fileIcon(QString::fromLatin1(kTrayGlyph),
                                                      QColor(rgb.red, rgb.green, rgb.blue));
    // A host that takes the icon by name recolours the theme's symbolic icon for its panel;
    // the tinted glyph stands in where the theme lacks it (a run from the build tree).
    if (m_appearance->hostTakesIconNames())
        m_statusItem.setIcon(QIcon::fromTheme(QString::fromLatin1(kTrayIconName), glyph));
    else
        m_statusItem.setIcon(glyph);
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
