// SPDX-License-Identifier: MIT
#include "search/FuzzyMatch.h"
#include "search/ScoreArithmetic.h"
#include "vault/ShortcutItem.h"

#include <QtTest>

#include <csignal>
#include <limits>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using Tessaline::ShortcutItem;
namespace FuzzyMatch = Tessaline::FuzzyMatch;
using namespace Qt::Literals::StringLiterals;

using Positions = QList<qint64>;
using OptionalScore = std::optional<qint64>;

namespace {

ShortcutItem item(const QString& name, const QString& chord)
{
    ShortcutItem shortcut;
    shortcut.name = name;
    shortcut.chord = chord;
    return shortcut;
}

// Runs `work` in a child process and tells whether it ended by abort (qFatal's way out).
bool abortsInChild(void (*work)())
{
    const pid_t child = fork();
    if (child == 0) {
        // Keep the expected fatal message out of the test log.
        (void)!freopen("/dev/null", "w", stderr);
        qInstallMessageHandler(nullptr);
        std::signal(SIGABRT, SIG_DFL); // no crash report from the test library
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}

} // namespace

class TestFuzzyMatch : public QObject
{
    Q_OBJECT

private slots:
    void matchScores_data();
    void matchScores();
    void nonMatches_data();
    void nonMatches();
    void queryCaseDoesNotMatter();
    void scoreOverFields_data();
    void scoreOverFields();
    void highlightedText_data();
    void highlightedText();
    void scoreArithmeticTrapsOnOverflow();
};

void TestFuzzyMatch::matchScores_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("candidate");
    QTest::addColumn<qint64>("score");
    QTest::addColumn<Positions>("positions");

    // Worked examples.
    QTest::addRow("ns in New Slide") << u"ns"_s << u"New Slide"_s << qint64(16) << Positions{0, 4};
    QTest::addRow("cmd in Command") << u"cmd"_s << u"Command"_s << qint64(10) << Positions{0, 2, 6};
    QTest::addRow("late match in a long candidate")
        << u"x"_s << QString(40, u'a') + u"x"_s + QString(19, u'a') << qint64(-33) << Positions{40};

    // Empty query: score 0, no positions, whatever the candidate.
    QTest::addRow("empty query") << QString() << u"New Slide"_s << qint64(0) << Positions{};
    QTest::addRow("empty query, empty candidate")
        << QString() << QString() << qint64(0) << Positions{};

    // No trimming: the space is a query character like any other.
    QTest::addRow("leading space needs a space")
        << u" a"_s << u"x a"_s << qint64(14) << Positions{1, 2};

    // Case: the query is lower-cased; the candidate's case only decides the camel-case bonus.
    QTest::addRow("upper-case query") << u"NS"_s << u"New Slide"_s << qint64(16) << Positions{0, 4};
    QTest::addRow("camel case hump") << u"ns"_s << u"newSlide"_s << qint64(13) << Positions{0, 3};
    QTest::addRow("no hump in lower case")
        << u"ns"_s << u"newslide"_s << qint64(9) << Positions{0, 3};
    QTest::addRow("no hump after upper case") << u"s"_s << u"NS"_s << qint64(1) << Positions{1};

    // Separators: exactly space, "/", ">", "-", "_".
    QTest::addRow("after space") << u"b"_s << u"a b"_s << qint64(7) << Positions{2};
    QTest::addRow("after slash") << u"b"_s << u"a/b"_s << qint64(7) << Positions{2};
    QTest::addRow("after greater-than") << u"b"_s << u"a>b"_s << qint64(7) << Positions{2};
    QTest::addRow("after hyphen") << u"b"_s << u"a-b"_s << qint64(7) << Positions{2};
    QTest::addRow("after underscore") << u"b"_s << u"a_b"_s << qint64(7) << Positions{2};
    QTest::addRow("after full stop") << u"b"_s << u"a.b"_s << qint64(0) << Positions{2};
    QTest::addRow("after tab") << u"b"_s << u"a\tb"_s << qint64(0) << Positions{2};
    QTest::addRow("after backslash") << u"b"_s << u"a\\b"_s << qint64(0) << Positions{2};
    QTest::addRow("separator then upper case") << u"b"_s << u"a B"_s << qint64(7) << Positions{2};

    // Index 0: +8 and never +5; later runs get +5.
    QTest::addRow("single character") << u"a"_s << u"a"_s << qint64(9) << Positions{0};
    QTest::addRow("run from the start") << u"ab"_s << u"ab"_s << qint64(15) << Positions{0, 1};
    QTest::addRow("run inside") << u"bc"_s << u"abc"_s << qint64(7) << Positions{1, 2};

