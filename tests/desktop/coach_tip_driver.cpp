// SPDX-License-Identifier: MIT
// Runs the coach tips as the application does (controller, XInput2 key monitor, QML panel,
// the user's defaults file, the desktop's own key settings) and reports on stdout what happens, one
// line per fact, so that a desktop test can drive it with xdotool and check the outcome.
//
//   coach-tip-driver [--clock-offset SECONDS] [--own-window]
//
// --clock-offset moves the clock forward (to cross the eight-hour limit without waiting);
// --own-window also shows an ordinary window of this process, to check that keys typed into
// it are not seen.
//
// Lines: "monitoring", "event keydown flags=0x... chars=... key=...", "event system
// subtype=... data1=0x...", "shown <tip id>", "panel <tip id> <x> <y> <w> <h>", "message <tip
// id> <text>" (the message as the panel shows it), "button <name> <x> <y>" (screen coordinates
// of a button's centre), "closed". SIGTERM quits cleanly.
#include "CoachTipPanelPresenter.h"
#include "SymbolImageProvider.h"
#include "coach/CoachTipController.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "platform/keysettings/CurrentDesktopKeySettings.h"
#include "platform/x11/XInputKeyMonitor.h"
#include "settings/DefaultsStore.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QRasterWindow>
#include <QSocketNotifier>
#include <QtQml/qqmlextensionplugin.h>

#include <csignal>
#include <cstdio>
#include <unistd.h>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

using namespace Tessaline;

namespace {

int g_signalPipe[2] = {-1, -1};

void onTerminate(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(g_signalPipe[1], &byte, 1);
}

void say(const QString& line)
{
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

class OffsetClock final : public Clock
{
public:
    explicit OffsetClock(double offset) : m_offset(offset) {}
    double now() const override { return m_system.now() + m_offset; }

private:
    SystemClock m_system;
    double m_offset;
};

// Reports every event the real monitor delivers before handing it on.
class ReportingMonitor final : public SystemKeyMonitor
{
public:
    explicit ReportingMonitor(SystemKeyMonitor& inner) : m_inner(inner) {}
    bool start(Handler handler) override
    {
        return m_inner.start([handler](const SystemKeyEvent& event) {
            if (event.type == SystemKeyEvent::Type::KeyDown) {
                say(QStringLiteral("event keydown flags=0x%1 chars=%2 key=%3")
                        .arg(event.modifierFlags, 0, 16)
                        .arg(event.charactersIgnoringModifiers.value_or(QStringLiteral("<none>")),
                             event.keyName));
            } else {
                say(QStringLiteral("event system subtype=%1 data1=0x%2")
                        .arg(event.subtype)
                        .arg(event.data1, 0, 16));
            }
            handler(event);
        });
    }
    void stop() override { m_inner.stop(); }

private:
    SystemKeyMonitor& m_inner;
};

class OwnWindow final : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent*) override {}
};

void reportPanel(const CoachTipController& controller, const CoachTipPanelPresenter& presenter)
{
    const auto panel = controller.panel();
    QQuickView* window = panel ? presenter.window(*panel) : nullptr;
    if (!window)
        return;
    const QRect frame = window->geometry();
    say(QStringLiteral("panel %1 %2 %3 %4 %5")
            .arg(controller.shownTipId())
            .arg(frame.x())
            .arg(frame.y())
            .arg(frame.width())
            .arg(frame.height()));
    const QList<QQuickItem*> items = window->rootObject()
                                         ? window->rootObject()->findChildren<QQuickItem*>()
                                         : QList<QQuickItem*>();
    for (QQuickItem* item : items) {
        if (item->objectName() == QLatin1String("message")) {
            say(QStringLiteral("message %1 %2")
                    .arg(controller.shownTipId(), item->property("text").toString()));
        }
        if (!item->objectName().endsWith(QLatin1String("Button")))
            continue;
        const QPointF centre = item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2));
        say(QStringLiteral("button %1 %2 %3")
                .arg(item->objectName())
                .arg(qRound(centre.x()))
                .arg(qRound(centre.y())));
    }
}

int run(QGuiApplication& app, double clockOffset, bool showOwnWindow);

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption offsetOption(QStringLiteral("clock-offset"),
                                          QStringLiteral("Seconds added to the clock."),
                                          QStringLiteral("seconds"), QStringLiteral("0"));
    const QCommandLineOption ownWindowOption(QStringLiteral("own-window"),
                                             QStringLiteral("Show an ordinary window too."));
    parser.addOptions({offsetOption, ownWindowOption});
    parser.process(app);

    if (::pipe(g_signalPipe) != 0)
        return 2;
    QSocketNotifier terminate(g_signalPipe[0], QSocketNotifier::Read);
    QObject::connect(&terminate, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    std::signal(SIGTERM, onTerminate);

    const int status =
        run(app, parser.value(offsetOption).toDouble(), parser.isSet(ownWindowOption));
    // Windows and textures of closed panels go with deferred deletes: let them run before the
    // application object goes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}

namespace {

int run(QGuiApplication& app, double clockOffset, bool showOwnWindow)
{
    DefaultsStore defaults;
    OffsetClock clock(clockOffset);
    TimerScheduler scheduler;
    XInputKeyMonitor x11Monitor;
    ReportingMonitor monitor(x11Monitor);
    QQmlEngine engine;
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
    CoachTipPanelPresenter presenter(engine);
    CurrentDesktopKeySettings keySettings;
    CoachTipController controller(defaults, clock, scheduler, monitor, presenter, keySettings);

    QObject::connect(&controller, &CoachTipController::tipShown, &app, [&](const QString& tipId) {
        say(QStringLiteral("shown ") + tipId);
        const auto panel = controller.panel();
        QQuickView* window = panel ? presenter.window(*panel) : nullptr;
        if (!window)
            return;
        // Buttons have their places once the first frame is drawn.
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &app,
            [&controller, &presenter] { reportPanel(controller, presenter); },
            Qt::SingleShotConnection);
    });
    QObject::connect(&controller, &CoachTipController::shownTipIdChanged, &app,
                     [](const QString& tipId) {
                         if (tipId.isEmpty())
                             say(QStringLiteral("closed"));
                     });

    OwnWindow ownWindow;
    if (showOwnWindow) {
        ownWindow.setTitle(QStringLiteral("coach-driver-own-window"));
        ownWindow.setGeometry(100, 100, 300, 200);
        ownWindow.show();
    }

    controller.start();
    if (!controller.isMonitoring()) {
        say(QStringLiteral("monitor-unavailable"));
        return 1;
    }
    say(QStringLiteral("monitoring"));
    const int status = app.exec();
    controller.stop();
    defaults.sync();
    return status;
}

} // namespace
