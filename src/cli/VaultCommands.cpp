// SPDX-License-Identifier: MIT
#include "VaultCommands.h"

#include "VaultCli.h"

#include "search/FuzzyMatch.h"
#include "vault/VaultBrowserIndex.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Tessaline {

namespace {

const QString kApp = QStringLiteral("--app");
const QString kBundleId = QStringLiteral("--bundle-id");

QJsonObject itemJson(const ShortcutItem& item)
{
    QJsonObject object{{QStringLiteral("name"), item.name},
                       {QStringLiteral("chord"), item.chord},
                       {QStringLiteral("detailText"), item.detailText()}};
    if (item.favorite)
        object.insert(QStringLiteral("favorite"), *item.favorite);
    if (item.menu)
        object.insert(QStringLiteral("menu"), *item.menu);
    if (item.tags)
        object.insert(QStringLiteral("tags"), QJsonArray::fromStringList(*item.tags));
    if (item.note)
        object.insert(QStringLiteral("note"), *item.note);
    if (item.source)
        object.insert(QStringLiteral("source"), *item.source);
    return object;
}

QJsonValue optionalJson(const std::optional<QString>& value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

void printJson(VaultCli& cli, const QJsonObject& object)
{
    cli.out() << QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
}

QString itemLine(VaultCli& cli, const ShortcutItem& item)
{
    return QStringLiteral("  %1\t%2\t%3")
        .arg(cli.drawChord(item.chord), item.name, item.detailText());
}

int path(VaultCli& cli, const VaultCli::Arguments&)
{
    cli.out() << VaultStore::Configuration::standard().dataFilePath << '\n';
    return VaultCli::Success;
}

int sections(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    VaultStore& store = cli.store();
    const TrackedApp app = VaultCli::appFrom(arguments);
    const QString query = arguments.positional.value(0);
    store.setFilter(query);
    const QList<ShortcutSection> found = store.sections(app);
    const bool ranked = !query.trimmed().isEmpty();

    if (arguments.json) {
        QJsonArray list;
        for (const ShortcutSection& section : found) {
            QJsonArray items;
            for (const ShortcutItem& item : section.shortcuts) {
                QJsonObject object = itemJson(item);
                if (ranked)
                    object.insert(QStringLiteral("score"),
                                  double(FuzzyMatch::score(query, item).value_or(0)));
                items.append(object);
            }
            list.append(QJsonObject{{QStringLiteral("title"), section.title},
                                    {QStringLiteral("shortcuts"), items}});
        }
        printJson(cli, QJsonObject{{QStringLiteral("app"), app.name},
                                   {QStringLiteral("bundleID"), optionalJson(app.bundleID)},
                                   {QStringLiteral("query"), query},
                                   {QStringLiteral("sections"), list}});
        return VaultCli::Success;
    }
    bool first = true;
    for (const ShortcutSection& section : found) {
        if (!first)
            cli.out() << '\n';
        first = false;
        cli.out() << section.title << '\n';
        for (const ShortcutItem& item : section.shortcuts) {
            cli.out() << itemLine(cli, item);
            if (ranked)
                cli.out() << "\tscore " << FuzzyMatch::score(query, item).value_or(0);
            cli.out() << '\n';
        }
    }
    if (found.isEmpty())
        cli.err() << "No shortcuts found.\n";
    return VaultCli::Success;
}

int rows(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    VaultStore& store = cli.store();
    const QString query = arguments.positional.value(0);
    const QList<VaultShortcutRow> all = store.allShortcutRows();
    const QList<BrowserGroup> groups = VaultBrowserIndex(all).groupedRows(query);

    if (arguments.json) {
        QJsonArray list;
        for (const BrowserGroup& group : groups) {
            QJsonArray items;
            for (const VaultShortcutRow& row : group.rows) {
                QJsonObject object = itemJson(row.shortcut);
                object.insert(QStringLiteral("appName"), row.appName);
                object.insert(QStringLiteral("bundleID"), optionalJson(row.bundleID));
                items.append(object);
            }
            list.append(
                QJsonObject{{QStringLiteral("name"), group.name}, {QStringLiteral("rows"), items}});
        }
        printJson(cli, QJsonObject{{QStringLiteral("appPacks"), double(store.data().apps.size())},
                                   {QStringLiteral("shortcuts"), double(all.size())},
                                   {QStringLiteral("query"), query},
                                   {QStringLiteral("groups"), list}});
        return VaultCli::Success;
    }
    cli.out() << store.data().apps.size() << " app packs • " << all.size() << " shortcuts\n";
    for (const BrowserGroup& group : groups) {
        cli.out() << '\n' << group.name << " (" << group.rows.size() << ")\n";
        for (const VaultShortcutRow& row : group.rows)
            cli.out() << itemLine(cli, row.shortcut) << '\n';
    }
    if (groups.isEmpty())
        cli.err() << "No shortcuts found.\n";
    return VaultCli::Success;
}

int favorite(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    VaultStore& store = cli.store();
    const TrackedApp app = VaultCli::appFrom(arguments);
    ShortcutItem wanted;
    wanted.name = arguments.positional.at(0);
    const QString typedChord = arguments.positional.at(1);
    wanted.chord = typedChord;
    std::optional<ShortcutItem> stored = store.storedItem(wanted.id(), app);
    // The chord may also be written in words, as the text output shows it ("Ctrl+Shift+S").
    if (const std::optional<QString> symbols = ChordText::symbolQuery(typedChord);
        !stored && symbols) {
        wanted.chord = *symbols;
        stored = store.storedItem(wanted.id(), app);
    }
    if (!stored) {
        return cli.fail(
            QStringLiteral("no shortcut named \"%1\" with chord \"%2\" in the pack of %3 "
                           "or the global list")
                .arg(wanted.name, typedChord, app.name));
    }
    store.toggleFavorite(*stored, app);
    if (const int code = cli.finishWithStoreStatus())
        return code;
    // The change was made to the newest file, where another program may have removed it.
    const std::optional<ShortcutItem> changed = store.storedItem(wanted.id(), app);
    if (!changed) {
        return cli.fail(QStringLiteral("the shortcut \"%1\" with chord \"%2\" was removed from "
                                       "the vault meanwhile; nothing was changed")
                            .arg(wanted.name, typedChord));
    }
    const ShortcutItem now = *changed;
    if (arguments.json) {
        printJson(cli, itemJson(now));
    } else {
        cli.out() << now.name << " (" << cli.drawChord(now.chord) << ") is "
                  << (now.isFavorite() ? "now a favorite" : "no longer a favorite") << '\n';
    }
    return VaultCli::Success;
}

int prune(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!arguments.has(kBundleId))
        return cli.fail(QStringLiteral("usage: tessaline-vault prune --bundle-id ID"),
                        VaultCli::UsageError);
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    VaultStore& store = cli.store();
    const TrackedApp app = VaultCli::appFrom(arguments);
    if (!store.appPack(app)) {
        return cli.fail(QStringLiteral("no app with bundle id \"%1\" in the vault")
                            .arg(arguments.option(kBundleId)));
    }
    const QList<ShortcutItem> removed = store.pruneStaleItems(app);
    if (const int code = cli.finishWithStoreStatus())
        return code;
    if (arguments.json) {
        QJsonArray items;
        for (const ShortcutItem& item : removed)
            items.append(itemJson(item));
        printJson(cli, QJsonObject{{QStringLiteral("app"), app.name},
                                   {QStringLiteral("bundleID"), optionalJson(app.bundleID)},
                                   {QStringLiteral("removed"), items}});
        return VaultCli::Success;
    }
    for (const ShortcutItem& item : removed)
        cli.out() << item.name << '\t' << cli.drawChord(item.chord) << '\n';
    if (removed.isEmpty())
        cli.err() << "Nothing to prune.\n";
    return VaultCli::Success;
}

// Replacing a vault that failed to load keeps the old file beside it; say where.
void reportDamagedCopy(VaultCli& cli, bool wasDamaged)
{
    if (wasDamaged)
        cli.err() << "The damaged vault was kept as " << cli.store().damagedCopyPath() << '\n';
}

int importFile(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    VaultStore& store = cli.store();
    const bool wasDamaged = store.dataFileIsDamaged();
    const QString file = QFileInfo(arguments.positional.at(0)).absoluteFilePath();
    store.importData(file);
    if (const int code = cli.finishWithStoreStatus())
        return code;
    reportDamagedCopy(cli, wasDamaged);
    cli.out() << "Imported " << file << " into " << store.dataFilePath()
              << ", replacing the whole vault\n";
    return VaultCli::Success;
}

int exportFile(VaultCli& cli, const VaultCli::Arguments& arguments)
{
    if (!cli.requireHealthyVault())
        return VaultCli::VaultFailure;
    VaultStore& store = cli.store();
    const QString file = QFileInfo(arguments.positional.at(0)).absoluteFilePath();
    if (file == QFileInfo(store.dataFilePath()).absoluteFilePath())
        return cli.fail(QStringLiteral("%1 is the vault itself").arg(file), VaultCli::UsageError);
    store.exportData(file);
    if (const int code = cli.finishWithStoreStatus())
        return code;
    cli.out() << "Exported " << store.dataFilePath() << " to " << file << '\n';
    return VaultCli::Success;
}

int reset(VaultCli& cli, const VaultCli::Arguments&)
{
    VaultStore& store = cli.store();
    const bool wasDamaged = store.dataFileIsDamaged();
    store.resetToSeed();
    if (const int code = cli.finishWithStoreStatus())
        return code;
    reportDamagedCopy(cli, wasDamaged);
    cli.out() << "Reset " << store.dataFilePath()
              << " to the seed vault, replacing the whole vault\n";
    return VaultCli::Success;
}

} // namespace