    // Greedy, leftmost: no search for a better alignment.
    QTest::addRow("leftmost wins") << u"ab"_s << u"a_ab"_s << qint64(10) << Positions{0, 3};

    // Penalties truncate toward zero.
    QTest::addRow("three unmatched cost nothing")
        << u"a"_s << u"abcd"_s << qint64(9) << Positions{0};
    QTest::addRow("four unmatched cost one") << u"a"_s << u"abcde"_s << qint64(8) << Positions{0};
    QTest::addRow("first at 1 costs nothing") << u"b"_s << u"ab"_s << qint64(1) << Positions{1};
    QTest::addRow("first at 3 costs one") << u"d"_s << u"abcd"_s << qint64(0) << Positions{3};

    // Characters are grapheme clusters.
    QTest::addRow("combining accent is one character")
        << u"x"_s << u"e\u0301x"_s << qint64(1) << Positions{1};
    QTest::addRow("precomposed query, decomposed candidate")
        << u"\u00e9"_s << u"cafe\u0301"_s << qint64(0) << Positions{3};
    QTest::addRow("decomposed query, precomposed candidate")
        << u"e\u0301"_s << u"caf\u00e9"_s << qint64(0) << Positions{3};
    QTest::addRow("skin-toned emoji is one character")
        << u"x"_s << u"\U0001F44D\U0001F3FDx"_s << qint64(1) << Positions{1};
    QTest::addRow("emoji query") << u"\U0001F44D\U0001F3FD"_s << u"a \U0001F44D\U0001F3FD"_s
                                 << qint64(7) << Positions{2};
    QTest::addRow("bare emoji does not match the toned one")
        << u"\U0001F44Dx"_s << u"\U0001F44D\U0001F3FD\U0001F44Dx"_s << qint64(7) << Positions{1, 2};
    QTest::addRow("CR LF is one character") << u"x"_s << u"\r\nx"_s << qint64(1) << Positions{1};
    QTest::addRow("sharp s") << u"\u00df"_s << u"Stra\u00dfe"_s << qint64(-2) << Positions{4};
    QTest::addRow("dotted capital I")
        << u"\u0130"_s << u"\u0130stanbul"_s << qint64(8) << Positions{0};
    QTest::addRow("sigma") << u"\u03c3"_s << u"\u039f\u03a3"_s << qint64(1) << Positions{1};

    // Case properties of whole characters.
    QTest::addRow("non-ASCII hump")
        << u"\u00fc"_s << u"stra\u00dfe\u00dcber"_s << qint64(0) << Positions{6};
    QTest::addRow("decomposed capital is upper case")
        << u"\u00e9"_s << u"aE\u0301"_s << qint64(5) << Positions{1};
    QTest::addRow("feminine ordinal is lower case")
        << u"b"_s << u"\u00aaB"_s << qint64(5) << Positions{1};
    QTest::addRow("circled letters are cased")
        << u"\u24d1"_s << u"\u24d0\u24b7"_s << qint64(5) << Positions{1};
    QTest::addRow("digit is not lower case") << u"b"_s << u"1B"_s << qint64(1) << Positions{1};
    QTest::addRow("title case is neither")
        << u"\u01c6"_s << u"a\u01c5"_s << qint64(1) << Positions{1};
    QTest::addRow("Greek hump") << u"\u03b2"_s << u"\u03b1\u0392"_s << qint64(5) << Positions{1};
}

void TestFuzzyMatch::matchScores()
{
    QFETCH(QString, query);
    QFETCH(QString, candidate);
    QFETCH(qint64, score);
    QFETCH(Positions, positions);

    const auto result = FuzzyMatch::match(query, candidate);
    QVERIFY(result.has_value());
    QCOMPARE(result->score, score);
    QCOMPARE(result->positions, positions);
}

