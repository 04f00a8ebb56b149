// SPDX-License-Identifier: MIT
#include "VaultTestSupport.h"

#include "vault/VaultCodec.h"
#include "vault/VaultKeyPath.h"
#include "vault/VaultTreeReader.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QRandomGenerator>
#include <QtTest>

using namespace Tessaline;

namespace {

// The reference the codec's byte reader is checked against: QJsonDocument's parse, then the
// tree reader.
Expected<VaultData> decodeTree(const QByteArray& json)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return Unexpected(VaultKeyPath::syntaxError(parseError));
    return VaultTreeReader::read(document);
}

} // namespace

class TestVaultCodec : public QObject
{
    Q_OBJECT

private slots:
    void invalidDocumentsFailWithTheirPlace_data();
    void invalidDocumentsFailWithTheirPlace();
    void syntaxErrorNamesTheByteOffset();
    void nullOptionalsReadAsAbsentAndAreNotWritten();
    void readsEveryField();
    void roundTripSortsKeysDropsNullsAndUnknownKeysKeepsOrder();
    void writesRequiredKeysAndEmptyArrays();
    void falseFavoriteIsWritten();
    void escapesSlashesQuotesAndControls();
    void encodedOutputDecodesToTheSameData();
    void loneSurrogatesStayInTheirOwnString();
    void acceptsAnyWhitespace();
    void invalidUtf8IsASyntaxError();
    void readersAgreeOnRandomDocuments_data();
    void readersAgreeOnRandomDocuments();
};

void TestVaultCodec::invalidDocumentsFailWithTheirPlace_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");

    const QByteArray item = R"({"name": "Save", "chord": "⌃ S"})";
    QTest::addRow("root lacks apps") << QByteArray(R"({"global": [)" + item + "]}")
                                     << QStringLiteral("apps: required key is missing");
    QTest::addRow("root lacks global")
        << QByteArray(R"({"apps": []})") << QStringLiteral("global: required key is missing");
    QTest::addRow("root is an array")
        << QByteArray("[]") << QStringLiteral("the document: expected an object");
    QTest::addRow("apps is an object")
        << QByteArray(R"({"global": [], "apps": {}})") << QStringLiteral("apps: expected an array");
    QTest::addRow("global is null") << QByteArray(R"({"global": null, "apps": []})")
                                    << QStringLiteral("global: expected an array");
    QTest::addRow("comment is a number")
        << QByteArray(R"({"_comment": 3, "global": [], "apps": []})")
        << QStringLiteral("_comment: expected a string or null");
    QTest::addRow("item lacks chord") << QByteArray(R"({"global": [{"name": "x"}], "apps": []})")
                                      << QStringLiteral("global[0].chord: required key is missing");
    QTest::addRow("item name is null")
        << QByteArray(R"({"global": [{"name": null, "chord": "x"}], "apps": []})")
        << QStringLiteral("global[0].name: expected a string");
    QTest::addRow("item is a string") << QByteArray(R"({"global": ["Save"], "apps": []})")
                                      << QStringLiteral("global[0]: expected an object");
    QTest::addRow("favorite is a string")
        << QByteArray(R"({"global": [)" + item +
                      R"(, {"name": "a", "chord": "b", "favorite": "yes"}], "apps": []})")
        << QStringLiteral("global[1].favorite: expected a boolean or null");
    QTest::addRow("tags is a string")
        << QByteArray(R"({"global": [{"name": "a", "chord": "b", "tags": "x"}], "apps": []})")
        << QStringLiteral("global[0].tags: expected an array of strings or null");
    QTest::addRow("a tag is a number")
        << QByteArray(R"({"global": [{"name": "a", "chord": "b", "tags": ["x", 2]}], "apps": []})")
        << QStringLiteral("global[0].tags[1]: expected a string");
    QTest::addRow("note is a boolean")
        << QByteArray(R"({"global": [{"name": "a", "chord": "b", "note": true}], "apps": []})")
        << QStringLiteral("global[0].note: expected a string or null");
    QTest::addRow("pack lacks shortcuts")
        << QByteArray(R"({"global": [], "apps": [{"name": "A"}]})")
        << QStringLiteral("apps[0].shortcuts: required key is missing");
    QTest::addRow("pack lacks name") << QByteArray(R"({"global": [], "apps": [{"shortcuts": []}]})")
                                     << QStringLiteral("apps[0].name: required key is missing");
    QTest::addRow("bundle id is a number")
        << QByteArray(R"({"global": [], "apps": [{"name": "A", "bundleID": 7, "shortcuts": []}]})")
        << QStringLiteral("apps[0].bundleID: expected a string or null");
    QTest::addRow("deep chord is a number")
        << QByteArray(
               R"({"global": [], "apps": [{"name": "A", "shortcuts": []}, {"name": "B", "shortcuts": []},
            {"name": "C", "shortcuts": [{"name": "x", "chord": 5}]}]})")
        << QStringLiteral("apps[2].shortcuts[0].chord: expected a string");
}

