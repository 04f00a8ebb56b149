// SPDX-License-Identifier: MIT
#include "BrowserRows.h"
#include "VaultTestSupport.h"

#include "vault/VaultBrowserIndex.h"
#include "vault/VaultStore.h"

#include <QLocale>
#include <QRandomGenerator>
#include <QtTest>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

const QString kGlobal = QStringLiteral("Global desktop essentials");

VaultShortcutRow row(const QString& app, std::optional<QString> bundleID, const QString& name,
                     const QString& chord = QStringLiteral("⌃ X"))
{
    return VaultShortcutRow{app, std::move(bundleID), item(name, chord)};
}

QStringList groupNames(const QList<BrowserGroup>& groups)
{
    QStringList result;
    for (const BrowserGroup& group : groups)
        result << group.name;
    return result;
}

QList<VaultShortcutRow> sampleRows()
{
    return {
        row(kGlobal, std::nullopt, QStringLiteral("Lock screen")),
        row(kGlobal, std::nullopt, QStringLiteral("app launcher")),
        row(QStringLiteral("Files"), QStringLiteral("org.gnome.Nautilus"),
            QStringLiteral("New window")),
        row(QStringLiteral("Files"), QStringLiteral("org.gnome.Nautilus"), QStringLiteral("Close")),
        row(QStringLiteral("Alpha"), QStringLiteral("com.example.Alpha"), QStringLiteral("Zap")),
        row(QStringLiteral("kate"), QStringLiteral("org.kde.kate"), QStringLiteral("Save"),
            QStringLiteral("⌃ S"))};
}

} // namespace

class TestBrowserRows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void spacesShowEverything();
    void bundleIdMatchShowsTheWholeApp();
    void shortcutFieldsFindRows();
    void globalGroupStaysFirst();
    void groupsAndRowsSortCaseInsensitively();
    void nothingFoundGivesNoGroups();
    void indexAgreesWithThePlainAlgorithm_data();
    void indexAgreesWithThePlainAlgorithm();
    void storeRowsFeedTheBrowser();
};

void TestBrowserRows::spacesShowEverything()
{
    const QList<VaultShortcutRow> all = sampleRows();
    QCOMPARE(BrowserRows::rows(all, QStringLiteral("   ")), all);
    QCOMPARE(VaultBrowserIndex(all).rows(QStringLiteral(" \t ")), all);
    qsizetype total = 0;
    for (const BrowserGroup& group : BrowserRows::groupedRows(all))
        total += group.rows.size();
    QCOMPARE(total, all.size());
}

void TestBrowserRows::bundleIdMatchShowsTheWholeApp()
{
    const QList<VaultShortcutRow> all = sampleRows();
    // "gnomenaut" is in no app name and no shortcut, only in Files' bundle id.
    const QList<BrowserGroup> groups =
        BrowserRows::groupedRows(BrowserRows::rows(all, QStringLiteral("gnomenaut")));
    QCOMPARE(groupNames(groups), QStringList{QStringLiteral("Files")});
    QCOMPARE(names({groups[0].rows[0].shortcut, groups[0].rows[1].shortcut}),
             (QStringList{QStringLiteral("Close"), QStringLiteral("New window")}));
    QCOMPARE(VaultBrowserIndex(all).groupedRows(QStringLiteral("gnomenaut")), groups);
}

void TestBrowserRows::shortcutFieldsFindRows()
{
    const QList<VaultShortcutRow> all = sampleRows();
    QList<VaultShortcutRow> found = BrowserRows::rows(all, QStringLiteral("⌃ s"));
    QCOMPARE(found.size(), 1);
    QCOMPARE(found[0].shortcut.name, QStringLiteral("Save"));
    found = BrowserRows::rows(all, QStringLiteral("useful"));
    QCOMPARE(found, all); // every sample shows the default detail text
}