void TestFuzzyMatch::nonMatches_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("candidate");

    QTest::addRow("not a subsequence") << u"zz"_s << u"New Slide"_s;
    QTest::addRow("order matters") << u"ns"_s << u"Sane"_s;
    QTest::addRow("space needs a space") << u" a"_s << u"ab"_s;
    QTest::addRow("query longer than candidate") << u"abc"_s << u"ab"_s;
    QTest::addRow("longer only by spaces") << u"ab  "_s << u"ab"_s;
    QTest::addRow("one space too many") << u"a "_s << u"a"_s;
    QTest::addRow("empty candidate") << u"a"_s << QString();
    QTest::addRow("each query character once") << u"aa"_s << u"a b"_s;
    QTest::addRow("sharp s is not ss") << u"ss"_s << u"Stra\u00dfe"_s;
    QTest::addRow("plain i is not dotted i") << u"i"_s << u"\u0130"_s;
    QTest::addRow("accent is part of the character") << u"e"_s << u"e\u0301"_s;
    QTest::addRow("toned emoji is not the bare one")
        << u"\U0001F44D"_s << u"\U0001F44D\U0001F3FD"_s;
}

void TestFuzzyMatch::nonMatches()
{
    QFETCH(QString, query);
    QFETCH(QString, candidate);
    QCOMPARE(FuzzyMatch::match(query, candidate), std::nullopt);
}

void TestFuzzyMatch::queryCaseDoesNotMatter()
{
    const QStringList candidates{u"New Slide"_s, u"newSlide"_s, u"NEW SLIDE"_s, u"Snow"_s,
                                 u"n_s"_s};
    for (const QString& candidate : candidates) {
        QCOMPARE(FuzzyMatch::match(u"NS"_s, candidate), FuzzyMatch::match(u"ns"_s, candidate));
        QCOMPARE(FuzzyMatch::match(u"nS"_s, candidate), FuzzyMatch::match(u"Ns"_s, candidate));
    }
}

void TestFuzzyMatch::scoreOverFields_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<ShortcutItem>("shortcut");
    QTest::addColumn<OptionalScore>("expected");

    const ShortcutItem newSlide = item(u"New Slide"_s, u"\u21e7 \u2318 N"_s);
    QTest::addRow("empty query") << QString() << newSlide << OptionalScore(0);
    QTest::addRow("spaces only") << u"   "_s << newSlide << OptionalScore(0);
    QTest::addRow("white space and newlines") << u" \t\n\r "_s << newSlide << OptionalScore(0);
    QTest::addRow("name gets 12 more") << u"ns"_s << newSlide << OptionalScore(28);
    QTest::addRow("query is trimmed") << u"  ns\n"_s << newSlide << OptionalScore(28);
    QTest::addRow("no field matches") << u"zz"_s << newSlide << OptionalScore();

    // The chord alone: "⌘" at 2 and "n" at 4, both after a space: 8 + 8 - 0 - 1.
    QTest::addRow("chord only") << u"\u2318n"_s << newSlide << OptionalScore(15);

    ShortcutItem withNote = item(u"Zoom"_s, u"\u2318 +"_s);
    withNote.note = u"Make everything bigger"_s;
    withNote.menu = u"View > Zoom In"_s;
    QTest::addRow("note is the detail") << u"bigger"_s << withNote << OptionalScore(26);
    QTest::addRow("menu is not searched when a note exists")
        << u"view"_s << withNote << OptionalScore();

    ShortcutItem withMenu = item(u"Zoom"_s, u"\u2318 +"_s);
    withMenu.note = QString();
    withMenu.menu = u"View > Zoom In"_s;
    QTest::addRow("menu is the detail when the note is empty")
        << u"view"_s << withMenu << OptionalScore(25);

    ShortcutItem tagged = item(u"Zoom"_s, u"\u2318 +"_s);
    tagged.tags = QStringList{u"magnify"_s, u"bigger"_s};
    QTest::addRow("each tag") << u"big"_s << tagged << OptionalScore(21);
    // Only the detail "magnify / bigger" holds "y / b" (a run over both separators).
    QTest::addRow("tags joined are the detail") << u"y / b"_s << tagged << OptionalScore(41);

    // "useful" is a run at the start of "Useful desktop shortcut" (39), less 17 / 4 for the
    // characters it leaves.
    QTest::addRow("default detail")
        << u"useful"_s << item(u"Zoom"_s, u"\u2318 +"_s) << OptionalScore(35);

    // The name's score carries 12 more; a later field replaces it only when strictly greater.
    ShortcutItem names = item(u"ab"_s, u"x"_s);
    names.tags = QStringList{u"ab"_s};
    QTest::addRow("name bonus over the same text in a tag")
        << u"ab"_s << names << OptionalScore(27);
    ShortcutItem tie = item(u"......a"_s, u"x"_s);
    tie.tags = QStringList{u"a"_s};
    // Name: 1 - 6/4 - 6/2 = -3, plus 12 = 9; the tag "a" also scores 9.
    QTest::addRow("tie between name and tag") << u"a"_s << tie << OptionalScore(9);
    ShortcutItem better = item(u"a--b"_s, u"x"_s);
    better.tags = QStringList{u"ab"_s, u"a b"_s};
    // Name: 9 + 8 = 17, plus 12 = 29; the tags score 15 and 17.
    QTest::addRow("lower fields never replace the name") << u"ab"_s << better << OptionalScore(29);

    // A negative name score still counts as a match.
    const ShortcutItem late = item(QString(40, u'a') + u"x"_s + QString(19, u'a'), u"y"_s);
    QTest::addRow("negative name score") << u"x"_s << late << OptionalScore(-21);
    ShortcutItem lateTagged = late;
    lateTagged.tags = QStringList{u"..x"_s};
    // Tag "..x": 1 - 0 - 1 = 0 beats the name's -21.
    QTest::addRow("tag beats a negative name") << u"x"_s << lateTagged << OptionalScore(0);
}

