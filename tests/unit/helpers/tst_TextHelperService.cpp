// SPDX-License-Identifier: MIT
#include "helpers/TextHelperService.h"

#include "FakeAccessibilityTrust.h"
#include "FakeAlertPresenter.h"
#include "FakeClipboard.h"
#include "FakeKeyInjector.h"
#include "FakeTextInserter.h"
#include "FakeWorkspace.h"
#include "ManualScheduler.h"

#include <QtTest>

#include <memory>

using namespace Tessaline;
using namespace Tessaline::Testing;
using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(Tessaline::TextHelperAction)

namespace {

const QString kDivider = u"\n------------------------------\n"_s;

// What the target saw at the keystroke: the clipboard and the application in front.
struct Keystroke
{
    std::optional<QString> clipboard;
    std::optional<RunningApplication> frontmost;
};

} // namespace

class TestTextHelperService : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void actionsInOrder();
    void actionTexts_data();
    void actionTexts();
    void rawValuesAreExact_data();
    void rawValuesAreExact();
    void dividerIsNewlineThirtyHyphensNewline();

    void snippetsArePastedAndClipboardRestored_data();
    void snippetsArePastedAndClipboardRestored();
    void emptyClipboardKeepsTheInsertedText();
    void restoreCountsFromTheCallNotTheKeystroke();
    void clipboardIsClearedBeforeTheTextIsSet();
    void pastePlainTextPastesTheClipboardText();
    void pastePlainTextPastesWhiteSpace();
    void pastePlainTextAlertsOnEmptyClipboard_data();
    void pastePlainTextAlertsOnEmptyClipboard();
    void missingPermissionAlertsAndPastesNothing_data();
    void missingPermissionAlertsAndPastesNothing();
    void targetWithoutBundleIdStillGetsTheKeystroke();
    void targetNotRunningStillGetsTheKeystroke();
    void firstRunningInstanceIsActivated();
    void failedKeystrokeStillRestores();
    void overlappingRunsSaveTheFirstRunsText();
    void nothingRunsOnceTheServiceIsGone();
    void directInsertionLeavesTheClipboardAlone();
    void refusedInsertionFallsBackToTheClipboard();
    void noKeysLeaveTheTextOnTheClipboardAndSaySo();
    void typedTextClearsTheStatus();

private:
    void makeService();
    void recordKeystrokes();

    std::unique_ptr<FakeWorkspace> m_workspace;
    std::unique_ptr<FakeClipboard> m_clipboard;
    std::unique_ptr<FakeKeyInjector> m_keys;
    std::unique_ptr<FakeAccessibilityTrust> m_trust;
    std::unique_ptr<FakeAlertPresenter> m_alerts;
    std::unique_ptr<ManualScheduler> m_scheduler;
    TrackedApp m_target;
    std::unique_ptr<TextHelperService> m_service;
    QList<Keystroke> m_keystrokes;
};

void TestTextHelperService::init()
{
    m_workspace = std::make_unique<FakeWorkspace>();
    m_clipboard = std::make_unique<FakeClipboard>();
    m_keys = std::make_unique<FakeKeyInjector>();
    m_trust = std::make_unique<FakeAccessibilityTrust>();
    m_alerts = std::make_unique<FakeAlertPresenter>();
    m_scheduler = std::make_unique<ManualScheduler>();
    m_workspace->apps = {makeApp(u"Files"_s, u"org.gnome.Nautilus"_s, 10),
                         makeApp(u"Mousepad"_s, u"org.xfce.mousepad"_s, 20)};
    m_workspace->frontmost = makeApp(u"Tessaline"_s, u"org.tessaline.Tessaline"_s, 5);
    m_target = TrackedApp{u"Mousepad"_s, u"org.xfce.mousepad"_s};
    m_clipboard->content = u"previous text"_s;
    makeService();
    recordKeystrokes();
}

void TestTextHelperService::cleanup()
{
    m_service.reset();
    m_keystrokes.clear();
}

void TestTextHelperService::makeService()
{
    m_service =
        std::make_unique<TextHelperService>([this] { return m_target; }, *m_workspace, *m_clipboard,
                                            *m_keys, *m_trust, *m_alerts, *m_scheduler);
}

void TestTextHelperService::recordKeystrokes()
{
    m_keys->onPost = [this] {
        m_keystrokes.append(Keystroke{m_clipboard->content, m_workspace->frontmost});
    };
}

