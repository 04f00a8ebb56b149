// SPDX-License-Identifier: MIT
// The tray application: builds the desktop services, hands them to the delegate and runs.
#include "AppDelegate.h"
#include "AppIconProvider.h"
#include "CoachTipPanelPresenter.h"
#include "ControlInterface.h"
#include "SymbolImageProvider.h"
#include "hotkey/HotKeysController.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "platform/atspi/AtspiAccessibilityTrust.h"
#include "platform/atspi/AtspiElementFactory.h"
#include "platform/desktop/DesktopAppIcon.h"
#include "platform/desktop/DesktopEntries.h"
#include "platform/qt/ClipboardAdapter.h"
#include "platform/qt/MessageBoxAlertPresenter.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/XInputKeyMonitor.h"
#include "platform/x11/XTestKeyInjector.h"
#include "platform/x11/XcbHotKeyService.h"
#include "settings/DefaultsStore.h"

#include <QApplication>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessaline"));
    QApplication::setDesktopFileName(QStringLiteral("org.tessaline.Tessaline"));
    // Tessaline lives in the tray: closing its last window does not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    // Tessaline's windows are small and short-lived (the HUD is built anew at every showing), so
    // they are drawn in software: no graphics context to create per window and no shaders to
    // compile, which keeps the HUD's first frame quick and its memory flat. QT_QUICK_BACKEND or
    // QSG_RHI_BACKEND still choose another renderer.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") &&
        qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);

    using namespace Tessaline;
    DefaultsStore defaults;
    DesktopEntries entries;
    X11Workspace workspace(entries);
    AtspiAccessibilityTrust trust;
    AtspiElementFactory elements;
    MessageBoxAlertPresenter alerts;
    XInputKeyMonitor keyMonitor;
    ClipboardAdapter clipboard;
    XTestKeyInjector keyInjector;
    SystemClock clock;
    TimerScheduler scheduler;
    XcbHotKeyService hotKeyService;
    HotKey::HotKeysController::setService(&hotKeyService);

    QQmlEngine engine;
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
    DesktopAppIcon appIcons(entries);
    engine.addImageProvider(QStringLiteral("appicon"),
                            new AppIconProvider([&appIcons](const QString& bundleID) {
                                return appIcons.iconName(bundleID);
                            }));
    // The coach tips are drawn by the same engine as every other view.
    CoachTipPanelPresenter tipPresenter(engine);

    AppDelegate delegate(AppDelegate::Platform{workspace, trust, elements, alerts, keyMonitor,
                                               tipPresenter, clipboard, keyInjector, clock,
                                               scheduler, defaults, engine});
    ControlInterface control(delegate);
    if (!control.registerOnSessionBus()) {
        // Another Tessaline runs: show its HUD instead of a second tray icon.
        return ControlInterface::showHUDOfRunningInstance() ? 0 : 1;
    }

    QObject::connect(&application, &QCoreApplication::aboutToQuit, &delegate,
                     &AppDelegate::applicationWillTerminate);
    delegate.applicationDidFinishLaunching();
    const int status = QApplication::exec();
    HotKey::HotKeysController::setService(nullptr);
    return status;
}
