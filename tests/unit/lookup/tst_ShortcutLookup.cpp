// SPDX-License-Identifier: MIT
// "What does this key do?" over app packs, the global list and the desktop's bindings.
#include "lookup/ShortcutLookup.h"

#include "../vault/VaultTestSupport.h"

#include <QtTest>

using namespace Tessaline;

namespace {

using VaultTestSupport::item;

AppShortcutPack pack(const QString& name, const QString& bundleID, QList<ShortcutItem> items)
{
    AppShortcutPack result;
    result.name = name;
    result.bundleID = bundleID;
    result.shortcuts = std::move(items);
    return result;
}

using Origin = BoundShortcut::Origin;

BoundShortcut bound(Origin origin, const QString& source, const QString& name, const QString& chord)
{
    BoundShortcut shortcut{origin, source, item(name, chord)};
    if (origin == Origin::Desktop)
        shortcut.item.note = u"The desktop takes this key"_qs;
    return shortcut;
}

} // namespace

class TestShortcutLookup : public QObject
{
    Q_OBJECT

private slots:
    void listsEverySourceInOrder()
    {
        const QList<AppShortcutPack> packs = {
            pack(u"Kate"_qs, u"org.kde.kate"_qs,
                 {item(u"Save"_qs, u"⌃ S"_qs), item(u"Save As"_qs, u"⌃ ⇧ S"_qs),
                  item(u"Save Session"_qs, u"Ctrl+S"_qs)}),
        };
        const QList<ShortcutItem> global = {item(u"Screenshot"_qs, u"⇧ Print"_qs),
                                            item(u"Store"_qs, u"⌃S"_qs)};
        const QList<DesktopShortcut> desktop = {
            {u"Save screen"_qs, u"Desktop: org.example.keys"_qs, u"⌃ S"_qs},
            {u"Close"_qs, u"Desktop: org.example.keys"_qs, u"⌥ F4"_qs},
        };
        const ShortcutLookup lookup(packs, global, desktop);
        QCOMPARE(lookup.size(), 7);

        const QList<BoundShortcut> expected = {
            bound(Origin::App, u"Kate"_qs, u"Save"_qs, u"⌃ S"_qs),
            bound(Origin::App, u"Kate"_qs, u"Save Session"_qs, u"Ctrl+S"_qs),
            bound(Origin::Global, u"Global"_qs, u"Store"_qs, u"⌃S"_qs),
            bound(Origin::Desktop, u"Desktop: org.example.keys"_qs, u"Save screen"_qs, u"⌃ S"_qs),
        };
        // Both written forms of the chord ask the same question.
        QCOMPARE(lookup.which(u"Ctrl+S"_qs), expected);
        QCOMPARE(lookup.which(u"⌃ S"_qs), expected);
        QCOMPARE(lookup.which(u"ctrl s"_qs), expected);
        QCOMPARE(lookup.which(u"Alt+F4"_qs),
                 (QList<BoundShortcut>{bound(Origin::Desktop, u"Desktop: org.example.keys"_qs,
                                             u"Close"_qs, u"⌥ F4"_qs)}));
        QCOMPARE(lookup.which(u"Shift+Print"_qs).size(), 1);
    }

    void onlyTheGivenPacksAreAsked()
    {
        const AppShortcutPack kate =
            pack(u"Kate"_qs, u"org.kde.kate"_qs, {item(u"Save"_qs, u"⌃ S"_qs)});
        const AppShortcutPack gedit =
            pack(u"Gedit"_qs, u"org.gnome.gedit"_qs, {item(u"Save file"_qs, u"⌃ S"_qs)});
        QCOMPARE(ShortcutLookup({kate}, {}, {}).which(u"Ctrl+S"_qs).size(), 1);
        const QList<BoundShortcut> both = ShortcutLookup({kate, gedit}, {}, {}).which(u"⌃ S"_qs);
        QCOMPARE(both.size(), 2);
        QCOMPARE(both.at(1).source, u"Gedit"_qs);
    }

    void unboundAndKeylessChordsFindNothing()
    {
        const ShortcutLookup lookup({pack(u"Kate"_qs, u"k"_qs, {item(u"Save"_qs, u"⌃ S"_qs)})},
                                    {item(u"Free text"_qs, u"Press twice"_qs)}, {});
        QVERIFY(lookup.which(u"Ctrl+Shift+S"_qs).isEmpty());
        QVERIFY(lookup.which(u"Ctrl"_qs).isEmpty());
        QVERIFY(lookup.which(QString()).isEmpty());
        // A chord that is free text is still found by the same text.
        QCOMPARE(lookup.which(u"press twice"_qs).size(), 1);
    }

    void modifiersMustMatchExactly()
    {
        const ShortcutLookup lookup(
            {pack(u"Kate"_qs, u"k"_qs, {item(u"Save"_qs, u"⌃ S"_qs), item(u"Sort"_qs, u"S"_qs)})},
            {}, {});
        QCOMPARE(lookup.which(u"S"_qs).size(), 1);
        QCOMPARE(lookup.which(u"S"_qs).at(0).item.name, u"Sort"_qs);
        QVERIFY(lookup.which(u"Ctrl+Alt+S"_qs).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestShortcutLookup)
#include "tst_ShortcutLookup.moc"