void TestTextHelperService::actionsInOrder()
{
    const QList<TextHelperAction> expected{TextHelperAction::Bullet, TextHelperAction::Checklist,
                                           TextHelperAction::Divider,
                                           TextHelperAction::PastePlainText};
    QCOMPARE(TextHelperActions::all(), expected);
    QSet<size_t> hashes;
    for (const TextHelperAction action : expected)
        hashes.insert(qHash(action));
    QCOMPARE(hashes.size(), 4);
}

void TestTextHelperService::actionTexts_data()
{
    QTest::addColumn<TextHelperAction>("action");
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("description");

    QTest::addRow("bullet") << TextHelperAction::Bullet << u"bullet"_s << u"Insert Bullet"_s
                            << u"Drop a clean bullet into any text field."_s;
    QTest::addRow("checklist") << TextHelperAction::Checklist << u"checklist"_s
                               << u"Insert Checklist"_s
                               << u"Start a simple checkbox line without hunting for formatting."_s;
    QTest::addRow("divider") << TextHelperAction::Divider << u"divider"_s << u"Insert Divider"_s
                             << u"Add a lightweight divider for quick notes."_s;
    QTest::addRow("pastePlainText")
        << TextHelperAction::PastePlainText << u"pastePlainText"_s << u"Paste Plain Text"_s
        << u"Paste clipboard text without rich formatting."_s;
}

void TestTextHelperService::actionTexts()
{
    QFETCH(TextHelperAction, action);
    QFETCH(QString, raw);
    QFETCH(QString, title);
    QFETCH(QString, description);
    QCOMPARE(TextHelperActions::rawValue(action), raw);
    QCOMPARE(TextHelperActions::fromRawValue(raw), std::optional<TextHelperAction>(action));
    QCOMPARE(TextHelperActions::title(action), title);
    QCOMPARE(TextHelperActions::description(action), description);
}

void TestTextHelperService::rawValuesAreExact_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addRow("capitalised") << u"Bullet"_s;
    QTest::addRow("all lower case") << u"pasteplaintext"_s;
    QTest::addRow("leading space") << u" bullet"_s;
    QTest::addRow("trailing newline") << u"divider\n"_s;
    QTest::addRow("empty") << QString();
    QTest::addRow("a title") << u"Insert Bullet"_s;
}

void TestTextHelperService::rawValuesAreExact()
{
    QFETCH(QString, raw);
    QCOMPARE(TextHelperActions::fromRawValue(raw), std::nullopt);
}

void TestTextHelperService::dividerIsNewlineThirtyHyphensNewline()
{
    const std::optional<QString> divider = TextHelperActions::snippet(TextHelperAction::Divider);
    QVERIFY(divider.has_value());
    QCOMPARE(divider->size(), 32);
    QCOMPARE(divider->count(u'\n'), 2);
    QVERIFY(divider->startsWith(u'\n') && divider->endsWith(u'\n'));
    QCOMPARE(divider->mid(1, 30), QString(30, u'-'));
    QCOMPARE(TextHelperActions::snippet(TextHelperAction::Bullet), u"\u2022 "_s);
    QCOMPARE(TextHelperActions::snippet(TextHelperAction::Checklist), u"\u2610 "_s);
    QCOMPARE(TextHelperActions::snippet(TextHelperAction::PastePlainText), std::nullopt);

    m_service->perform(TextHelperAction::Divider);
    m_scheduler->advance(120);
    QCOMPARE(m_keystrokes.size(), 1);
    QCOMPARE(m_keystrokes.first().clipboard, kDivider);
}

void TestTextHelperService::snippetsArePastedAndClipboardRestored_data()
{
    QTest::addColumn<TextHelperAction>("action");
    QTest::addColumn<QString>("inserted");
    QTest::addRow("bullet") << TextHelperAction::Bullet << u"\u2022 "_s;
    QTest::addRow("checklist") << TextHelperAction::Checklist << u"\u2610 "_s;
    QTest::addRow("divider") << TextHelperAction::Divider << kDivider;
}

