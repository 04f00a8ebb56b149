// SPDX-License-Identifier: MIT
// Which items of a pack are stale against the last scan, which changed their chord, and how
// many a new scan made stale.
#include "VaultTestSupport.h"
#include "vault/ShortcutDrift.h"

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

ShortcutItem scanned(const QString& name, const QString& chord,
                     const QString& menu = QStringLiteral("File"))
{
    ShortcutItem result = item(name, chord);
    result.menu = menu;
    result.source = QStringLiteral("scanned-menu");
    return result;
}

const ShortcutItem kSave = scanned(QStringLiteral("Save"), QStringLiteral("⌃ S"));
const ShortcutItem kQuit = scanned(QStringLiteral("Quit"), QStringLiteral("⌃ Q"));
const ShortcutItem kCut =
    scanned(QStringLiteral("Cut"), QStringLiteral("⌃ X"), QStringLiteral("Edit"));
const ShortcutItem kCutNew =
    scanned(QStringLiteral("Cut"), QStringLiteral("⌃ ⇧ X"), QStringLiteral("Edit"));

using Mark = ShortcutDrift::Mark;

} // namespace

class TestShortcutDrift : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyScannedItemsMissingFromTheLastScanAreStale()
    {
        const ScanRecord last = ScanRecord::of({kSave});
        QVERIFY(!ShortcutDrift::isStale(kSave, last));
        // Keys compare as the merge compares them.
        QVERIFY(
            !ShortcutDrift::isStale(scanned(QStringLiteral("SAVE"), QStringLiteral("⌃ s")), last));
        QVERIFY(ShortcutDrift::isStale(kQuit, last));
        // Typed by hand, or only tagged: never stale.
        QVERIFY(!ShortcutDrift::isStale(item(QStringLiteral("Quit"), QStringLiteral("⌃ Q")), last));
        ShortcutItem tagged = item(QStringLiteral("Quit"), QStringLiteral("⌃ Q"));
        tagged.tags = QStringList{QStringLiteral("scanned")};
        QVERIFY(!ShortcutDrift::isStale(tagged, last));
    }

    void marksNameStaleItemsAndTheOldChordOfChangedOnes()
    {
        // Quit left the menus; Cut moved from ⌃ X to ⌃ ⇧ X.
        const QList<ShortcutItem> pack{kCut, kCutNew, kQuit, kSave};
        const QHash<QString, Mark> marks =
            ShortcutDrift::marks(pack, ScanRecord::of({kSave, kCutNew}));
        QCOMPARE(marks.size(), 3);
        QCOMPARE(marks.value(kQuit.id()), (Mark{true, {}}));
        QCOMPARE(marks.value(kCut.id()), (Mark{true, {}}));
        QCOMPARE(marks.value(kCutNew.id()), (Mark{false, QStringLiteral("⌃ X")}));
        QVERIFY(!marks.contains(kSave.id()));
    }

    void aCommandUnderAnotherMenuIsNotTheSameCommand()
    {
        const ShortcutItem otherCut =
            scanned(QStringLiteral("Cut"), QStringLiteral("⌃ ⇧ X"), QStringLiteral("Selection"));
        const QHash<QString, Mark> marks =
            ShortcutDrift::marks({kCut, otherCut}, ScanRecord::of({otherCut}));
        QCOMPARE(marks.value(kCut.id()), (Mark{true, {}}));
        QVERIFY(!marks.contains(otherCut.id()));
    }

    void noStaleItemsWithoutALastScan()
    {
        QVERIFY(ShortcutDrift::staleKeys({kSave, kQuit}, std::nullopt).isEmpty());
        QCOMPARE(ShortcutDrift::staleKeys({kSave, kQuit}, ScanRecord::of({kSave})),
                 QSet<QString>{kQuit.dedupeKey()});
    }

    void newlyStaleCounts_data()
    {
        QTest::addColumn<QList<ShortcutItem>>("before");
        QTest::addColumn<std::optional<ScanRecord>>("previous");
        QTest::addColumn<QList<ShortcutItem>>("scan");
        QTest::addColumn<int>("expected");

        const QList<ShortcutItem> all{kCut, kQuit, kSave};
        QTest::addRow("first scan on record")
            << all << std::optional<ScanRecord>() << QList{kSave} << 0;
        QTest::addRow("nothing changed") << all << std::optional(ScanRecord::of(all)) << all << 0;
        QTest::addRow("an item vanished")
            << all << std::optional(ScanRecord::of(all)) << QList{kCut, kSave} << 1;
        QTest::addRow("a chord change counts once")
            << all << std::optional(ScanRecord::of(all)) << QList{kCutNew, kQuit, kSave} << 1;
        QTest::addRow("vanished and changed")
            << all << std::optional(ScanRecord::of(all)) << QList{kCutNew, kSave} << 2;
        QTest::addRow("already stale before")
            << all << std::optional(ScanRecord::of({kCut, kSave})) << QList{kCut, kSave} << 0;
        QTest::addRow("an item that comes back")
            << all << std::optional(ScanRecord::of({kCut, kSave})) << all << 0;
    }

    void newlyStaleCounts()
    {
        QFETCH(QList<ShortcutItem>, before);
        QFETCH(std::optional<ScanRecord>, previous);
        QFETCH(QList<ShortcutItem>, scan);
        QFETCH(int, expected);
        // The merge only adds: the pack after the scan holds what it held and what is new.
        QList<ShortcutItem> after = before;
        for (const ShortcutItem& found : scan) {
            if (!after.contains(found))
                after.append(found);
        }
        QCOMPARE(ShortcutDrift::newlyStale(before, previous, after, ScanRecord::of(scan)),
                 expected);
    }

    void removeStaleKeepsTheOrderOfTheRest()
    {
        QList<ShortcutItem> pack{kCut, item(QStringLiteral("Jump"), QStringLiteral("⌃ J")), kQuit,
                                 kSave};
        const QList<ShortcutItem> removed =
            ShortcutDrift::removeStale(pack, ScanRecord::of({kSave}));
        QCOMPARE(removed, (QList<ShortcutItem>{kCut, kQuit}));
        QCOMPARE(names(pack), (QStringList{QStringLiteral("Jump"), QStringLiteral("Save")}));
    }

    void anItemThatComesBackIsNoLongerStale()
    {
        const QList<ShortcutItem> pack{kCut, kQuit, kSave};
        QVERIFY(ShortcutDrift::marks(pack, ScanRecord::of({kCut, kSave})).contains(kQuit.id()));
        QVERIFY(ShortcutDrift::marks(pack, ScanRecord::of(pack)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestShortcutDrift)
#include "tst_ShortcutDrift.moc"
