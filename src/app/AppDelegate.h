// SPDX-License-Identifier: MIT
#pragma once

#include "FloatingPanel.h"
#include "helpers/TextHelperAction.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QQmlEngine;

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
class DesktopKeySettings;
class FrontmostAppTracker;
class HotkeyManager;
class KeyNamePreference;
class KeyInjector;
class TextInserter;
class MenuBarController;
class MenuCommandRunner;
class Scheduler;
class ShortcutRunner;
struct ShortcutItem;
struct TrackedApp;
class SystemKeyMonitor;
class TextHelperService;
class TrayAppearance;
class VaultStore;
class WindowHints;
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
        WindowHints& windowHints;
        const Clock& clock;
        Scheduler& scheduler;
        DefaultsStore& defaults;
        QQmlEngine& engine;
        const DesktopKeySettings& keySettings;
        const TrayAppearance& trayAppearance;
        /// Types helper text straight into focused fields where the session can; none on X11,
        /// where the paste chord is posted.
        TextInserter* textInserter = nullptr;
        /// Runs other applications' menu items; without it the HUD runs no rows.
        MenuCommandRunner* menuCommands = nullptr;
    };

    explicit AppDelegate(Platform platform, QObject* parent = nullptr);
    ~AppDelegate() override;

    /// How the process was started: by the user, or by the session at login.
    enum class Launch
    {
        ByUser,
        AtLogin
    };

    /// The start sequence: icon, tracker, text helpers, hotkey, tray, coach tips, closing the
    /// HUD when Tessaline stops being active, and the welcome window until it was finished. A
    /// start at login opens no window: only the tray appears.
    void applicationDidFinishLaunching(Launch launch = Launch::ByUser);
    /// The shut-down sequence.
    void applicationWillTerminate();

    /// Closes the HUD and runs one text helper.
    void performHelper(TextHelperAction action);
    /// Closes the HUD and runs `item` in `app`; a failure shows in the next HUD's status area.
    void runShortcut(const ShortcutItem& item, const TrackedApp& app);

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
    std::unique_ptr<KeyNamePreference> m_keyNames;
    std::unique_ptr<HotkeyManager> m_hotkeyManager;
    std::unique_ptr<TextHelperService> m_textHelperService;
    std::unique_ptr<ShortcutRunner> m_shortcutRunner;
    QPointer<FloatingPanel> m_panel;
    QMetaObject::Connection m_resignObserver;
};

} // namespace Tessaline
