// SPDX-License-Identifier: MIT
// Reading menu trees into shortcuts: key names, chords, the walk, paths and duplicates.
#include "FakeAccessibilityElement.h"
#include "scan/MenuReader.h"

#include <QTest>

using namespace Tessaline;
using namespace Tessaline::Testing;

class TestMenuReader : public QObject
{
    Q_OBJECT

    // Reads a menu bar with the given top-level menus and returns its shortcuts.
    static QList<ShortcutItem> scanMenus(const QList<FakeElementPtr>& menus)
    {
        return MenuReader::readMenuBar(makeMenu(QVariant(), menus));
    }

    static QStringList chords(const QList<ShortcutItem>& items)
    {
        QStringList list;
        for (const ShortcutItem& item : items)
            list.append(item.name + QStringLiteral(" = ") + item.chord + QStringLiteral(" @ ") +
                        item.menu.value_or(QStringLiteral("<none>")));
        return list;
    }

private Q_SLOTS:
    void normalizedKey_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("expected");
        QTest::addRow("carriage return") << QStringLiteral("\r") << QStringLiteral("Return");
        QTest::addRow("tab") << QStringLiteral("\t") << QStringLiteral("Tab");
        QTest::addRow("escape") << QString(QChar(0x1B)) << QStringLiteral("Esc");
        QTest::addRow("space") << QStringLiteral(" ") << QStringLiteral("Space");
        QTest::addRow("backspace") << QString(QChar(0x08)) << QStringLiteral("Delete");
        QTest::addRow("delete") << QString(QChar(0x7F)) << QStringLiteral("Delete");
        QTest::addRow("U+001C") << QString(QChar(0x1C)) << QStringLiteral("←");
        QTest::addRow("left arrow key") << QString(QChar(0xF702)) << QStringLiteral("←");
        QTest::addRow("U+001D") << QString(QChar(0x1D)) << QStringLiteral("→");
        QTest::addRow("right arrow key") << QString(QChar(0xF703)) << QStringLiteral("→");
        QTest::addRow("U+001E") << QString(QChar(0x1E)) << QStringLiteral("↑");
        QTest::addRow("up arrow key") << QString(QChar(0xF700)) << QStringLiteral("↑");
        QTest::addRow("U+001F") << QString(QChar(0x1F)) << QStringLiteral("↓");
        QTest::addRow("down arrow key") << QString(QChar(0xF701)) << QStringLiteral("↓");
        QTest::addRow("page up key") << QString(QChar(0xF72C)) << QStringLiteral("Page Up");
        QTest::addRow("page down key") << QString(QChar(0xF72D)) << QStringLiteral("Page Down");
        QTest::addRow("home key") << QString(QChar(0xF729)) << QStringLiteral("Home");
        QTest::addRow("end key") << QString(QChar(0xF72B)) << QStringLiteral("End");
        QTest::addRow("lower-case letter") << QStringLiteral("a") << QStringLiteral("A");
        QTest::addRow("upper-case letter") << QStringLiteral("S") << QStringLiteral("S");
        QTest::addRow("accented letter") << QStringLiteral("é") << QStringLiteral("É");
        QTest::addRow("plus") << QStringLiteral("+") << QStringLiteral("+");
        QTest::addRow("digit") << QStringLiteral("1") << QStringLiteral("1");
        QTest::addRow("F4 function key passes through")
            << QString(QChar(0xF704)) << QString(QChar(0xF704));
        QTest::addRow("multi-character F13") << QStringLiteral("F13") << QStringLiteral("F13");
        QTest::addRow("multi-character lower case") << QStringLiteral("ab") << QStringLiteral("ab");
    }
    void normalizedKey()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QCOMPARE(MenuReader::normalizedKey(input), expected);
    }

    void virtualKeySymbol_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("expected"); // empty: no symbol
        const QList<std::pair<int, QString>> table = {
            {36, QStringLiteral("Return")}, {76, QStringLiteral("Return")},
            {48, QStringLiteral("Tab")},    {49, QStringLiteral("Space")},
            {51, QStringLiteral("Delete")}, {117, QStringLiteral("Delete")},
            {53, QStringLiteral("Esc")},    {96, QStringLiteral("F5")},
            {97, QStringLiteral("F6")},     {98, QStringLiteral("F7")},
            {99, QStringLiteral("F3")},     {100, QStringLiteral("F8")},
            {101, QStringLiteral("F9")},    {103, QStringLiteral("F11")},
            {109, QStringLiteral("F10")},   {111, QStringLiteral("F12")},
            {115, QStringLiteral("Home")},  {116, QStringLiteral("Page Up")},
            {118, QStringLiteral("F4")},    {119, QStringLiteral("End")},
            {120, QStringLiteral("F2")},    {121, QStringLiteral("Page Down")},
            {122, QStringLiteral("F1")},    {123, QStringLiteral("←")},
            {124, QStringLiteral("→")},     {125, QStringLiteral("↓")},
            {126, QStringLiteral("↑")},
        };
        for (const auto& [code, symbol] : table)
            QTest::addRow("%d", code) << code << symbol;
        QTest::addRow("50 in range, not in the table") << 50 << QString();
        QTest::addRow("127 above the range") << 127 << QString();
        QTest::addRow("35 below the range") << 35 << QString();
        QTest::addRow("0") << 0 << QString();
        QTest::addRow("negative") << -1 << QString();
        QTest::addRow("102 (F11's neighbour)") << 102 << QString();
    }
    void virtualKeySymbol()
    {
        QFETCH(int, code);
        QFETCH(QString, expected);
        const std::optional<QString> symbol = MenuReader::virtualKeySymbol(code);
        if (expected.isEmpty())
            QVERIFY2(!symbol, qPrintable(symbol.value_or(QString())));
        else
            QCOMPARE(symbol, std::optional<QString>(expected));
    }

    void onlyTableCodesHaveSymbols()
    {
        int withSymbol = 0;
        for (int code = -10; code < 300; ++code) {
            if (MenuReader::virtualKeySymbol(code))
                ++withSymbol;
        }
        QCOMPARE(withSymbol, 27);
    }

    void displayChord_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("expected");
        QTest::addRow("mask 0") << QStringLiteral("S") << 0 << QStringLiteral("⌘ S");
        QTest::addRow("mask 1") << QStringLiteral("Z") << 1 << QStringLiteral("⇧ ⌘ Z");
        QTest::addRow("mask 8") << QStringLiteral("F5") << 8 << QStringLiteral("F5");
        QTest::addRow("mask 6") << QStringLiteral("←") << 6 << QStringLiteral("⌃ ⌥ ⌘ ←");
        QTest::addRow("control only") << QStringLiteral("S") << 12 << QStringLiteral("⌃ S");
        QTest::addRow("option only") << QStringLiteral("↑") << 10 << QStringLiteral("⌥ ↑");
        QTest::addRow("all four") << QStringLiteral("K") << 7 << QStringLiteral("⌃ ⌥ ⇧ ⌘ K");
        QTest::addRow("all but command")
            << QStringLiteral("Delete") << 15 << QStringLiteral("⌃ ⌥ ⇧ Delete");
    }
    void displayChord()
    {
        QFETCH(QString, key);
        QFETCH(int, modifiers);
        QFETCH(QString, expected);
        QCOMPARE(MenuReader::displayChord(key, modifiers), expected);
    }

    void discoveredItemHasEveryField()
    {
        const auto items =
            scanMenus({makeMenu(QStringLiteral("File"),
                                {makeItem(QStringLiteral("Save As…"), QStringLiteral("s"), 1)})});
        QCOMPARE(items.size(), 1);
        const ShortcutItem& item = items.first();
        QCOMPARE(item.name, QStringLiteral("Save As..."));
        QCOMPARE(item.chord, QStringLiteral("⇧ ⌘ S"));
        QCOMPARE(item.favorite, std::optional<bool>(false));
        QCOMPARE(item.menu, std::optional<QString>(QStringLiteral("File")));
        QCOMPARE(item.tags,
                 std::optional<QStringList>({QStringLiteral("scanned"), QStringLiteral("menu")}));
        QVERIFY(!item.note);
        QCOMPARE(item.source, std::optional<QString>(QStringLiteral("scanned-menu")));
    }

    void separatorsAndUntitledItemsAreSkipped()
    {
        auto untitled = makeItem(QString(), QStringLiteral("u"));
        auto noTitle = std::make_shared<FakeAccessibilityElement>();
        noTitle->attributes.insert(AccessibilityAttribute::menuItemCmdChar, QStringLiteral("n"));
        const auto items =
            scanMenus({makeMenu(QStringLiteral("Edit"),
                                {makeItem(QString(QChar(0x2014)), QStringLiteral("x")), untitled,
                                 noTitle, makeItem(QStringLiteral("Copy"), QStringLiteral("c"))})});
        QCOMPARE(chords(items), QStringList{QStringLiteral("Copy = ⌘ C @ Edit")});
    }

    void characterWinsOverVirtualKey()
    {
        auto both = makeItem(QStringLiteral("Both"), QStringLiteral("b"));
        both->attributes.insert(AccessibilityAttribute::menuItemCmdVirtualKey, 122);
        auto keyOnly = makeItem(QStringLiteral("Help"), QString(), 8);
        keyOnly->attributes.insert(AccessibilityAttribute::menuItemCmdVirtualKey, 122);
        auto neither = makeItem(QStringLiteral("Neither"), QString(), 0);
        auto emptyCharacter = makeItem(QStringLiteral("Empty"), QString(), 0);
        emptyCharacter->attributes.insert(AccessibilityAttribute::menuItemCmdChar, QString());
        const auto items =
            scanMenus({makeMenu(QStringLiteral("M"), {both, keyOnly, neither, emptyCharacter})});
        QCOMPARE(chords(items),
                 QStringList({QStringLiteral("Both = ⌘ B @ M"), QStringLiteral("Help = F1 @ M")}));
    }

    void virtualKeysWithoutSymbolYieldNothing()
    {
        auto fifty = makeItem(QStringLiteral("Fifty"), QString());
        fifty->attributes.insert(AccessibilityAttribute::menuItemCmdVirtualKey, 50);
        auto high = makeItem(QStringLiteral("High"), QString());
        high->attributes.insert(AccessibilityAttribute::menuItemCmdVirtualKey, 127);
        auto up = makeItem(QStringLiteral("Up"), QString(), 10);
        up->attributes.insert(AccessibilityAttribute::menuItemCmdVirtualKey, 126);
        const auto items = scanMenus({makeMenu(QStringLiteral("Keys"), {fifty, high, up})});
        QCOMPARE(chords(items), QStringList{QStringLiteral("Up = ⌥ ↑ @ Keys")});
    }

    void keyCharactersAreNormalized()
    {
        const auto items = scanMenus({makeMenu(
            QStringLiteral("Keys"), {makeItem(QStringLiteral("Letter"), QStringLiteral("a")),
                                     makeItem(QStringLiteral("Plus"), QStringLiteral("+")),
                                     makeItem(QStringLiteral("Wide"), QStringLiteral("F13"), 8)})});
        QCOMPARE(chords(items), QStringList({QStringLiteral("Letter = ⌘ A @ Keys"),
                                             QStringLiteral("Plus = ⌘ + @ Keys"),
                                             QStringLiteral("Wide = F13 @ Keys")}));
    }

    void duplicatesCollapseToTheFirstMet()
    {
        const auto items =
            scanMenus({makeMenu(QStringLiteral("Edit"),
                                {makeItem(QStringLiteral("Copy"), QStringLiteral("C"))}),
                       makeMenu(QStringLiteral("Other"),
                                {makeItem(QStringLiteral("copy"), QStringLiteral("c"))})});
        QCOMPARE(chords(items), QStringList{QStringLiteral("Copy = ⌘ C @ Edit")});
    }

    void dedupeKeepsFirstOfEachKey()
    {
        ShortcutItem a{
            QStringLiteral("Copy"), QStringLiteral("⌘ C"), {}, QStringLiteral("one"), {}, {}, {}};
        ShortcutItem b{
            QStringLiteral("copy"), QStringLiteral("⌘ c"), {}, QStringLiteral("two"), {}, {}, {}};
        ShortcutItem c{
            QStringLiteral("Copy"), QStringLiteral("⌥ C"), {}, QStringLiteral("three"), {}, {}, {}};
        QCOMPARE(MenuReader::dedupe({a, b, c}), QList<ShortcutItem>({a, c}));
    }

    void emptyTopLevelTitleGivesTheDefaultMenu()
    {
        const auto items = scanMenus(
            {makeMenu(QString(), {makeItem(QStringLiteral("About"), QStringLiteral(","))}),
             makeMenu(QVariant(), {makeItem(QStringLiteral("Hide"), QStringLiteral("h"))})});
        QCOMPARE(chords(items),
                 QStringList({QStringLiteral("About = ⌘ , @ Discovered from the app menu"),
                              QStringLiteral("Hide = ⌘ H @ Discovered from the app menu")}));
    }

    void titleEqualToSubmenuTitleLeavesThePath()
    {
        // The walk adds each child's own title to its path; the item's own title and a submenu
        // of the same name are filtered out again.
        auto find = makeMenu(QStringLiteral("Find"),
                             {makeItem(QStringLiteral("Find"), QStringLiteral("f")),
                              makeItem(QStringLiteral("Find Next"), QStringLiteral("g"))});
        const auto items = scanMenus({makeMenu(QStringLiteral("Edit"), {find})});
        QCOMPARE(chords(items), QStringList({QStringLiteral("Find = ⌘ F @ Edit"),
                                             QStringLiteral("Find Next = ⌘ G @ Edit > Find")}));
    }

    void nestedMenusBuildThePathAndSkipUntitledLevels()
    {
        // A menu bar item holding an untitled popup, which holds a titled submenu whose
        // untitled popup holds the item.
        auto lineUp = makeItem(QStringLiteral("Line Up"), QString(), 10);
        lineUp->attributes.insert(AccessibilityAttribute::menuItemCmdVirtualKey, 126);
        auto popup = makeMenu(QString(),
                              {makeMenu(QStringLiteral("Move"), {makeMenu(QVariant(), {lineUp})})});
        const auto items = scanMenus({makeMenu(QStringLiteral("Edit"), {popup})});
        QCOMPARE(chords(items), QStringList{QStringLiteral("Line Up = ⌥ ↑ @ Edit > Move")});
    }

    void itemsAreSortedByNameCaseInsensitively()
    {
        const auto items = scanMenus({makeMenu(
            QStringLiteral("A"), {makeItem(QStringLiteral("zoom"), QStringLiteral("z")),
                                  makeItem(QStringLiteral("Éclair"), QStringLiteral("e")),
                                  makeItem(QStringLiteral("Bold"), QStringLiteral("b")),
                                  makeItem(QStringLiteral("apple"), QStringLiteral("a"))})});
        QStringList names;
        for (const ShortcutItem& item : items)
            names.append(item.name);
        QCOMPARE(names, QStringList({QStringLiteral("apple"), QStringLiteral("Bold"),
                                     QStringLiteral("Éclair"), QStringLiteral("zoom")}));
    }

    void mistypedAttributesCountAsAbsent()
    {
        auto numericTitle = std::make_shared<FakeAccessibilityElement>();
        numericTitle->attributes.insert(AccessibilityAttribute::title, 5);
        numericTitle->attributes.insert(AccessibilityAttribute::menuItemCmdChar,
                                        QStringLiteral("n"));
        auto numericChar = makeItem(QStringLiteral("Numeric Char"), QString());
        numericChar->attributes.insert(AccessibilityAttribute::menuItemCmdChar, 7);
        auto textKey = makeItem(QStringLiteral("Text Key"), QString());
        textKey->attributes.insert(AccessibilityAttribute::menuItemCmdVirtualKey,
                                   QStringLiteral("122"));
        auto floatModifiers = makeItem(QStringLiteral("Float Mask"), QStringLiteral("f"));
        floatModifiers->attributes.insert(AccessibilityAttribute::menuItemCmdModifiers, 12.0);
        auto textModifiers = makeItem(QStringLiteral("Text Mask"), QStringLiteral("t"));
        textModifiers->attributes.insert(AccessibilityAttribute::menuItemCmdModifiers,
                                         QStringLiteral("12"));
        auto badChildren = makeItem(QStringLiteral("Bad Children"), QStringLiteral("k"));
        badChildren->attributes.insert(AccessibilityAttribute::children, QStringLiteral("nope"));
        const auto items = scanMenus(
            {makeMenu(QStringLiteral("M"), {numericTitle, numericChar, textKey, floatModifiers,
                                            textModifiers, badChildren})});
        QCOMPARE(chords(items), QStringList({QStringLiteral("Bad Children = ⌘ K @ M"),
                                             QStringLiteral("Float Mask = ⌃ F @ M"),
                                             QStringLiteral("Text Mask = ⌘ T @ M")}));
    }

    void shortcutItemUsesThePathGiven()
    {
        auto item = makeItem(QStringLiteral("Print"), QStringLiteral("p"));
        const auto result = MenuReader::shortcutItem(
            item, {QStringLiteral("File"), QString(), QStringLiteral("Print")});
        QVERIFY(result);
        QCOMPARE(result->menu, std::optional<QString>(QStringLiteral("File")));
        QVERIFY(!MenuReader::shortcutItem(makeItem(QStringLiteral("Plain"), QString()), {}));
    }

    void readMenuElementPutsTheElementFirst()
    {
        auto parent = makeItem(QStringLiteral("Parent"), QStringLiteral("p"));
        parent->setChildren({makeItem(QStringLiteral("Child"), QStringLiteral("c"))});
        const auto items = MenuReader::readMenuElement(parent, {QStringLiteral("Top")});
        QCOMPARE(chords(items), QStringList({QStringLiteral("Parent = ⌘ P @ Top"),
                                             QStringLiteral("Child = ⌘ C @ Top")}));
    }
};

QTEST_GUILESS_MAIN(TestMenuReader)
#include "tst_MenuReader.moc"
