// SPDX-License-Identifier: MIT
#include "vault/AppShortcutPack.h"
#include "vault/ShortcutSection.h"
#include "vault/VaultData.h"
#include "vault/VaultOrder.h"
#include "vault/VaultShortcutRow.h"

#include <QLocale>
#include <QtTest>

using namespace Tessaline;

namespace {

ShortcutItem item(const QString& name, const QString& chord, std::optional<bool> favorite = {})
{
    ShortcutItem result;
    result.name = name;
    result.chord = chord;
    result.favorite = favorite;
    return result;
}

QStringList names(const QList<ShortcutItem>& items)
{
    QStringList result;
    for (const ShortcutItem& entry : items)
        result << entry.name;
    return result;
}

} // namespace

class TestVaultRecords : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void itemIdentityIsNameAndChord();
    void detailText_data();
    void detailText();
    void itemEqualityCoversEveryField();
    void absentAndFalseFavoriteDiffer();
    void packIdPrefersBundleId();
    void sectionAndRowIds();
    void rowAndPackEqualityAndHash();
    void emptyVaultHasNothing();
    void favoritesFirstThenCaseInsensitiveName();
    void sortIsStable();
    void accentedNamesSortByLanguageInTheCLocale();
};

void TestVaultRecords::itemIdentityIsNameAndChord()
{
    ShortcutItem a = item(QStringLiteral("Save"), QStringLiteral("⌃ S"));
    ShortcutItem b = a;
    b.note = QStringLiteral("different note");
    QCOMPARE(a.id(), QStringLiteral("Save|⌃ S"));
    QCOMPARE(a.id(), b.id());
    QVERIFY(a != b);
}

void TestVaultRecords::detailText_data()
{
    using OptString = std::optional<QString>;
    using OptList = std::optional<QStringList>;
    QTest::addColumn<OptString>("note");
    QTest::addColumn<OptString>("menu");
    QTest::addColumn<OptList>("tags");
    QTest::addColumn<QString>("expected");

    QTest::addRow("note wins") << OptString(QStringLiteral("A note"))
                               << OptString(QStringLiteral("File"))
                               << OptList(QStringList{QStringLiteral("t")})
                               << QStringLiteral("A note");
    QTest::addRow("empty note shows menu")
        << OptString(QString()) << OptString(QStringLiteral("File > Save")) << OptList()
        << QStringLiteral("File > Save");
    QTest::addRow("empty menu shows tags")
        << OptString() << OptString(QString())
        << OptList(QStringList{QStringLiteral("files"), QStringLiteral("edit")})
        << QStringLiteral("files / edit");
    QTest::addRow("nothing and empty tags") << OptString() << OptString() << OptList(QStringList{})
                                            << QStringLiteral("Useful desktop shortcut");
    QTest::addRow("nothing at all")
        << OptString() << OptString() << OptList() << QStringLiteral("Useful desktop shortcut");
}

void TestVaultRecords::detailText()
{
    QFETCH(std::optional<QString>, note);
    QFETCH(std::optional<QString>, menu);
    QFETCH(std::optional<QStringList>, tags);
    QFETCH(QString, expected);
    ShortcutItem entry = item(QStringLiteral("x"), QStringLiteral("y"));
    entry.note = note;
    entry.menu = menu;
    entry.tags = tags;
    QCOMPARE(entry.detailText(), expected);
}

void TestVaultRecords::itemEqualityCoversEveryField()
{
    const ShortcutItem base = item(QStringLiteral("Copy"), QStringLiteral("⌃ C"), false);
    QList<ShortcutItem> variants(5, base);
    variants[0].favorite = true;
    variants[1].tags = QStringList{QStringLiteral("edit")};
    variants[2].note = QStringLiteral("n");
    variants[3].menu = QStringLiteral("Edit");
    variants[4].source = QStringLiteral("scanned-menu");
    for (const ShortcutItem& variant : variants) {
        QVERIFY(variant != base);
        QVERIFY(qHash(variant) != qHash(base));
    }
    ShortcutItem copy = base;
    QCOMPARE(copy, base);
    QCOMPARE(qHash(copy), qHash(base));
}

void TestVaultRecords::absentAndFalseFavoriteDiffer()
{
    const ShortcutItem absent = item(QStringLiteral("a"), QStringLiteral("b"));
    const ShortcutItem no = item(QStringLiteral("a"), QStringLiteral("b"), false);
    QVERIFY(absent != no);
    QVERIFY(qHash(absent) != qHash(no));
    QVERIFY(!absent.isFavorite());
    QVERIFY(!no.isFavorite());
}

