// SPDX-License-Identifier: MIT
#include "RunCommands.h"

#include "VaultCli.h"

#include "commands/ShortcutRunner.h"
#include "platform/PlatformServices.h"
#include "platform/Scheduler.h"
#include "platform/atspi/AtspiMenuCommandRunner.h"
#include "platform/desktop/DesktopEntries.h"
#include "platform/inert/InertKeyInjector.h"
#include "platform/wayland/VirtualKeyboardInjector.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XTestKeyInjector.h"

#include <QEventLoop>

#include <memory>

namespace Tessaline {

namespace {

const QString kBundleId = QStringLiteral("--bundle-id");

std::unique_ptr<KeyInjector> sessionKeyInjector()
{
    if (X11Connection::isAvailable())
        return std::make_unique<XTestKeyInjector>();
    // On Wayland only the compositor's virtual keyboard types at once; the desktop portal's
    // session starts too late for a one-off command.
    if (std::unique_ptr<VirtualKeyboardInjector> keyboard = VirtualKeyboardInjector::create())
        return keyboard;
    return std::make_unique<InertKeyInjector>();
}

// The vault's row of that name and chord in the app's pack (a scanned row runs through its
// menu); a row the vault does not hold is typed as its chord.
ShortcutItem rowToRun(VaultCli& cli, const TrackedApp& app, const QString& name,
                      const QString& chord)
{
    if (cli.store().lastErrorText().isEmpty()) {
        if (const std::optional<AppShortcutPack> pack = cli.store().appPack(app)) {
            for (const ShortcutItem& item : pack->shortcuts) {
                if (item.name == name && item.chord == chord)
                    return item;
            }
        }
    }
    ShortcutItem item;
    item.name = name;
    item.chord = chord;
    return item;
}

int run(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!arguments.has(kBundleId))
        return cli.fail(QStringLiteral("give the app's --bundle-id"), VaultCli::UsageError);
    const QString name = arguments.positional.at(0);
    const QString given = arguments.positional.at(1);
    // Chords may be given in words ("Ctrl+Shift+N") or in the stored symbols ("⌃ ⇧ N").
    const QString chord = ChordText::symbolQuery(given).value_or(given.trimmed());

    DesktopEntries entries;
    const std::unique_ptr<Workspace> workspace = createWorkspace(entries);
    TrackedApp app = VaultCli::appFrom(arguments);
    const QList<RunningApplication> running = workspace->runningApplications(*app.bundleID);
    if (!running.isEmpty() && running.first().localizedName)
        app.name = *running.first().localizedName;

    AtspiMenuCommandRunner menus;
    const std::unique_ptr<KeyInjector> keys = sessionKeyInjector();
    TimerScheduler scheduler;
    ShortcutRunner runner(*workspace, menus, *keys, scheduler);

    std::optional<Expected<void>> outcome;
    QEventLoop loop;
    runner.run(rowToRun(cli, app, name, chord), app, [&](const Expected<void>& result) {
        outcome = result;
        loop.quit();
    });
    if (!outcome)
        loop.exec();
    if (!*outcome)
        return cli.fail(outcome->error());
    cli.out() << QStringLiteral("Ran “%1” in %2.").arg(name, app.name) << '\n';
    return VaultCli::Success;
}

} // namespace

bool runCommandRequested(const QStringList& arguments)
{
    return VaultCli::commandIn(arguments) == QStringLiteral("run");
}

void addRunCommands(VaultCli& cli)
{
    cli.addCommand(
        {QStringLiteral("run"),
         QStringLiteral("NAME CHORD --bundle-id ID"),
         QStringLiteral(
             "Run a shortcut in the running application with bundle id ID, as Ctrl+Return does\n"
             "in the cheat sheet: the application comes to the front, then a row a menu scan\n"
             "found (the vault's row of that NAME and CHORD) runs its menu item, and any other\n"
             "row has its CHORD typed. CHORD is written in words or in symbols. Exits with 1\n"
             "and the reason when it cannot (not running, item disabled or gone, a key not on\n"
             "the keyboard layout)."),
         {kBundleId},
         2,
         2,
         false,
         run});
}

} // namespace Tessaline