void TestVaultCodec::invalidDocumentsFailWithTheirPlace()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    const Expected<VaultData> result = VaultCodec::decode(json);
    QVERIFY(!result);
    QCOMPARE(result.error(), error);
}

void TestVaultCodec::syntaxErrorNamesTheByteOffset()
{
    const QByteArray json = R"({"global": [], "apps": [} )";
    const Expected<VaultData> result = VaultCodec::decode(json);
    QVERIFY(!result);
    QVERIFY2(result.error().startsWith(QStringLiteral("syntax error at byte offset ")),
             qPrintable(VaultTestSupport::errorText(result)));
    bool ok = false;
    const int offset = result.error().section(QLatin1Char(' '), 5, 5).chopped(1).toInt(&ok);
    QVERIFY2(ok, qPrintable(VaultTestSupport::errorText(result)));
    QVERIFY(offset > 20 && offset <= json.size());
}

void TestVaultCodec::nullOptionalsReadAsAbsentAndAreNotWritten()
{
    const QByteArray json = R"({"_comment": null, "global": [{"name": "a", "chord": "b",
        "favorite": null, "menu": null, "tags": null, "note": null, "source": null}],
        "apps": [{"name": "A", "bundleID": null, "shortcuts": []}]})";
    const Expected<VaultData> result = VaultCodec::decode(json);
    QVERIFY2(result, qPrintable(VaultTestSupport::errorText(result)));
    const ShortcutItem& entry = result->global.at(0);
    QVERIFY(!entry.favorite.has_value());
    QVERIFY(!entry.menu && !entry.tags && !entry.note && !entry.source);
    QVERIFY(!result->comment.has_value());
    QVERIFY(!result->apps.at(0).bundleID.has_value());

    const QByteArray written = VaultCodec::encode(*result);
    QVERIFY(!written.contains("null"));
    QVERIFY(!written.contains("favorite"));
    QVERIFY(!written.contains("bundleID"));
    QVERIFY(!written.contains("_comment"));
}

void TestVaultCodec::readsEveryField()
{
    const QByteArray json = R"({"_comment": "hi", "global": [{"name": "a", "chord": "b",
        "favorite": true, "menu": "m", "tags": ["t1", "t2"], "note": "n", "source": "s"}],
        "apps": [{"name": "A", "bundleID": "org.example.A", "shortcuts": [{"name": "x", "chord": "y"}]}]})";
    const Expected<VaultData> result = VaultCodec::decode(json);
    QVERIFY2(result, qPrintable(VaultTestSupport::errorText(result)));
    const ShortcutItem& entry = result->global.at(0);
    QCOMPARE(result->comment, std::optional<QString>(QStringLiteral("hi")));
    QCOMPARE(entry.favorite, std::optional<bool>(true));
    QCOMPARE(entry.menu, std::optional<QString>(QStringLiteral("m")));
    QCOMPARE(entry.tags,
             std::optional<QStringList>(QStringList{QStringLiteral("t1"), QStringLiteral("t2")}));
    QCOMPARE(entry.note, std::optional<QString>(QStringLiteral("n")));
    QCOMPARE(entry.source, std::optional<QString>(QStringLiteral("s")));
    QCOMPARE(result->apps.at(0).bundleID, std::optional<QString>(QStringLiteral("org.example.A")));
    QCOMPARE(result->apps.at(0).shortcuts.at(0).chord, QStringLiteral("y"));
}

void TestVaultCodec::roundTripSortsKeysDropsNullsAndUnknownKeysKeepsOrder()
{
    const QByteArray input = R"({"version": 2, "global": [
        {"tags": ["b", "a"], "name": "Zeta", "chord": "⌃ Z", "extra": {"x": 1}, "favorite": null},
        {"name": "Alpha", "chord": "⌃ A", "favorite": false, "note": "see a/b"}],
      "apps": [{"shortcuts": [], "name": "Files", "bundleID": "org.gnome.Nautilus", "color": "red"}],
      "_comment": "Made by hand"})";
    const Expected<VaultData> result = VaultCodec::decode(input);
    QVERIFY2(result, qPrintable(VaultTestSupport::errorText(result)));
    const QByteArray expected = R"({
  "_comment" : "Made by hand",
  "apps" : [
    {
      "bundleID" : "org.gnome.Nautilus",
      "name" : "Files",
      "shortcuts" : []
    }
  ],
  "global" : [
    {
      "chord" : "⌃ Z",
      "name" : "Zeta",
      "tags" : [
        "b",
        "a"
      ]
    },
    {
      "chord" : "⌃ A",
      "favorite" : false,
      "name" : "Alpha",
      "note" : "see a\/b"
    }
  ]
}
)";
    QCOMPARE(VaultCodec::encode(*result), expected);
}

