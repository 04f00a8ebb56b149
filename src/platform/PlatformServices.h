// SPDX-License-Identifier: MIT
#pragma once

#include "lookup/DesktopShortcut.h"
#include "platform/AccessibilityElementFactory.h"
#include "platform/AccessibilityTrust.h"
#include "platform/AlertPresenter.h"
#include "platform/AppIconLookup.h"
#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "platform/DesktopKeySettings.h"
#include "platform/KeyInjector.h"
#include "platform/MenuCommandRunner.h"
#include "platform/Scheduler.h"
#include "platform/SystemKeyMonitor.h"
#include "platform/TextInserter.h"
#include "platform/TrayAppearance.h"
#include "platform/WindowHints.h"
#include "platform/Workspace.h"

#include <hotkey/HotKeyService.h>

#include <memory>

namespace Tessaline {

class DefaultsStore;
class DesktopEntryLookup;

/// Every desktop service the application runs on, made for the session it runs in. Callers
/// see the interfaces only; which backend serves them is decided once, by
/// createPlatformServices().
struct PlatformServices
{
    PlatformServices();
    ~PlatformServices();
    PlatformServices(const PlatformServices&) = delete;
    PlatformServices& operator=(const PlatformServices&) = delete;

    /// What the services read from desktop entries; declared first, so it outlives them.
    std::unique_ptr<DesktopEntryLookup> desktopEntries;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<AccessibilityTrust> trust;
    std::unique_ptr<AccessibilityElementFactory> elements;
    std::unique_ptr<AlertPresenter> alerts;
    std::unique_ptr<SystemKeyMonitor> keyMonitor;
    std::unique_ptr<Clipboard> clipboard;
    std::unique_ptr<KeyInjector> keyInjector;
    /// Runs menu items of other applications (over the accessibility bus, in every session).
    std::unique_ptr<MenuCommandRunner> menuCommands;
    /// Inserts text into focused fields directly; absent where keystrokes are posted instead.
    std::unique_ptr<TextInserter> textInserter;
    std::unique_ptr<Clock> clock;
    std::unique_ptr<Scheduler> scheduler;
    std::unique_ptr<HotKey::HotKeyService> hotKeys;
    std::unique_ptr<WindowHints> windowHints;
    std::unique_ptr<TrayAppearance> trayAppearance;
    std::unique_ptr<AppIconLookup> appIcons;
    /// The desktop's own key bindings, which the coach tips name.
    std::unique_ptr<DesktopKeySettings> keySettings;
};

/// Looks at the session once and builds its services: on X11 (Qt's platform really is xcb)
/// the X11 backend; on Wayland the accessibility bus tells which applications run and which is
/// in front, and keys are typed through the desktop portal's remote-desktop session where the
/// portal offers one; the services a session has no backend for do nothing harmful (no key
/// grabs, no injected keys). Menus (AT-SPI), desktop entries and Qt's own services work in
/// every session. `defaults`, when given, keeps what the desktop hands out to be shown again
/// at the next start (the remote-desktop session's restore token) and must outlive the
/// services. Needs the QGuiApplication to exist.
std::unique_ptr<PlatformServices> createPlatformServices(DefaultsStore* defaults = nullptr);

/// The workspace of this session alone, for the command-line companion: X11's windows when Qt
/// runs on xcb, else the applications of the accessibility bus. `entries` must outlive it.
std::unique_ptr<Workspace> createWorkspace(const DesktopEntryLookup& entries);

/// The desktop's own key bindings, read from its settings without a display, for the
/// command-line companion: the key-binding schemas the hot-key service reports on X11, then
/// the bindings of the running desktop's key settings.
QList<DesktopShortcut> readDesktopShortcuts();

} // namespace Tessaline