void TestFuzzyMatch::scoreOverFields()
{
    QFETCH(QString, query);
    QFETCH(ShortcutItem, shortcut);
    QFETCH(OptionalScore, expected);
    const OptionalScore actual = FuzzyMatch::score(query, shortcut);
    QCOMPARE(actual.has_value(), expected.has_value());
    if (expected)
        QCOMPARE(*actual, *expected);
}

void TestFuzzyMatch::highlightedText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("accent");
    QTest::addColumn<QString>("html");

    const QString blue = FuzzyMatch::defaultAccentColor();
    QTest::addRow("empty query keeps the text")
        << u"a < b & c"_s << QString() << blue << u"a &lt; b &amp; c"_s;
    QTest::addRow("spaces only keep the text")
        << u"New Slide"_s << u"  "_s << blue << u"New Slide"_s;
    QTest::addRow("no match keeps the text")
        << u"New \"Slide\""_s << u"zz"_s << blue << u"New &quot;Slide&quot;"_s;
    QTest::addRow("matched characters")
        << u"New Slide"_s << u"ns"_s << blue
        << u"<font color=\"#0a84ff\"><b>N</b></font>ew <font color=\"#0a84ff\"><b>S</b></font>lide"_s;
    QTest::addRow("runs share one span")
        << u"New"_s << u" ne "_s << blue << u"<font color=\"#0a84ff\"><b>Ne</b></font>w"_s;
    QTest::addRow("matched characters are escaped")
        << u"a<b"_s << u"<"_s << blue << u"a<font color=\"#0a84ff\"><b>&lt;</b></font>b"_s;
    QTest::addRow("accent colour")
        << u"ab"_s << u"b"_s << u"#ff0000"_s << u"a<font color=\"#ff0000\"><b>b</b></font>"_s;
    QTest::addRow("whole grapheme clusters")
        << u"e\u0301xe\u0301"_s << u"e\u0301"_s << blue
        << u"<font color=\"#0a84ff\"><b>e\u0301</b></font>xe\u0301"_s;
    QTest::addRow("greedy leftmost even when a later run looks better")
        << u"a_ab"_s << u"ab"_s << blue
        << u"<font color=\"#0a84ff\"><b>a</b></font>_a<font color=\"#0a84ff\"><b>b</b></font>"_s;
}

void TestFuzzyMatch::highlightedText()
{
    QFETCH(QString, text);
    QFETCH(QString, query);
    QFETCH(QString, accent);
    QFETCH(QString, html);
    QCOMPARE(FuzzyMatch::highlighted(text, query, accent), html);
}

void TestFuzzyMatch::scoreArithmeticTrapsOnOverflow()
{
    using namespace FuzzyMatch::ScoreArithmetic;
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    constexpr qint64 min = std::numeric_limits<qint64>::min();
    QCOMPARE(add(max - 1, 1), max);
    QCOMPARE(subtract(min + 1, 1), min);
    QCOMPARE(unmatchedPenalty(59, 1), qint64(14));
    QCOMPARE(latePenalty(41), qint64(20));
    QVERIFY(abortsInChild([] { (void)add(max, 1); }));
    QVERIFY(abortsInChild([] { (void)subtract(min, 1); }));
    QVERIFY(!abortsInChild([] { (void)add(max - 1, 1); }));
}

QTEST_GUILESS_MAIN(TestFuzzyMatch)
#include "tst_FuzzyMatch.moc"
