// SPDX-License-Identifier: MIT
#pragma once

#include "FloatingPanel.h"
#include "helpers/TextHelperAction.h"

#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QSizeF>

#include <functional>
#include <memory>
#include <optional>

class QQmlEngine;
class QWindow;

namespace Tessaline {

class AccessibilityElementFactory;
class AccessibilityTrust;
class AlertPresenter;
class AppMenuScanner;
class AppWindowPresenter;
class Clipboard;
class Clock;
class CoachTipController;
class CoachTipPresenter;
class DefaultsStore;
class FrontmostAppTracker;
class HotkeyManager;
class KeyInjector;
class MenuBarController;
class Scheduler;
class SystemKeyMonitor;
class TextHelperService;
class VaultStore;
class Workspace;

/// The root of the running application: creates and owns every long-lived service, runs the
/// start and shut-down sequences, shows and hides the HUD panel, and routes every command from
/// the tray menu, the HUD and the hotkey to the service that carries it out.
class AppDelegate : public QObject
{
    Q_OBJECT
public:
    /// The desktop services the application runs on; they outlive the delegate.
    struct Platform
    {
        Workspace& workspace;
        AccessibilityTrust& trust;
        AccessibilityElementFactory& elements;
        AlertPresenter& alerts;
        SystemKeyMonitor& keyMonitor;
        CoachTipPresenter& tipPresenter;
        Clipboard& clipboard;
        KeyInjector& keyInjector;
        const Clock& clock;
        Scheduler& scheduler;
        DefaultsStore& defaults;
        QQmlEngine& engine;
    };

    explicit AppDelegate(Platform platform, QObject* parent = nullptr);
    ~AppDelegate() override;

    /// The start sequence: icon, tracker, text helpers, hotkey, tray, coach tips, closing the
    /// HUD when Tessaline stops being active, and the welcome window until it was finished.
    void applicationDidFinishLaunching();
    /// The shut-down sequence.
    void applicationWillTerminate();

    /// Closes the HUD and runs one text helper.
    void performHelper(TextHelperAction action);

public slots:
    /// Hides the HUD when it is visible, else shows a new one.
    void toggleHUD();
    /// Builds and shows a new HUD for the app the user was working in.
    void showHUD();
    /// Scans the menus of the app the user was using, then makes sure the HUD is visible.
    void scanCurrentAppMenus();
    /// Scans all open apps, then shows the browser.
    void scanOpenApps();
    void showBrowser();
    void showSettings();
    void showOnboarding();

public:
    /// Where a panel of `size` goes to stand in the middle of `area`, rounded half away from
    /// zero.
    static QPoint centeredOrigin(const QRectF& area, const QSizeF& size);
    /// The available area of the screen under the mouse, else of the primary screen, else
    /// 1440 × 900 at the origin.
    static QRectF areaUnderMouse();
    /// Places a panel in the middle of the screen under the mouse.
    static void center(QWindow& panel);

private:
    void closeHUD();
    void reloadVault();
    void helperActionChosen(const QString& rawValue);
    void showVaultFile();
    void copyText(const QString& text);
    QVariantList helperActionList() const;

    Platform m_platform;
    std::unique_ptr<VaultStore> m_store;
    std::unique_ptr<FrontmostAppTracker> m_frontmostAppTracker;
    std::unique_ptr<AppMenuScanner> m_menuScanner;
    std::unique_ptr<CoachTipController> m_coachTipController;
    std::unique_ptr<AppWindowPresenter> m_windowPresenter;
    std::unique_ptr<MenuBarController> m_menuBarController;
    std::unique_ptr<HotkeyManager> m_hotkeyManager;
    std::unique_ptr<TextHelperService> m_textHelperService;
    QPointer<FloatingPanel> m_panel;
    QMetaObject::Connection m_resignObserver;
};

} // namespace Tessaline
