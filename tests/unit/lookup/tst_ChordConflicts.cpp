// SPDX-License-Identifier: MIT
// Chords bound twice in one app, and app chords the desktop takes first.
#include "lookup/ChordConflicts.h"

#include "../vault/VaultTestSupport.h"

#include <QtTest>

using namespace Tessaline;

namespace {

using VaultTestSupport::item;

AppShortcutPack kate(QList<ShortcutItem> items)
{
    AppShortcutPack pack;
    pack.name = u"Kate"_qs;
    pack.bundleID = u"org.kde.kate"_qs;
    pack.shortcuts = std::move(items);
    return pack;
}

} // namespace

class TestChordConflicts : public QObject
{
    Q_OBJECT

private slots:
    void sameChordTwiceInOneApp()
    {
        const AppShortcutPack pack = kate({item(u"Save"_qs, u"⌃ S"_qs), item(u"Open"_qs, u"⌃ O"_qs),
                                           item(u"Save Session"_qs, u"Ctrl+S"_qs)});
        const QList<ChordConflict> conflicts = ChordConflicts::inPack(pack, {});
        QCOMPARE(conflicts.size(), 2);
        QCOMPARE(conflicts.at(0).item.name, u"Save"_qs);
        QCOMPARE(conflicts.at(0).other, u"Save Session"_qs);
        QCOMPARE(conflicts.at(0).appName, u"Kate"_qs);
        QCOMPARE(conflicts.at(0).bundleID, std::optional<QString>(u"org.kde.kate"_qs));
        QCOMPARE(conflicts.at(0).reason(), u"Also bound to “Save Session” in this app"_qs);
        QCOMPARE(conflicts.at(1).item.name, u"Save Session"_qs);
        QCOMPARE(conflicts.at(1).reason(), u"Also bound to “Save” in this app"_qs);
    }

    void theSameShortcutTwiceIsNoConflict()
    {
        const AppShortcutPack pack =
            kate({item(u"Save"_qs, u"⌃ S"_qs), item(u"Save"_qs, u"Ctrl+S"_qs)});
        QVERIFY(ChordConflicts::inPack(pack, {}).isEmpty());
    }

    void desktopTakesTheChord()
    {
        const AppShortcutPack pack =
            kate({item(u"Close Window"_qs, u"⌥ F4"_qs), item(u"Quit"_qs, u"⌃ Q"_qs)});
        const QList<DesktopShortcut> desktop = {
            {u"Close"_qs, u"Desktop: org.gnome.desktop.wm.keybindings"_qs, u"⌥ F4"_qs}};
        const QList<ChordConflict> conflicts = ChordConflicts::inPack(pack, desktop);
        QCOMPARE(conflicts.size(), 1);
        QCOMPARE(conflicts.at(0).kind, ChordConflict::Kind::DesktopTakes);
        QCOMPARE(conflicts.at(0).item.name, u"Close Window"_qs);
        QCOMPARE(conflicts.at(0).otherSource, u"Desktop: org.gnome.desktop.wm.keybindings"_qs);
        QCOMPARE(conflicts.at(0).reason(), u"The desktop takes this key: Close"_qs);
    }

    void reasonsGatherByItem()
    {
        const AppShortcutPack pack =
            kate({item(u"Save"_qs, u"⌃ S"_qs), item(u"Store"_qs, u"⌃ S"_qs),
                  item(u"Quit"_qs, u"⌃ Q"_qs)});
        const QList<DesktopShortcut> desktop = {{u"Snap"_qs, u"Desktop"_qs, u"Ctrl+S"_qs}};
        const QHash<QString, QStringList> reasons =
            ChordConflicts::reasonsByItem(ChordConflicts::inPack(pack, desktop));
        QCOMPARE(reasons.size(), 2);
        QCOMPARE(reasons.value(item(u"Save"_qs, u"⌃ S"_qs).id()),
                 (QStringList{u"Also bound to “Store” in this app"_qs,
                              u"The desktop takes this key: Snap"_qs}));
        QVERIFY(!reasons.contains(item(u"Quit"_qs, u"⌃ Q"_qs).id()));
    }

    void packsAreCheckedOneByOne()
    {
        AppShortcutPack gedit;
        gedit.name = u"Gedit"_qs;
        gedit.shortcuts = {item(u"Save file"_qs, u"⌃ S"_qs)};
        // The same chord in two apps is no conflict.
        QVERIFY(
            ChordConflicts::inPacks({kate({item(u"Save"_qs, u"⌃ S"_qs)}), gedit}, {}).isEmpty());
        gedit.shortcuts.append(item(u"Save all"_qs, u"⌃ S"_qs));
        const QList<ChordConflict> conflicts =
            ChordConflicts::inPacks({kate({item(u"Save"_qs, u"⌃ S"_qs)}), gedit}, {});
        QCOMPARE(conflicts.size(), 2);
        QCOMPARE(conflicts.at(0).appName, u"Gedit"_qs);
        QCOMPARE(conflicts.at(0).bundleID, std::nullopt);
    }
};

QTEST_APPLESS_MAIN(TestChordConflicts)
#include "tst_ChordConflicts.moc"
