// SPDX-License-Identifier: MIT
#include "LookupCommands.h"

#include "VaultCli.h"

#include "lookup/ChordConflicts.h"
#include "lookup/ShortcutLookup.h"
#include "platform/PlatformServices.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Tessaline {

namespace {

const QString kBundleId = QStringLiteral("--bundle-id");

QJsonValue optionalJson(const std::optional<QString>& value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

QString originName(BoundShortcut::Origin origin)
{
    switch (origin) {
    case BoundShortcut::Origin::App:
        return QStringLiteral("app");
    case BoundShortcut::Origin::Global:
        return QStringLiteral("global");
    case BoundShortcut::Origin::Desktop:
        return QStringLiteral("desktop");
    }
    return {};
}

// The packs a command looks at: the pack of --bundle-id (none when the vault has no pack for
// it), else every pack.
QList<AppShortcutPack> packsFor(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!arguments.has(kBundleId))
        return cli.store().data().apps;
    const std::optional<AppShortcutPack> pack = cli.store().appPack(VaultCli::appFrom(arguments));
    return pack ? QList<AppShortcutPack>{*pack} : QList<AppShortcutPack>{};
}

void printJson(VaultCli& cli, const QJsonObject& object)
{
    cli.out() << QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
}

int which(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    const QString chord = arguments.positional.value(0);
    const std::optional<QString> normalized = ChordText::normalized(chord);
    if (!normalized)
        return cli.fail(QStringLiteral("\"%1\" names no key").arg(chord), VaultCli::UsageError);
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    const ShortcutLookup lookup(packsFor(cli, arguments), cli.store().data().global,
                                readDesktopShortcuts());
    const QList<BoundShortcut> bound = lookup.which(*normalized);

    if (arguments.json) {
        QJsonArray list;
        for (const BoundShortcut& shortcut : bound)
            list.append(QJsonObject{{QStringLiteral("origin"), originName(shortcut.origin)},
                                    {QStringLiteral("source"), shortcut.source},
                                    {QStringLiteral("name"), shortcut.item.name},
                                    {QStringLiteral("chord"), shortcut.item.chord}});
        printJson(cli, QJsonObject{{QStringLiteral("chord"), *normalized},
                                   {QStringLiteral("bundleID"),
                                    optionalJson(VaultCli::appFrom(arguments).bundleID)},
                                   {QStringLiteral("shortcuts"), list}});
        return VaultCli::Success;
    }
    for (const BoundShortcut& shortcut : bound)
        cli.out() << shortcut.source << '\t' << shortcut.item.name << '\t'
                  << cli.drawChord(shortcut.item.chord) << '\n';
    if (bound.isEmpty())
        cli.err() << "Nothing is bound to " << cli.drawChord(*normalized) << ".\n";
    return VaultCli::Success;
}

int conflicts(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    const QList<ChordConflict> found =
        ChordConflicts::inPacks(packsFor(cli, arguments), readDesktopShortcuts());

    if (arguments.json) {
        QJsonArray list;
        for (const ChordConflict& conflict : found) {
            const bool desktop = conflict.kind == ChordConflict::Kind::DesktopTakes;
            list.append(QJsonObject{
                {QStringLiteral("app"), conflict.appName},
                {QStringLiteral("bundleID"), optionalJson(conflict.bundleID)},
                {QStringLiteral("name"), conflict.item.name},
                {QStringLiteral("chord"), conflict.item.chord},
                {QStringLiteral("kind"),
                 desktop ? QStringLiteral("desktop") : QStringLiteral("app")},
                {QStringLiteral("other"), conflict.other},
                {QStringLiteral("otherSource"),
                 desktop ? QJsonValue(conflict.otherSource) : QJsonValue(QJsonValue::Null)},
                {QStringLiteral("reason"), conflict.reason()}});
        }
        printJson(cli, QJsonObject{{QStringLiteral("conflicts"), list}});
        return VaultCli::Success;
    }
    for (const ChordConflict& conflict : found)
        cli.out() << conflict.appName << '\t' << cli.drawChord(conflict.item.chord) << '\t'
                  << conflict.item.name << '\t' << conflict.reason() << '\n';
    if (found.isEmpty())
        cli.err() << "No conflicts found.\n";
    return VaultCli::Success;
}

} // namespace

void addLookupCommands(VaultCli& cli)
{
    cli.addCommand(
        {QStringLiteral("which"),
         QStringLiteral("CHORD [--bundle-id ID]"),
         QStringLiteral(
             "Print every shortcut bound to CHORD: in the app's pack (every pack without\n"
             "--bundle-id), in the global list and in the desktop's own key bindings, each with\n"
             "where it comes from. CHORD is written in words (\"Ctrl+Shift+S\") or as the vault\n"
             "stores it (\"⌃ ⇧ S\"). Lines read: source <TAB> name <TAB> chord."),
         {kBundleId},
         1,
         1,
         true,
         which});
    cli.addCommand(
        {QStringLiteral("conflicts"),
         QStringLiteral("[--bundle-id ID]"),
         QStringLiteral(
             "Print the shortcuts of the app's pack (every pack without --bundle-id) whose chord\n"
             "is also bound to another item of the same pack, or is taken by the desktop itself\n"
             "so that the app never receives it. Lines read: app <TAB> chord <TAB> name <TAB>\n"
             "reason."),
         {kBundleId},
         0,
         0,
         true,
         conflicts});
}

} // namespace Tessaline