void TestVaultCodec::writesRequiredKeysAndEmptyArrays()
{
    const QByteArray written = VaultCodec::encode(VaultData::empty());
    QCOMPARE(written, QByteArray("{\n  \"apps\" : [],\n  \"global\" : []\n}\n"));
}

void TestVaultCodec::falseFavoriteIsWritten()
{
    VaultData data;
    data.global.append(
        ShortcutItem{QStringLiteral("a"), QStringLiteral("b"), false, {}, QStringList{}, {}, {}});
    const QByteArray written = VaultCodec::encode(data);
    QVERIFY(written.contains("\"favorite\" : false"));
    QVERIFY(written.contains("\"tags\" : []"));
}

void TestVaultCodec::escapesSlashesQuotesAndControls()
{
    VaultData data;
    data.comment = QStringLiteral("a/b \"q\" back\\slash\ttab\nline\x01 é ⌘");
    const QByteArray written = VaultCodec::encode(data);
    QVERIFY2(written.contains(R"("_comment" : "a\/b \"q\" back\\slash\ttab\nline\u0001 é ⌘")"),
             written.constData());
}

void TestVaultCodec::loneSurrogatesStayInTheirOwnString()
{
    // A half of a surrogate pair at the end of one text and the other half at the start of
    // the next are two broken characters, each written as the replacement character, never
    // one joined pair.
    VaultData data;
    const QString high = QStringLiteral("Emoji ") + QChar(0xD83D);
    const QString low = QChar(0xDE00) + QStringLiteral(" face");
    ShortcutItem entry;
    entry.name = high; // written just before the note
    entry.chord = QStringLiteral("⌘ E");
    entry.note = low;
    data.global.append(entry);
    const QByteArray written = VaultCodec::encode(data);
    QVERIFY(!written.contains(QStringLiteral("😀").toUtf8()));
    const Expected<VaultData> back = VaultCodec::decode(written);
    QVERIFY2(back, qPrintable(VaultTestSupport::errorText(back)));
    QCOMPARE(back->global.first().name, QStringLiteral("Emoji \uFFFD"));
    QCOMPARE(back->global.first().note, QStringLiteral("\uFFFD face"));
    QCOMPARE(back->global.first().chord, QStringLiteral("⌘ E"));
}