void TestTextHelperService::snippetsArePastedAndClipboardRestored()
{
    QFETCH(TextHelperAction, action);
    QFETCH(QString, inserted);

    m_service->perform(action);
    // At once: the target is in front and the text is on the clipboard; no keystroke yet.
    QCOMPARE(m_workspace->activated.size(), 1);
    QCOMPARE(m_workspace->activated.first().bundleIdentifier, u"org.xfce.mousepad"_s);
    QCOMPARE(m_clipboard->content, inserted);
    QCOMPARE(m_keys->posts, 0);

    m_scheduler->advance(119);
    QCOMPARE(m_keys->posts, 0);
    m_scheduler->advance(1);
    QCOMPARE(m_keystrokes.size(), 1);
    QCOMPARE(m_keystrokes.first().clipboard, inserted);
    QCOMPARE(m_keystrokes.first().frontmost->bundleIdentifier, u"org.xfce.mousepad"_s);

    m_scheduler->advance(679); // 799 ms after the call
    QCOMPARE(m_clipboard->content, inserted);
    m_scheduler->advance(1);
    QCOMPARE(m_clipboard->content, u"previous text"_s);
    QCOMPARE(m_keys->posts, 1);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    QVERIFY(m_alerts->shown.isEmpty());
}

void TestTextHelperService::emptyClipboardKeepsTheInsertedText()
{
    m_clipboard->content.reset();
    m_service->perform(TextHelperAction::Checklist);
    m_scheduler->advance(2000);
    QCOMPARE(m_keys->posts, 1);
    QCOMPARE(m_clipboard->content, u"\u2610 "_s);
    QCOMPARE(m_clipboard->log, QStringList({u"clear"_s, u"set:\u2610 "_s}));
}

void TestTextHelperService::restoreCountsFromTheCallNotTheKeystroke()
{
    m_service->perform(TextHelperAction::Bullet);
    m_scheduler->advance(800);
    QCOMPARE(m_scheduler->elapsedMs(), 800);
    QCOMPARE(m_clipboard->content, u"previous text"_s);
    // The restore came 680 ms after the keystroke, not 800.
    QCOMPARE(m_keys->posts, 1);
}

void TestTextHelperService::clipboardIsClearedBeforeTheTextIsSet()
{
    m_service->perform(TextHelperAction::Bullet);
    m_scheduler->advance(1000);
    QCOMPARE(m_clipboard->log,
             QStringList({u"clear"_s, u"set:\u2022 "_s, u"clear"_s, u"set:previous text"_s}));
}

void TestTextHelperService::pastePlainTextPastesTheClipboardText()
{
    m_clipboard->content = u"Formatted words"_s;
    m_service->perform(TextHelperAction::PastePlainText);
    m_scheduler->advance(1000);
    QCOMPARE(m_keystrokes.size(), 1);
    QCOMPARE(m_keystrokes.first().clipboard, u"Formatted words"_s);
    QCOMPARE(m_clipboard->content, u"Formatted words"_s);
    // Replaced by a plain copy of itself, then restored as plain text.
    QCOMPARE(m_clipboard->log, QStringList({u"clear"_s, u"set:Formatted words"_s, u"clear"_s,
                                            u"set:Formatted words"_s}));
    QVERIFY(m_alerts->shown.isEmpty());
}

void TestTextHelperService::pastePlainTextPastesWhiteSpace()
{
    m_clipboard->content = u"  \n\t"_s;
    m_service->perform(TextHelperAction::PastePlainText);
    m_scheduler->advance(120);
    QCOMPARE(m_keystrokes.size(), 1);
    QCOMPARE(m_keystrokes.first().clipboard, u"  \n\t"_s);
    QVERIFY(m_alerts->shown.isEmpty());
}

void TestTextHelperService::pastePlainTextAlertsOnEmptyClipboard_data()
{
    QTest::addColumn<bool>("hasText");
    QTest::addRow("empty text") << true;
    QTest::addRow("no text at all") << false;
}

void TestTextHelperService::pastePlainTextAlertsOnEmptyClipboard()
{
    QFETCH(bool, hasText);
    m_clipboard->content = hasText ? std::optional<QString>(QString()) : std::nullopt;
    m_service->perform(TextHelperAction::PastePlainText);
    QCOMPARE(m_alerts->shown.size(), 1);
    QCOMPARE(m_alerts->shown.first().message, u"Clipboard is empty"_s);
    QCOMPARE(m_alerts->shown.first().informativeText,
             u"Copy some text first, then use Paste Plain Text."_s);
    QCOMPARE(m_alerts->shown.first().buttons, QStringList{u"OK"_s});
    QCOMPARE(m_scheduler->pendingCount(), 0);
    m_scheduler->advance(1000);
    QCOMPARE(m_keys->posts, 0);
    QVERIFY(m_workspace->activated.isEmpty());
    QVERIFY(m_clipboard->log.isEmpty());
}

