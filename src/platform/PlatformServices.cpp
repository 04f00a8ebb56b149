// SPDX-License-Identifier: MIT
#include "platform/PlatformServices.h"

#include "LogCategories.h"
#include "lookup/DesktopShortcuts.h"
#include "platform/atspi/AtspiAccessibilityTrust.h"
#include "platform/atspi/AtspiElementFactory.h"
#include "platform/atspi/AtspiMenuCommandRunner.h"
#include "platform/atspi/AtspiTextInserter.h"
#include "platform/desktop/DesktopAppIcon.h"
#include "platform/desktop/DesktopEntries.h"
#include "platform/evdev/EvdevKeyMonitor.h"
#include "platform/inert/InertHotKeyService.h"
#include "platform/inert/InertKeyInjector.h"
#include "platform/inert/InertKeyMonitor.h"
#include "platform/inert/InertTrayAppearance.h"
#include "platform/inert/InertWindowHints.h"
#include "platform/inert/InertWorkspace.h"
#include "platform/keysettings/CurrentDesktopKeySettings.h"
#include "platform/portal/DBusGlobalShortcutsPortal.h"
#include "platform/portal/DBusRemoteDesktopPortal.h"
#include "platform/portal/PortalHotKeyService.h"
#include "platform/portal/PortalKeyInjector.h"
#include "platform/qt/ClipboardAdapter.h"
#include "platform/qt/MessageBoxAlertPresenter.h"
#include "platform/qt/WaylandClipboard.h"
#include "platform/wayland/VirtualKeyboardInjector.h"
#include "platform/wayland/WaylandWorkspace.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11TrayAppearance.h"
#include "platform/x11/X11WindowHints.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/XInputKeyMonitor.h"
#include "platform/x11/XTestKeyInjector.h"
#include "platform/x11/XcbHotKeyService.h"
#include "platform/x11/XcbHotKeySystemCombos.h"
#include "settings/DefaultsStore.h"

#include <hotkey/HotKeysController.h>

#include <QGuiApplication>

