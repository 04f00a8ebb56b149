// SPDX-License-Identifier: MIT
// The tray application: reads its command line, builds the desktop services for the session,
// hands them to the delegate and runs.
#include "AppCommandLine.h"
#include "AppDelegate.h"
#include "AppIconProvider.h"
#include "CoachTipPanelPresenter.h"
#include "ControlInterface.h"
#include "ControlsStyle.h"
#include "EventLoopStallProbe.h"
#include "SymbolImageProvider.h"
#include "hotkey/HotKeysController.h"
#include "platform/PlatformServices.h"
#include "settings/DefaultsStore.h"

#include <QApplication>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

int main(int argc, char** argv)
{
    Tessaline::AppCommandLine commandLine(Tessaline::AppCommandLine::arguments(argc, argv));
    if (!commandLine.startsTray()) {
        // Help, version and forwarding to the running instance need no display.
        QCoreApplication core(argc, argv);
        return commandLine.run();
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessaline"));
    QApplication::setDesktopFileName(QStringLiteral("org.tessaline.Tessaline"));
    // Tessaline lives in the tray: closing its last window does not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    // The desktop's own controls style where one is installed, else Fusion in its palette.
    QQuickStyle::setStyle(Tessaline::ControlsStyle::forThisDesktop());
    // Tessaline's windows are small and short-lived (the HUD is built anew at every showing), so
    // they are drawn in software: no graphics context to create per window and no shaders to
    // compile, which keeps the HUD's first frame quick and its memory flat. QT_QUICK_BACKEND or
    // QSG_RHI_BACKEND still choose another renderer.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") &&
        qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);

    using namespace Tessaline;
    DefaultsStore defaults;
    const std::unique_ptr<PlatformServices> platform = createPlatformServices(&defaults);
    HotKey::HotKeysController::setService(platform->hotKeys.get());

    QQmlEngine engine;
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
    engine.addImageProvider(QStringLiteral("appicon"),
                            new AppIconProvider([&platform](const QString& bundleID) {
                                return platform->appIcons->iconName(bundleID);
                            }));
    // The coach tips are drawn by the same engine as every other view.
    CoachTipPanelPresenter tipPresenter(engine);

    AppDelegate delegate(AppDelegate::Platform{
        *platform->workspace, *platform->trust, *platform->elements, *platform->alerts,
        *platform->keyMonitor, tipPresenter, *platform->clipboard, *platform->keyInjector,
        *platform->windowHints, *platform->clock, *platform->scheduler, defaults, engine,
        *platform->keySettings, *platform->trayAppearance, platform->textInserter.get(),
        platform->menuCommands.get()});
    ControlInterface control(delegate);
    if (!control.registerOnSessionBus()) {
        // Another Tessaline runs: show its HUD instead of a second tray icon (at login, leave
        // it be).
        if (commandLine.atLogin())
            return 0;
        return ControlInterface::showHUDOfRunningInstance() ? 0 : 1;
    }

    QObject::connect(&application, &QCoreApplication::aboutToQuit, &delegate,
                     &AppDelegate::applicationWillTerminate);
    delegate.applicationDidFinishLaunching(commandLine.atLogin() ? AppDelegate::Launch::AtLogin
                                                                 : AppDelegate::Launch::ByUser);
    // Benchmarks ask for this with QT_LOGGING_RULES="tessaline.stall.debug=true".
    EventLoopStallProbe stallProbe;
    stallProbe.startIfEnabled();
    const int status = QApplication::exec();
    HotKey::HotKeysController::setService(nullptr);
    return status;
}