void TestTextHelperService::missingPermissionAlertsAndPastesNothing_data()
{
    QTest::addColumn<int>("response");
    QTest::addColumn<int>("prompts");
    QTest::addRow("open settings") << AlertPresenter::kFirstButton << 1;
    QTest::addRow("cancel") << AlertPresenter::kFirstButton + 1 << 0;
}

void TestTextHelperService::missingPermissionAlertsAndPastesNothing()
{
    QFETCH(int, response);
    QFETCH(int, prompts);
    m_trust->trusted = false;
    m_alerts->response = response;

    for (const TextHelperAction action : TextHelperActions::all()) {
        m_alerts->shown.clear();
        m_trust->requests = 0;
        m_service->perform(action);
        QCOMPARE(m_alerts->shown.size(), 1);
        QCOMPARE(m_alerts->shown.first().message, u"Accessibility permission needed"_s);
        QCOMPARE(m_alerts->shown.first().informativeText,
                 u"Tessaline needs Accessibility permission to paste helper text into the app "
                 u"you were using."_s);
        QCOMPARE(m_alerts->shown.first().buttons,
                 QStringList({u"Turn On Accessibility"_s, u"Cancel"_s}));
        QCOMPARE(m_trust->requests, prompts);
    }
    m_scheduler->advance(1000);
    QCOMPARE(m_keys->posts, 0);
    QVERIFY(m_workspace->activated.isEmpty());
    QVERIFY(m_clipboard->log.isEmpty());
    QCOMPARE(m_clipboard->content, u"previous text"_s);

    m_trust->trusted = true;
    m_alerts->shown.clear();
    QVERIFY(m_service->ensureAccessibilityPermission());
    QVERIFY(m_alerts->shown.isEmpty());
}

void TestTextHelperService::targetWithoutBundleIdStillGetsTheKeystroke()
{
    m_target = TrackedApp{u"xterm"_s, std::nullopt};
    m_workspace->frontmost = RunningApplication{u"xterm"_s, std::nullopt, 30, true};
    m_service->perform(TextHelperAction::Bullet);
    QVERIFY(m_workspace->activated.isEmpty());
    m_scheduler->advance(120);
    QCOMPARE(m_keystrokes.size(), 1);
    QCOMPARE(m_keystrokes.first().clipboard, u"\u2022 "_s);
    QCOMPARE(m_keystrokes.first().frontmost->localizedName, u"xterm"_s);
}

void TestTextHelperService::targetNotRunningStillGetsTheKeystroke()
{
    m_target = TrackedApp{u"Kate"_s, u"org.kde.kate"_s};
    m_service->perform(TextHelperAction::Checklist);
    QVERIFY(m_workspace->activated.isEmpty());
    m_scheduler->advance(800);
    QCOMPARE(m_keys->posts, 1);
    QCOMPARE(m_clipboard->content, u"previous text"_s);
}

void TestTextHelperService::firstRunningInstanceIsActivated()
{
    m_workspace->apps.append(makeApp(u"Mousepad"_s, u"org.xfce.mousepad"_s, 21));
    m_service->perform(TextHelperAction::Bullet);
    QCOMPARE(m_workspace->activated.size(), 1);
    QCOMPARE(m_workspace->activated.first().processId, 20);
}

void TestTextHelperService::failedKeystrokeStillRestores()
{
    m_keys->succeeds = false;
    m_service->perform(TextHelperAction::Divider);
    m_scheduler->advance(800);
    QCOMPARE(m_keys->posts, 1);
    QCOMPARE(m_clipboard->content, u"previous text"_s);
    QVERIFY(m_alerts->shown.isEmpty());
}

void TestTextHelperService::overlappingRunsSaveTheFirstRunsText()
{
    m_service->perform(TextHelperAction::Bullet);
    m_scheduler->advance(300);
    m_service->perform(TextHelperAction::Checklist);
    QCOMPARE(m_clipboard->content, u"\u2610 "_s);
    m_scheduler->advance(120); // 420: the second keystroke
    QCOMPARE(m_keystrokes.size(), 2);
    QCOMPARE(m_keystrokes.at(1).clipboard, u"\u2610 "_s);
    m_scheduler->advance(380); // 800: the first restore
    QCOMPARE(m_clipboard->content, u"previous text"_s);
    m_scheduler->advance(300); // 1100: the second restore puts back what it saw, the bullet
    QCOMPARE(m_clipboard->content, u"\u2022 "_s);
}