namespace Tessaline {
namespace {

// The services that need the X server: the windows, the keys and the window manager.
void addX11Services(PlatformServices& services)
{
    services.workspace = std::make_unique<X11Workspace>(*services.desktopEntries);
    services.keyMonitor = std::make_unique<XInputKeyMonitor>();
    services.keyInjector = std::make_unique<XTestKeyInjector>();
    services.hotKeys = std::make_unique<XcbHotKeyService>();
    services.windowHints = std::make_unique<X11WindowHints>();
    services.trayAppearance = std::make_unique<X11TrayAppearance>();
}

bool isWaylandSession()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

// The global hotkey of a Wayland session: the desktop portal's global shortcuts when it serves
// them; otherwise none (the settings then say which command to bind in the desktop instead).
std::unique_ptr<HotKey::HotKeyService> waylandHotKeyService()
{
    if (!DBusGlobalShortcutsPortal::isAvailable())
        return std::make_unique<InertHotKeyService>();
    return std::make_unique<PortalHotKeyService>(std::make_unique<DBusGlobalShortcutsPortal>(),
                                                 QStringLiteral("Show or hide the Tessaline HUD"));
}

// Where the remote-desktop session's restore token is kept between starts.
const QString kRestoreTokenKey = QStringLiteral("RemoteDesktop.restoreToken");

// Typed keys in a Wayland session: through the desktop portal's remote-desktop session when it
// offers a keyboard (GNOME, KDE Plasma), else through the compositor's virtual keyboard
// (wlroots compositors); otherwise none (the text helpers then leave their text on the
// clipboard).
std::unique_ptr<KeyInjector> waylandKeyInjector(DefaultsStore* defaults)
{
    const std::optional<uint> version = DBusRemoteDesktopPortal::keyboardVersion();
    if (!version) {
        if (std::unique_ptr<VirtualKeyboardInjector> keyboard = VirtualKeyboardInjector::create())
            return keyboard;
        return std::make_unique<InertKeyInjector>();
    }
    PortalKeyInjector::TokenStore tokens;
    if (defaults != nullptr) {
        tokens.load = [defaults] {
            return defaults->stringValue(kRestoreTokenKey).value_or(QString());
        };
        tokens.save = [defaults](const QString& token) {
            defaults->setOptionalString(
                kRestoreTokenKey, token.isEmpty() ? std::nullopt : std::optional<QString>(token));
        };
    }
    const bool granted = tokens.load && !tokens.load().isEmpty();
    auto injector = std::make_unique<PortalKeyInjector>(
        std::make_unique<DBusRemoteDesktopPortal>(*version), std::move(tokens));
    // A desktop that kept the permission restores it without asking: the first paste then
    // need not wait for the session. Otherwise the first key to type asks.
    if (granted)
        injector->start();
    return injector;
}

// A session without a backend of its own: Tessaline runs, shows its windows and reads menus,
// but takes no keys; on Wayland the accessibility bus still tells which applications run and
// the desktop portal may give the hotkey and type keys.
void addInertServices(PlatformServices& services, DefaultsStore* defaults)
{
    if (isWaylandSession()) {
        qCInfo(lcX11) << "Wayland session: applications seen and text inserted through the "
                         "accessibility bus and the compositor's window list; keys typed "
                         "through the desktop portal or the compositor's virtual keyboard";
        services.workspace = std::make_unique<WaylandWorkspace>(*services.desktopEntries);
        services.textInserter = std::make_unique<AtspiTextInserter>();
        services.keyMonitor = std::make_unique<EvdevKeyMonitor>();
        services.hotKeys = waylandHotKeyService();
        services.keyInjector = waylandKeyInjector(defaults);
    } else {
        qCInfo(lcX11) << "not an X11 session: no hot keys, key injection or workspace";
        services.workspace = std::make_unique<InertWorkspace>();
    }
    if (!services.keyMonitor)
        services.keyMonitor = std::make_unique<InertKeyMonitor>();
    if (!services.keyInjector)
        services.keyInjector = std::make_unique<InertKeyInjector>();
    if (!services.hotKeys)
        services.hotKeys = std::make_unique<InertHotKeyService>();
    services.windowHints = std::make_unique<InertWindowHints>();
    services.trayAppearance = std::make_unique<InertTrayAppearance>();
}

} // namespace

PlatformServices::PlatformServices() = default;
PlatformServices::~PlatformServices()
{
    // Hot keys that outlive these services must not reach them (an early return from main
    // leaves the hot-key module pointing here).
    if (hotKeys && HotKey::HotKeysController::service() == hotKeys.get())
        HotKey::HotKeysController::setService(nullptr);
}

std::unique_ptr<PlatformServices> createPlatformServices(DefaultsStore* defaults)
{
    auto services = std::make_unique<PlatformServices>();
    auto entries = std::make_unique<DesktopEntries>();
    services->appIcons = std::make_unique<DesktopAppIcon>(*entries);
    services->desktopEntries = std::move(entries);
    services->trust = std::make_unique<AtspiAccessibilityTrust>();
    services->elements = std::make_unique<AtspiElementFactory>();
    services->menuCommands = std::make_unique<AtspiMenuCommandRunner>();
    services->alerts = std::make_unique<MessageBoxAlertPresenter>();
    if (isWaylandSession())
        services->clipboard = std::make_unique<WaylandClipboard>();
    else
        services->clipboard = std::make_unique<ClipboardAdapter>();
    services->clock = std::make_unique<SystemClock>();
    services->scheduler = std::make_unique<TimerScheduler>();
    // Desktop settings files and GSettings: the same on X11 and elsewhere.
    services->keySettings = std::make_unique<CurrentDesktopKeySettings>();

    if (X11Connection::isAvailable())
        addX11Services(*services);
    else
        addInertServices(*services, defaults);
    return services;
}

std::unique_ptr<Workspace> createWorkspace(const DesktopEntryLookup& entries)
{
    if (X11Connection::isAvailable())
        return std::make_unique<X11Workspace>(entries);
    return std::make_unique<WaylandWorkspace>(entries);
}

QList<DesktopShortcut> readDesktopShortcuts()
{
    const QList<DesktopShortcut> combos =
        DesktopShortcuts::fromKeyCombos(HotKey::KeyCombo::namedKeyCombos(
            XcbHotKeySystemCombos::read().value_or(QList<QVariantMap>{})));
    return DesktopShortcuts::merged(combos,
                                    DesktopShortcuts::fromKeySettings(CurrentDesktopKeySettings()));
}

} // namespace Tessaline