void TestVaultRecords::packIdPrefersBundleId()
{
    AppShortcutPack pack{QStringLiteral("Files"), QStringLiteral("org.gnome.Nautilus"), {}};
    QCOMPARE(pack.id(), QStringLiteral("org.gnome.Nautilus"));
    pack.bundleID.reset();
    QCOMPARE(pack.id(), QStringLiteral("Files"));
}

void TestVaultRecords::sectionAndRowIds()
{
    const ShortcutSection section{QStringLiteral("Files shortcuts"), {}};
    QCOMPARE(section.id(), QStringLiteral("Files shortcuts"));
    const VaultShortcutRow row{QStringLiteral("Files"), std::nullopt,
                               item(QStringLiteral("New window"), QStringLiteral("⌃ N"))};
    QCOMPARE(row.id(), QStringLiteral("Files|New window|⌃ N"));
}

void TestVaultRecords::rowAndPackEqualityAndHash()
{
    const VaultShortcutRow a{QStringLiteral("Files"), QStringLiteral("org.gnome.Nautilus"),
                             item(QStringLiteral("New window"), QStringLiteral("⌃ N"))};
    VaultShortcutRow b = a;
    QCOMPARE(a, b);
    QCOMPARE(qHash(a), qHash(b));
    b.bundleID.reset();
    QVERIFY(a != b);
    QVERIFY(qHash(a) != qHash(b));

    const AppShortcutPack p{QStringLiteral("Files"), std::nullopt, {a.shortcut}};
    AppShortcutPack q = p;
    QCOMPARE(qHash(p), qHash(q));
    q.shortcuts[0].favorite = true;
    QVERIFY(p != q);
    QVERIFY(qHash(p) != qHash(q));
}

void TestVaultRecords::emptyVaultHasNothing()
{
    const VaultData empty = VaultData::empty();
    QVERIFY(!empty.comment.has_value());
    QVERIFY(empty.global.isEmpty());
    QVERIFY(empty.apps.isEmpty());
}

void TestVaultRecords::favoritesFirstThenCaseInsensitiveName()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QList<ShortcutItem> items{
        item(QStringLiteral("Aardvark"), QStringLiteral("1")),
        item(QStringLiteral("Beta"), QStringLiteral("2"), true),
        item(QStringLiteral("alpha"), QStringLiteral("3"), true),
    };
    VaultOrder::sort(items);
    QCOMPARE(names(items), (QStringList{QStringLiteral("alpha"), QStringLiteral("Beta"),
                                        QStringLiteral("Aardvark")}));
}

void TestVaultRecords::sortIsStable()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QList<ShortcutItem> items{
        item(QStringLiteral("Same"), QStringLiteral("first")),
        item(QStringLiteral("same"), QStringLiteral("second"), false),
        item(QStringLiteral("Other"), QStringLiteral("x")),
        item(QStringLiteral("SAME"), QStringLiteral("third")),
    };
    VaultOrder::sort(items);
    QStringList chords;
    for (const ShortcutItem& entry : items)
        chords << entry.chord;
    QCOMPARE(chords, (QStringList{QStringLiteral("x"), QStringLiteral("first"),
                                  QStringLiteral("second"), QStringLiteral("third")}));
}

void TestVaultRecords::accentedNamesSortByLanguageInTheCLocale()
{
    // The machines run in the C locale, whose code-point order would put "é" after "f".
    QLocale::setDefault(QLocale::c());
    QList<ShortcutItem> items{
        item(QStringLiteral("fichier"), QStringLiteral("1")),
        item(QStringLiteral("écran"), QStringLiteral("2")),
        item(QStringLiteral("Dossier"), QStringLiteral("3")),
    };
    VaultOrder::sort(items);
    QCOMPARE(names(items), (QStringList{QStringLiteral("Dossier"), QStringLiteral("écran"),
                                        QStringLiteral("fichier")}));
    QVERIFY(VaultOrder::compareNames(QStringLiteral("écran"), QStringLiteral("fichier")) < 0);
    QCOMPARE(VaultOrder::compareNames(QStringLiteral("ALPHA"), QStringLiteral("alpha")), 0);
}

QTEST_GUILESS_MAIN(TestVaultRecords)
#include "tst_VaultRecords.moc"