void TestTextHelperService::nothingRunsOnceTheServiceIsGone()
{
    m_service->perform(TextHelperAction::Bullet);
    m_service.reset();
    m_scheduler->advance(1000);
    QCOMPARE(m_keys->posts, 0);
    QCOMPARE(m_clipboard->content, u"\u2022 "_s);
}

void TestTextHelperService::directInsertionLeavesTheClipboardAlone()
{
    FakeTextInserter inserter;
    m_service->setTextInserter(&inserter);
    m_service->perform(TextHelperAction::Bullet);
    QCOMPARE(m_workspace->activated.size(), 1);
    m_scheduler->advance(119);
    QVERIFY(inserter.asked.isEmpty());
    m_scheduler->advance(1);
    QCOMPARE(inserter.asked, QStringList{u"\u2022 "_s});
    m_scheduler->advance(2000);
    QCOMPARE(m_keys->posts, 0);
    QVERIFY(m_clipboard->log.isEmpty());
    QCOMPARE(m_clipboard->content, u"previous text"_s);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void TestTextHelperService::refusedInsertionFallsBackToTheClipboard()
{
    FakeTextInserter inserter;
    inserter.accepts = false;
    m_service->setTextInserter(&inserter);
    m_service->perform(TextHelperAction::Bullet);
    QVERIFY(m_clipboard->log.isEmpty());
    m_scheduler->advance(120);
    QCOMPARE(inserter.asked.size(), 1);
    // The text goes on the clipboard just before the chord, which sees it.
    QCOMPARE(m_keystrokes.size(), 1);
    QCOMPARE(m_keystrokes.first().clipboard, u"\u2022 "_s);
    // The restore still comes 0.8 s after the call.
    m_scheduler->advance(679);
    QCOMPARE(m_clipboard->content, u"\u2022 "_s);
    m_scheduler->advance(1);
    QCOMPARE(m_clipboard->content, u"previous text"_s);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void TestTextHelperService::noKeysLeaveTheTextOnTheClipboardAndSaySo()
{
    FakeTextInserter inserter;
    inserter.accepts = false;
    m_keys->succeeds = false;
    m_service->setTextInserter(&inserter);
    QSignalSpy changed(m_service.get(), &TextHelperService::statusChanged);
    m_service->perform(TextHelperAction::Divider);
    QVERIFY(!m_service->statusText());
    m_scheduler->advance(120);
    QCOMPARE(m_keys->posts, 1);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_service->statusText(),
             std::optional<QString>(u"Tessaline could not type into this app: the text is on the "
                                    u"clipboard, press Ctrl+V to paste it."_s));
    // Nothing takes the text back: it is still there long after the restore would have come.
    QCOMPARE(m_scheduler->pendingCount(), 0);
    m_scheduler->advance(5000);
    QCOMPARE(m_clipboard->content, kDivider);

    m_service->clearStatus();
    QVERIFY(!m_service->statusText());
    QCOMPARE(changed.size(), 2);
}

void TestTextHelperService::typedTextClearsTheStatus()
{
    FakeTextInserter inserter;
    inserter.accepts = false;
    m_keys->succeeds = false;
    m_service->setTextInserter(&inserter);
    m_service->perform(TextHelperAction::Bullet);
    m_scheduler->advance(120);
    QVERIFY(m_service->statusText());

    // Keys go through again: the line goes, and the clipboard comes back at 0.8 s.
    m_keys->succeeds = true;
    m_service->perform(TextHelperAction::Checklist);
    m_scheduler->advance(120);
    QVERIFY(!m_service->statusText());
    m_scheduler->advance(680);
    QCOMPARE(m_clipboard->content, u"\u2022 "_s);

    // And a field that takes the text directly clears it as well.
    m_keys->succeeds = false;
    m_service->perform(TextHelperAction::Bullet);
    m_scheduler->advance(120);
    QVERIFY(m_service->statusText());
    inserter.accepts = true;
    m_service->perform(TextHelperAction::Bullet);
    m_scheduler->advance(120);
    QVERIFY(!m_service->statusText());
}

QTEST_GUILESS_MAIN(TestTextHelperService)
#include "tst_TextHelperService.moc"