void TestVaultCodec::encodedOutputDecodesToTheSameData()
{
    VaultData data;
    data.comment = QStringLiteral("round/trip");
    data.global.append(ShortcutItem{QStringLiteral("Emoji 😀 ü"), QStringLiteral("⌃ ⌥ ⇧ ⌘ /"), true,
                                    QStringLiteral("Edit > Emoji"),
                                    QStringList{QStringLiteral("x")}, QStringLiteral("\"quoted\""),
                                    QStringLiteral("scanned-menu")});
    data.apps.append(AppShortcutPack{
        QStringLiteral("Kate"),
        QStringLiteral("org.kde.kate"),
        {ShortcutItem{QStringLiteral("Save"), QStringLiteral("⌃ S"), {}, {}, {}, {}, {}}}});
    data.apps.append(AppShortcutPack{QStringLiteral("NoId"), std::nullopt, {}});
    const QByteArray written = VaultCodec::encode(data);
    const Expected<VaultData> back = VaultCodec::decode(written);
    QVERIFY2(back, qPrintable(VaultTestSupport::errorText(back)));
    QCOMPARE(*back, data);
    // Another JSON reader agrees that the output is valid JSON.
    QJsonParseError error;
    QJsonDocument::fromJson(written, &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
}

void TestVaultCodec::acceptsAnyWhitespace()
{
    const Expected<VaultData> result =
        VaultCodec::decode("\r\n\t{\"apps\":[],\n\n\"global\"   :\t[ ]  }  \n");
    QVERIFY2(result, qPrintable(VaultTestSupport::errorText(result)));
    QCOMPARE(*result, VaultData::empty());
}

void TestVaultCodec::invalidUtf8IsASyntaxError()
{
    for (const QByteArray& json :
         {QByteArray("{\"global\": [], \"apps\": [], \"_comment\": \"\xff\"}"),
          QByteArray("{\"global\": [], \"apps\": [], \"\xc3\": 1}")}) {
        const Expected<VaultData> result = VaultCodec::decode(json);
        QVERIFY(!result);
        QVERIFY2(result.error().startsWith(QStringLiteral("syntax error at byte offset")),
                 qPrintable(VaultTestSupport::errorText(result)));
        QCOMPARE(result.error(), decodeTree(json).error());
    }
}

void TestVaultCodec::readersAgreeOnRandomDocuments_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 8; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestVaultCodec::readersAgreeOnRandomDocuments()
{
    // Random vault-like documents with unknown keys, nulls, escapes, non-ASCII text and the
    // occasional wrong type; some are then cut or have a byte removed. The reader of its own
    // must agree with the one over QJsonDocument on every one of them.
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto chance = [&](int percent) { return int(random.bounded(100)) < percent; };
    const QStringList texts{QStringLiteral("Save"),        QStringLiteral("a/b"),
                            QStringLiteral("q\"x\""),      QStringLiteral("é ⌘ 👍🏽"),
                            QStringLiteral("tab\tline\n"), QString()};
    const auto stringJson = [&]() {
        const QString text = texts.at(random.bounded(texts.size()));
        QString escaped = text;
        escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"))
            .replace(QLatin1Char('"'), QStringLiteral("\\\""))
            .replace(QLatin1Char('\t'), QStringLiteral("\\t"))
            .replace(QLatin1Char('\n'), QStringLiteral("\\u000a"));
        return QStringLiteral("\"") + escaped + QStringLiteral("\"");
    };
    const auto anyJson = [&]() -> QString {
        switch (random.bounded(6)) {
        case 0:
            return QStringLiteral("null");
        case 1:
            return QStringLiteral("true");
        case 2:
            return QStringLiteral("-12.5e3");
        case 3:
            return QStringLiteral("{\"x\": [1, {\"y\": null}]}");
        case 4:
            return QStringLiteral("[]");
        default:
            return stringJson();
        }
    };
    const auto field = [&](const char* key, const QString& good) {
        return QStringLiteral("\"%1\": %2")
            .arg(QLatin1StringView(key), chance(3) ? anyJson() : good);
    };
    const auto itemJson = [&]() {
        QStringList fields;
        if (!chance(2))
            fields << field("name", stringJson());
        if (!chance(2))
            fields << field("chord", stringJson());
        if (chance(50))
            fields << field("favorite",
                            chance(30) ? QStringLiteral("null") : QStringLiteral("false"));
        if (chance(50))
            fields << field("tags", QStringLiteral("[%1, %2]").arg(stringJson(), stringJson()));
        if (chance(40))
            fields << field("note", chance(30) ? QStringLiteral("null") : stringJson());
        if (chance(40))
            fields << field("menu", stringJson());
        if (chance(20))
            fields << field("source", stringJson());
        if (chance(20))
            fields << QStringLiteral("\"extra\": ") + anyJson();
        std::shuffle(fields.begin(), fields.end(), random);
        return QStringLiteral("{") + fields.join(QStringLiteral(",\n ")) + QStringLiteral("}");
    };
    int accepted = 0;
    int refused = 0;
    for (int round = 0; round < 60; ++round) {
        QStringList items;
        for (int i = random.bounded(4); i > 0; --i)
            items << itemJson();
        QStringList packs;
        for (int i = random.bounded(3); i > 0; --i) {
            QStringList shortcuts;
            for (int j = random.bounded(3); j > 0; --j)
                shortcuts << itemJson();
            packs << QStringLiteral("{%1, %2, %3}")
                         .arg(field("name", stringJson()),
                              field("bundleID", chance(30) ? QStringLiteral("null") : stringJson()),
                              field("shortcuts", QStringLiteral("[") +
                                                     shortcuts.join(QLatin1Char(',')) +
                                                     QStringLiteral("]")));
        }
        QStringList root{field("global", QStringLiteral("[") + items.join(QLatin1Char(',')) +
                                             QStringLiteral("]")),
                         field("apps", QStringLiteral("[") + packs.join(QLatin1Char(',')) +
                                           QStringLiteral("]"))};
        if (chance(50))
            root << field("_comment", stringJson());
        if (chance(5))
            root.removeAt(random.bounded(root.size()));
        std::shuffle(root.begin(), root.end(), random);
        QByteArray json =
            (QStringLiteral(" {") + root.join(QStringLiteral(",\n")) + QStringLiteral("}\n"))
                .toUtf8();
        if (chance(15))
            json.remove(random.bounded(json.size()), 1);
        if (chance(5))
            json.truncate(random.bounded(json.size()));

        const Expected<VaultData> fast = VaultCodec::decode(json);
        const Expected<VaultData> tree = decodeTree(json);
        QVERIFY2(bool(fast) == bool(tree), json.constData());
        ++(fast ? accepted : refused);
        if (fast) {
            QCOMPARE(*fast, *tree);
        } else if (tree.error().startsWith(QStringLiteral("syntax error"))) {
            QCOMPARE(fast.error(), tree.error());
        }
    }
    qInfo("%d documents accepted, %d refused", accepted, refused);
    QVERIFY(accepted > 5);
    QVERIFY(refused > 5);
}

QTEST_GUILESS_MAIN(TestVaultCodec)
#include "tst_VaultCodec.moc"