void TestBrowserRows::globalGroupStaysFirst()
{
    const QList<BrowserGroup> groups = BrowserRows::groupedRows(sampleRows());
    QCOMPARE(groupNames(groups), (QStringList{kGlobal, QStringLiteral("Alpha"),
                                              QStringLiteral("Files"), QStringLiteral("kate")}));
    QCOMPARE(VaultBrowserIndex(sampleRows()).groupedRows(QString()), groups);
}

void TestBrowserRows::groupsAndRowsSortCaseInsensitively()
{
    const QList<BrowserGroup> groups = BrowserRows::groupedRows(sampleRows());
    QCOMPARE(groups[0].rows[0].shortcut.name, QStringLiteral("app launcher"));
    QCOMPARE(groups[0].rows[1].shortcut.name, QStringLiteral("Lock screen"));
}

void TestBrowserRows::nothingFoundGivesNoGroups()
{
    QVERIFY(BrowserRows::groupedRows(BrowserRows::rows(sampleRows(), QStringLiteral("qqqq")))
                .isEmpty());
    QVERIFY(VaultBrowserIndex(sampleRows()).groupedRows(QStringLiteral("qqqq")).isEmpty());
}

void TestBrowserRows::indexAgreesWithThePlainAlgorithm_data()
{
    addSeedRows({1u, 42u, 777u});
}

void TestBrowserRows::indexAgreesWithThePlainAlgorithm()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    // Small alphabets make many collisions: equal names, names equal but for case, accents
    // and combining marks, so that ties and non-ASCII paths are exercised.
    const QStringList pieces{QStringLiteral("a"),        QStringLiteral("B"), QStringLiteral("é"),
                             QStringLiteral("e\u0301"),  QStringLiteral(" "), QStringLiteral("/"),
                             QStringLiteral("S"),        QStringLiteral("s"), QStringLiteral("⌃"),
                             QStringLiteral("👍🏽"), QStringLiteral("n")};
    const auto text = [&](int maxLength) { return randomText(random, pieces, maxLength); };
    const QStringList apps{kGlobal,
                           QStringLiteral("files"),
                           QStringLiteral("Files"),
                           QStringLiteral("éditeur"),
                           QStringLiteral("Editeur"),
                           QStringLiteral("zed")};
    QList<VaultShortcutRow> all;
    for (int i = 0; i < 300; ++i) {
        VaultShortcutRow entry = row(
            apps.at(random.bounded(apps.size())),
            random.bounded(2) ? std::optional<QString>(text(4)) : std::nullopt, text(5), text(3));
        if (random.bounded(3) == 0)
            entry.shortcut.tags = QStringList{text(3), text(2)};
        if (random.bounded(3) == 0)
            entry.shortcut.menu = text(6);
        all.append(entry);
    }
    const VaultBrowserIndex index(all);
    for (int i = 0; i < 25; ++i) {
        const QString query = text(3);
        const QList<VaultShortcutRow> plain = BrowserRows::rows(all, query);
        QCOMPARE(index.rows(query), plain);
        QCOMPARE(index.groupedRows(query), BrowserRows::groupedRows(plain));
    }
}

void TestBrowserRows::storeRowsFeedTheBrowser()
{
    QTemporaryDir dir;
    const VaultStore::Configuration configuration = configurationIn(dir);
    VaultData data;
    data.global = {item(QStringLiteral("Lock"), QStringLiteral("⌘ L"))};
    data.apps = {AppShortcutPack{QStringLiteral("Aardvark"),
                                 QStringLiteral("org.example.aardvark"),
                                 {item(QStringLiteral("Dig"), QStringLiteral("⌃ D"))}}};
    QVERIFY(writeFile(configuration.dataFilePath, VaultCodec::encode(data)));
    VaultStore store(configuration);
    const QList<BrowserGroup> groups =
        VaultBrowserIndex(store.allShortcutRows()).groupedRows(QStringLiteral("example"));
    QCOMPARE(groupNames(groups), QStringList{QStringLiteral("Aardvark")});
}

QTEST_GUILESS_MAIN(TestBrowserRows)
#include "tst_BrowserRows.moc"
