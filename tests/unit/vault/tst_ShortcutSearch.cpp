// SPDX-License-Identifier: MIT
// Searching in words: "ctrl s" and "Ctrl+Shift+S" find chords stored as "⌃ S" and "⌃ ⇧ S",
// in the cheat sheet and in the browser, while every query without a modifier word is searched
// and ranked exactly as the matcher alone does.
#include "BrowserRows.h"
#include "VaultTestSupport.h"
#include "search/FuzzyMatch.h"
#include "vault/ChordText.h"
#include "vault/PreparedShortcut.h"
#include "vault/PreparedShortcutList.h"
#include "vault/ShortcutSearch.h"
#include "vault/VaultBrowserIndex.h"

#include <QtTest>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

const TrackedApp kEditor{QStringLiteral("Editor"), QStringLiteral("org.example.Editor")};

VaultData editorVault()
{
    VaultData data;
    data.global = {item(u"Lock screen"_qs, u"⌘ L"_qs), item(u"Close window"_qs, u"⌥ F4"_qs)};
    data.apps = {AppShortcutPack{u"Editor"_qs,
                                 u"org.example.Editor"_qs,
                                 {item(u"Save"_qs, u"⌃ S"_qs), item(u"Save As"_qs, u"⌃ ⇧ S"_qs),
                                  item(u"Open"_qs, u"⌃ O"_qs)}}};
    return data;
}

QStringList sectionNames(const QList<ShortcutSection>& sections)
{
    QStringList result;
    for (const ShortcutSection& section : sections)
        result << names(section.shortcuts);
    return result;
}

} // namespace

class TestShortcutSearch : public QObject
{
    Q_OBJECT

private slots:
    void wordsFindTheStoredChord_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QStringList>("found");
        QTest::addRow("ctrl s") << u"ctrl s"_qs << QStringList{u"Save"_qs, u"Save As"_qs};
        QTest::addRow("ctrl+shift+s") << u"ctrl+shift+s"_qs << QStringList{u"Save As"_qs};
        QTest::addRow("as the desktop writes it")
            << u"Ctrl+Shift+S"_qs << QStringList{u"Save As"_qs};
        QTest::addRow("symbols") << u"⌃ S"_qs << QStringList{u"Save"_qs, u"Save As"_qs};
        QTest::addRow("super l") << u"super l"_qs << QStringList{u"Lock screen"_qs};
        QTest::addRow("alt f4") << u"alt f4"_qs << QStringList{u"Close window"_qs};
    }
    void wordsFindTheStoredChord()
    {
        QFETCH(QString, query);
        QFETCH(QStringList, found);
        QTemporaryDir dir;
        VaultStore::Configuration configuration = configurationIn(dir);
        QVERIFY(writeFile(configuration.dataFilePath, VaultCodec::encode(editorVault())));
        VaultStore store(configuration);
        QVERIFY(!store.lastError());

        // The cheat sheet.
        store.setFilter(query);
        QStringList shown = sectionNames(store.sections(kEditor));
        shown.sort();
        QCOMPARE(shown, found);

        // The browser, fast and plain.
        const VaultBrowserIndex index(store.allShortcutRows());
        QStringList browsed;
        for (const VaultShortcutRow& row : index.rows(query))
            browsed << row.shortcut.name;
        browsed.sort();
        QCOMPARE(browsed, found);
        QStringList plain;
        for (const VaultShortcutRow& row : BrowserRows::rows(store.allShortcutRows(), query))
            plain << row.shortcut.name;
        plain.sort();
        QCOMPARE(plain, found);
    }

    // A chord found through words scores as the chord in symbols does.
    void wordsScoreAsTheSymbols()
    {
        const ShortcutItem save = item(u"Save"_qs, u"⌃ S"_qs);
        QCOMPARE(ShortcutSearch::score(u"ctrl s"_qs, save), FuzzyMatch::score(u"⌃ S"_qs, save));
        const PreparedShortcut prepared(save);
        QCOMPARE(prepared.score(PreparedShortcut::Query::fromTyped(u"  ctrl s "_qs)),
                 FuzzyMatch::score(u"⌃ S"_qs, save));
    }

    void queriesWithoutModifierWordsRankAsTheMatcher_data() { addSeedRows({3, 17, 2026, 90210}); }
    void queriesWithoutModifierWordsRankAsTheMatcher()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const QStringList pieces{u"c"_qs, u"t"_qs, u"r"_qs, u"l"_qs, u"s"_qs, u"S"_qs,
                                 u"a"_qs, u"+"_qs, u" "_qs, u"⌃"_qs, u"⇧"_qs, u"e"_qs,
                                 u"é"_qs, u"o"_qs, u"n"_qs, u"p"_qs, u"-"_qs};
        const auto text = [&](int maxLength) { return randomText(random, pieces, maxLength); };
        QList<ShortcutItem> items;
        for (int i = 0; i < 80; ++i) {
            ShortcutItem entry = item(text(8), text(4));
            if (random.bounded(2))
                entry.menu = text(6);
            items << entry;
        }
        const PreparedShortcutList list(items);
        int compared = 0;
        for (int j = 0; j < 60; ++j) {
            const QString typed = text(6);
            if (ChordText::symbolQuery(typed.trimmed()))
                continue; // names a modifier in words ("ctrl", "alt")
            ++compared;
            const PreparedShortcut::Query query = PreparedShortcut::Query::fromTyped(typed);
            for (qsizetype i = 0; i < items.size(); ++i) {
                const std::optional<qint64> matcher = FuzzyMatch::score(typed, items[i]);
                QCOMPARE(ShortcutSearch::score(typed, items[i]), matcher);
                QCOMPARE(list.score(i, query), matcher);
                QCOMPARE(list.matches(i, query), matcher.has_value());
            }
        }
        QVERIFY(compared > 30);
    }

    // With a modifier word the fast paths still agree with the plain search.
    void modifierWordsAgreeAcrossPaths()
    {
        QRandomGenerator random(7);
        const QStringList modifiers{u"⌃"_qs, u"⌥"_qs, u"⇧"_qs, u"⌘"_qs};
        const QStringList keys{u"S"_qs, u"A"_qs, u"↑"_qs, u"F4"_qs, u"Space"_qs, u"+"_qs};
        QList<ShortcutItem> items;
        for (int i = 0; i < 60; ++i) {
            QStringList chord;
            for (const QString& modifier : modifiers) {
                if (random.bounded(2))
                    chord << modifier;
            }
            chord << keys.at(random.bounded(keys.size()));
            items << item(u"Item "_qs + QString::number(i), chord.join(u' '));
        }
        const PreparedShortcutList list(items);
        for (const QString& typed : {u"ctrl s"_qs, u"alt up"_qs, u"Ctrl+Shift+A"_qs,
                                     u"super space"_qs, u"ctrl++"_qs, u"shift f4"_qs}) {
            const PreparedShortcut::Query query = PreparedShortcut::Query::fromTyped(typed);
            int found = 0;
            for (qsizetype i = 0; i < items.size(); ++i) {
                const std::optional<qint64> plain = ShortcutSearch::score(typed, items[i]);
                found += plain.has_value();
                QCOMPARE(list.score(i, query), plain);
                QCOMPARE(list.matches(i, query), plain.has_value());
                QCOMPARE(PreparedShortcut(items[i]).score(query), plain);
            }
            QVERIFY2(found > 0, qPrintable(typed));
        }
    }
};

QTEST_GUILESS_MAIN(TestShortcutSearch)
#include "tst_ShortcutSearch.moc"
