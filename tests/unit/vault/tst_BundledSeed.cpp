// SPDX-License-Identifier: MIT
#include "VaultTestSupport.h"

#include "vault/FallbackData.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

// Display form: modifiers in the order ⌃ ⌥ ⇧ ⌘, each once, then one key, single spaces.
bool isDisplayChord(const QString& chord)
{
    static const QRegularExpression form(
        QStringLiteral("^(⌃ )?(⌥ )?(⇧ )?(⌘ )?"
                       "(Return|Tab|Space|Delete|Esc|Home|End|Page Up|Page "
                       "Down|Print|←|→|↑|↓|F[1-9]|F1[0-9]|F2[0-4]|"
                       "[^a-z\\s⌃⌥⇧⌘])$"));
    return form.match(chord).hasMatch();
}

} // namespace

class TestBundledSeed : public QObject
{
    Q_OBJECT

private slots:
    void chordForm_data();
    void chordForm();
    void seedDecodes();
    void everyChordIsInDisplayForm();
    void everyPackHasADesktopFileId();
    void fallbackHasItsExactContent();
    void firstGlobalDetailLine();
    void builtBundleCopyIsTheSource();

private:
    VaultData seed()
    {
        const Expected<VaultData> result = VaultCodec::decode(
            readFile(QStringLiteral(TESSALINE_SOURCE_DIR "/resources/keybinds.json")));
        if (!result)
            qWarning("%s", qPrintable(VaultTestSupport::errorText(result)));
        return result.value_or(VaultData{});
    }
};

void TestBundledSeed::chordForm_data()
{
    QTest::addColumn<QString>("chord");
    QTest::addColumn<bool>("valid");
    QTest::addRow("ctrl s") << QStringLiteral("⌃ S") << true;
    QTest::addRow("all four") << QStringLiteral("⌃ ⌥ ⇧ ⌘ ←") << true;
    QTest::addRow("plain key") << QStringLiteral("F11") << true;
    QTest::addRow("named key") << QStringLiteral("⌃ Page Down") << true;
    QTest::addRow("wrong order") << QStringLiteral("⌘ ⇧ 5") << false;
    QTest::addRow("text modifier") << QStringLiteral("Ctrl+S") << false;
    QTest::addRow("lower-case key") << QStringLiteral("⌃ s") << false;
    QTest::addRow("no space") << QStringLiteral("⌃S") << false;
    QTest::addRow("modifier only") << QStringLiteral("⌘") << false;
}

void TestBundledSeed::chordForm()
{
    QFETCH(QString, chord);
    QFETCH(bool, valid);
    QCOMPARE(isDisplayChord(chord), valid);
}

void TestBundledSeed::seedDecodes()
{
    const Expected<VaultData> result = VaultCodec::decode(
        readFile(QStringLiteral(TESSALINE_SOURCE_DIR "/resources/keybinds.json")));
    QVERIFY2(result, qPrintable(VaultTestSupport::errorText(result)));
    QVERIFY(result->global.size() >= 5);
    QVERIFY(result->apps.size() >= 10);
}

void TestBundledSeed::everyChordIsInDisplayForm()
{
    const VaultData data = seed();
    QList<ShortcutItem> all = data.global;
    for (const AppShortcutPack& pack : data.apps) {
        QVERIFY2(!pack.shortcuts.isEmpty(), qPrintable(pack.name));
        all += pack.shortcuts;
        // One entry per name and chord within a pack.
        QSet<QString> ids;
        for (const ShortcutItem& entry : pack.shortcuts)
            ids.insert(entry.id());
        QCOMPARE(ids.size(), pack.shortcuts.size());
    }
    QVERIFY(all.size() > 100);
    for (const ShortcutItem& entry : all) {
        QVERIFY2(isDisplayChord(entry.chord),
                 qPrintable(entry.name + QStringLiteral(": ") + entry.chord));
        QVERIFY(!entry.name.isEmpty());
    }
}

void TestBundledSeed::everyPackHasADesktopFileId()
{
    QSet<QString> ids;
    for (const AppShortcutPack& pack : seed().apps) {
        QVERIFY2(pack.bundleID && !pack.bundleID->isEmpty(), qPrintable(pack.name));
        QVERIFY2(!pack.bundleID->endsWith(QStringLiteral(".desktop")), qPrintable(*pack.bundleID));
        ids.insert(*pack.bundleID);
    }
    for (const char* id :
         {"firefox-esr", "org.gnome.Nautilus", "org.kde.dolphin", "org.gnome.Terminal",
          "libreoffice-writer", "thunderbird", "gimp", "code", "org.xfce.mousepad", "org.kde.kate"})
        QVERIFY2(ids.contains(QString::fromLatin1(id)), id);
}