void addVaultCommands(VaultCli& cli)
{
    cli.addCommand({QStringLiteral("path"),
                    QString(),
                    QStringLiteral("Print the location of the vault file (creates nothing)."),
                    {},
                    0,
                    0,
                    false,
                    path});
    cli.addCommand(
        {QStringLiteral("sections"),
         QStringLiteral("[--app NAME] [--bundle-id ID] [QUERY]"),
         QStringLiteral(
             "Print the cheat sheet of an application as the HUD shows it: its favorites, its\n"
             "shortcuts, the shortcuts discovered from its menus, then the global ones. The pack\n"
             "is found by bundle id (the desktop-file id, e.g. org.kde.kate), else by name.\n"
             "Without --app or --bundle-id only the global section applies. With a QUERY the\n"
             "items are filtered and ranked by fuzzy matching and each line ends with its score.\n"
             "Lines read: chord <TAB> name <TAB> description [<TAB> score N]."),
         {kApp, kBundleId},
         0,
         1,
         true,
         sections});
    cli.addCommand(
        {QStringLiteral("rows"),
         QStringLiteral("[QUERY]"),
         QStringLiteral(
             "Print every shortcut of the vault grouped by application, as the browser lists\n"
             "them: the global group first, then the apps by name. A QUERY keeps the rows whose\n"
             "app name, bundle id or shortcut matches it."),
         {},
         0,
         1,
         true,
         rows});
    cli.addCommand(
        {QStringLiteral("favorite"),
         QStringLiteral("NAME CHORD [--app NAME] [--bundle-id ID]"),
         QStringLiteral(
             "Mark the shortcut with this exact name and chord as a favorite, or unmark it when\n"
             "it is one. CHORD is written as the vault stores it (\"⌃ ⇧ S\") or in words\n"
             "(\"Ctrl+Shift+S\"). It is looked up in the app's pack first, then in the global\n"
             "list. The change is made to the newest vault file under its lock, so edits made\n"
             "at the same time by Tessaline or other commands are kept."),
         {kApp, kBundleId},
         2,
         2,
         true,
         favorite});
    cli.addCommand(
        {QStringLiteral("import"),
         QStringLiteral("FILE"),
         QStringLiteral(
             "Replace the whole vault with the vault file FILE: the file is replaced, not merged,\n"
             "so edits made elsewhere meanwhile are replaced too. An invalid FILE changes\n"
             "nothing. A vault file that could not be read is kept as keybinds.json.damaged."),
         {},
         1,
         1,
         false,
         importFile});
    cli.addCommand({QStringLiteral("export"),
                    QStringLiteral("FILE"),
                    QStringLiteral("Write the vault to FILE (replacing FILE)."),
                    {},
                    1,
                    1,
                    false,
                    exportFile});
    cli.addCommand(
        {QStringLiteral("reset"),
         QString(),
         QStringLiteral(
             "Replace the whole vault with the bundled seed vault: the file is replaced, not\n"
             "merged. A vault file that could not be read is kept as keybinds.json.damaged."),
         {},
         0,
         0,
         false,
         reset});
    cli.addCommand(
        {QStringLiteral("prune"),
         QStringLiteral("--bundle-id ID"),
         QStringLiteral(
             "Remove from the app's pack the shortcuts found by an earlier menu scan that its\n"
             "last scan no longer found: the command left its menus, or its chord changed.\n"
             "Lines read: name <TAB> chord, one for each shortcut removed. Exits with 1 when the\n"
             "vault has no pack for ID."),
         {kBundleId},
         0,
         0,
         true,
         prune});
}

} // namespace Tessaline