void TestBundledSeed::fallbackHasItsExactContent()
{
    const VaultData& data = fallbackData();
    QCOMPARE(data.comment, std::optional<QString>(QStringLiteral(
                               "Bundled fallback seed used when keybinds.json is unavailable.")));
    const auto row = [](const ShortcutItem& entry) {
        return QStringList{entry.name, entry.chord,
                           entry.isFavorite() ? QStringLiteral("true") : QStringLiteral("false"),
                           entry.menu.value_or(QStringLiteral("<none>")),
                           entry.tags.value_or(QStringList{}).join(QLatin1Char(','))};
    };
    const QList<QStringList> global{
        {QStringLiteral("Show all apps"), QStringLiteral("⌘ A"), QStringLiteral("true"),
         QStringLiteral("Open the desktop's grid of apps; type to search apps and files."),
         QStringLiteral("search")},
        {QStringLiteral("Screenshot"), QStringLiteral("Print"), QStringLiteral("true"),
         QStringLiteral("Open the desktop's screenshot and screen recording tool."),
         QStringLiteral("screenshot")},
        {QStringLiteral("Emoji and symbols"), QStringLiteral("⌃ ."), QStringLiteral("false"),
         QStringLiteral("Open the emoji picker in a text field."), QStringLiteral("typing")},
        {QStringLiteral("Close window"), QStringLiteral("⌥ F4"), QStringLiteral("false"),
         QStringLiteral("Use when an app is stuck."), QStringLiteral("recovery")}};
    QCOMPARE(data.global.size(), global.size());
    for (qsizetype i = 0; i < global.size(); ++i)
        QCOMPARE(row(data.global[i]), global[i]);

    QCOMPARE(data.apps.size(), 2);
    QCOMPARE(data.apps[0].name, QStringLiteral("Files"));
    QCOMPARE(data.apps[0].bundleID, std::optional<QString>(QStringLiteral("org.gnome.Nautilus")));
    const QList<QStringList> files{
        {QStringLiteral("Preview selected file"), QStringLiteral("Space"), QStringLiteral("true"),
         QStringLiteral("Preview without opening the file."), QStringLiteral("files")},
        {QStringLiteral("Type a location"), QStringLiteral("⌃ L"), QStringLiteral("true"),
         QStringLiteral("Jump straight to a path."), QStringLiteral("navigation")},
        {QStringLiteral("Show hidden files"), QStringLiteral("⌃ H"), QStringLiteral("true"),
         QStringLiteral("Toggle hidden files."), QStringLiteral("files")}};
    QCOMPARE(data.apps[0].shortcuts.size(), files.size());
    for (qsizetype i = 0; i < files.size(); ++i)
        QCOMPARE(row(data.apps[0].shortcuts[i]), files[i]);

    QCOMPARE(data.apps[1].name, QStringLiteral("Text Editor"));
    QCOMPARE(data.apps[1].bundleID, std::optional<QString>(QStringLiteral("org.gnome.TextEditor")));
    const QList<QStringList> editor{
        {QStringLiteral("New document"), QStringLiteral("⌃ N"), QStringLiteral("true"),
         QStringLiteral("Start a blank document."), QStringLiteral("notes")},
        {QStringLiteral("Go to line"), QStringLiteral("⌃ I"), QStringLiteral("false"),
         QStringLiteral("Jump to a line number."), QStringLiteral("notes")}};
    QCOMPARE(data.apps[1].shortcuts.size(), editor.size());
    for (qsizetype i = 0; i < editor.size(); ++i)
        QCOMPARE(row(data.apps[1].shortcuts[i]), editor[i]);

    // Every built-in item: exactly one tag, no note, no source, favorite always present.
    QList<ShortcutItem> all = data.global + data.apps[0].shortcuts + data.apps[1].shortcuts;
    for (const ShortcutItem& entry : all) {
        QVERIFY(entry.favorite.has_value());
        QCOMPARE(entry.tags->size(), 1);
        QVERIFY(!entry.note && !entry.source);
    }
}

void TestBundledSeed::firstGlobalDetailLine()
{
    QCOMPARE(fallbackData().global.at(0).detailText(),
             QStringLiteral("Open the desktop's grid of apps; type to search apps and files."));
}

void TestBundledSeed::builtBundleCopyIsTheSource()
{
    QCOMPARE(readFile(QStringLiteral(TESSALINE_BUILD_SHARE_DIR "/keybinds.json")),
             readFile(QStringLiteral(TESSALINE_SOURCE_DIR "/resources/keybinds.json")));
}

QTEST_GUILESS_MAIN(TestBundledSeed)
#include "tst_BundledSeed.moc"
