// SPDX-License-Identifier: MIT
#include "commands/ShortcutRunner.h"

#include "FakeKeyInjector.h"
#include "FakeMenuCommandRunner.h"
#include "FakeWorkspace.h"
#include "ManualScheduler.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Tessaline;
using namespace Tessaline::Testing;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 kEditorPid = 42;
const TrackedApp kEditor{u"Mousepad"_s, u"org.xfce.mousepad"_s};

ShortcutItem menuRow(const QString& name, const QString& chord, const QString& menu)
{
    ShortcutItem item;
    item.name = name;
    item.chord = chord;
    item.menu = menu;
    item.tags = QStringList{u"scanned"_s, u"menu"_s};
    item.source = u"scanned-menu"_s;
    return item;
}

ShortcutItem curatedRow(const QString& name, const QString& chord)
{
    ShortcutItem item;
    item.name = name;
    item.chord = chord;
    return item;
}

// The outcome a run reported, once it reported.
struct Outcome
{
    int calls = 0;
    std::optional<QString> error;

    ShortcutRunner::Completion recorder()
    {
        return [this](const Expected<void>& outcome) {
            ++calls;
            error = outcome ? std::nullopt : std::optional<QString>(outcome.error());
        };
    }
};

} // namespace

class TestShortcutRunner : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void scannedRowsWithAMenuRunThroughIt();
    void menuItemRunsAfterTheAppIsInFront();
    void menuItemIsLookedUpWhenTheRunHappens();
    void disabledMenuItemRunsNothingAndSaysSo();
    void vanishedMenuItemSaysSo();
    void unreadableMenusSaySo();
    void refusedActionSaysSo();
    void chordIsTypedAfterTheAppIsInFront();
    void chordOffTheLayoutTypesNothingAndSaysSo();
    void sessionWithoutKeysSaysSo();
    void chordGoesToAnAppThatCouldNotBeActivatedOnlyWhenInFront();
    void appNeitherActivatedNorInFrontGetsNoKeys();
    void appNotRunningTouchesNothing();
    void statusBelongsToItsAppAndClearsOnSuccess();
    void clearStatusEmits();

private:
    std::unique_ptr<FakeWorkspace> m_workspace;
    std::unique_ptr<FakeMenuCommandRunner> m_menus;
    std::unique_ptr<FakeKeyInjector> m_keys;
    std::unique_ptr<ManualScheduler> m_scheduler;
    std::unique_ptr<ShortcutRunner> m_runner;
};

void TestShortcutRunner::init()
{
    m_workspace = std::make_unique<FakeWorkspace>();
    m_workspace->apps = {makeApp(u"Terminal"_s, u"debian-xterm"_s, 7),
                         makeApp(u"Mousepad"_s, u"org.xfce.mousepad"_s, kEditorPid)};
    m_menus = std::make_unique<FakeMenuCommandRunner>();
    m_keys = std::make_unique<FakeKeyInjector>();
    m_scheduler = std::make_unique<ManualScheduler>();
    m_runner = std::make_unique<ShortcutRunner>(*m_workspace, *m_menus, *m_keys, *m_scheduler);
}

void TestShortcutRunner::scannedRowsWithAMenuRunThroughIt()
{
    QVERIFY(ShortcutRunner::runsThroughMenu(menuRow(u"Save"_s, u"⌃ S"_s, u"File"_s)));
    QVERIFY(ShortcutRunner::runsThroughMenu(
        menuRow(u"Help"_s, u"F1"_s, u"Discovered from the app menu"_s)));
    ShortcutItem noMenu = menuRow(u"Save"_s, u"⌃ S"_s, u"File"_s);
    noMenu.menu.reset();
    QVERIFY(!ShortcutRunner::runsThroughMenu(noMenu));
    ShortcutItem curated = curatedRow(u"Save"_s, u"⌃ S"_s);
    curated.menu = u"File"_s;
    QVERIFY(!ShortcutRunner::runsThroughMenu(curated));
}

void TestShortcutRunner::menuItemRunsAfterTheAppIsInFront()
{
    auto newWindow = m_menus->bar(kEditorPid).add(u"File"_s)->add(u"New Window"_s);
    std::optional<RunningApplication> frontAtAction;
    newWindow->onActivate = [&] { frontAtAction = m_workspace->frontmost; };

    Outcome outcome;
    m_runner->run(menuRow(u"New Window"_s, u"⌃ ⇧ N"_s, u"File"_s), kEditor, outcome.recorder());
    QCOMPARE(m_workspace->activated.size(), 1);
    QCOMPARE(m_workspace->activated.first().processId, kEditorPid);
    QCOMPARE(newWindow->activations, 0);

    m_scheduler->advance(0);
    QCOMPARE(newWindow->activations, 1);
    QVERIFY(frontAtAction);
    QCOMPARE(frontAtAction->processId, kEditorPid);
    QCOMPARE(outcome.calls, 1);
    QCOMPARE(outcome.error, std::nullopt);
    QVERIFY(m_keys->typed.isEmpty());
    QCOMPARE(m_runner->statusText(kEditor), std::nullopt);
}

void TestShortcutRunner::menuItemIsLookedUpWhenTheRunHappens()
{
    FakeMenuEntry& bar = m_menus->bar(kEditorPid);
    auto old = bar.add(u"File"_s)->add(u"Save"_s);
    m_runner->run(menuRow(u"Save"_s, u"⌃ S"_s, u"File"_s), kEditor);
    QCOMPARE(m_menus->reads, 0);

    // The application rebuilt its menus meanwhile.
    bar.entries.clear();
    auto fresh = bar.add(u"File"_s)->add(u"Save"_s);
    m_scheduler->advance(0);
    QCOMPARE(m_menus->reads, 1);
    QCOMPARE(old->activations, 0);
    QCOMPARE(fresh->activations, 1);
}

void TestShortcutRunner::disabledMenuItemRunsNothingAndSaysSo()
{
    auto undo = m_menus->bar(kEditorPid).add(u"Edit"_s)->add(u"Undo"_s, false);
    QSignalSpy statusChanged(m_runner.get(), &ShortcutRunner::statusChanged);
    Outcome outcome;
    m_runner->run(menuRow(u"Undo"_s, u"⌃ Z"_s, u"Edit"_s), kEditor, outcome.recorder());
    m_scheduler->advance(0);
    QCOMPARE(undo->activations, 0);
    QVERIFY(m_keys->typed.isEmpty());
    const QString expected = u"Could not run “Undo”: the menu item is disabled."_s;
    QCOMPARE(outcome.error, expected);
    QCOMPARE(m_runner->statusText(kEditor), expected);
    QCOMPARE(statusChanged.size(), 1);
}

void TestShortcutRunner::vanishedMenuItemSaysSo()
{
    m_menus->bar(kEditorPid).add(u"File"_s)->add(u"Save"_s);
    Outcome outcome;
    m_runner->run(menuRow(u"Print..."_s, u"⌃ P"_s, u"File"_s), kEditor, outcome.recorder());
    m_scheduler->advance(0);
    QCOMPARE(outcome.error,
             u"Could not run “Print...”: the menu item is no longer in Mousepad's menus."_s);
    QVERIFY(m_keys->typed.isEmpty());
}

void TestShortcutRunner::unreadableMenusSaySo()
{
    // No menu bar is known for the editor's process.
    Outcome outcome;
    m_runner->run(menuRow(u"Save"_s, u"⌃ S"_s, u"File"_s), kEditor, outcome.recorder());
    m_scheduler->advance(0);
    QCOMPARE(outcome.error, u"Could not run “Save”: the app is not on the accessibility bus."_s);
}

void TestShortcutRunner::refusedActionSaysSo()
{
    auto save = m_menus->bar(kEditorPid).add(u"File"_s)->add(u"Save"_s);
    save->refuses = true;
    Outcome outcome;
    m_runner->run(menuRow(u"Save"_s, u"⌃ S"_s, u"File"_s), kEditor, outcome.recorder());
    m_scheduler->advance(0);
    QCOMPARE(save->activations, 1);
    QCOMPARE(outcome.error, u"Could not run “Save”: the app refused the menu action."_s);
}

void TestShortcutRunner::chordIsTypedAfterTheAppIsInFront()
{
    std::optional<RunningApplication> frontAtKeys;
    m_keys->onPost = [&] { frontAtKeys = m_workspace->frontmost; };
    Outcome outcome;
    m_runner->run(curatedRow(u"Select All"_s, u"⌃ A"_s), kEditor, outcome.recorder());
    QCOMPARE(m_workspace->activated.size(), 1);
    m_scheduler->advance(ShortcutRunner::kKeystrokeDelayMs - 1);
    QVERIFY(m_keys->typed.isEmpty());
    m_scheduler->advance(1);
    QCOMPARE(m_keys->typed.size(), 1);
    QCOMPARE(m_keys->typed.first(), (QList<KeyStroke>{{KeyStroke::Control, u"a"_s}}));
    QVERIFY(frontAtKeys);
    QCOMPARE(frontAtKeys->processId, kEditorPid);
    QCOMPARE(outcome.calls, 1);
    QCOMPARE(outcome.error, std::nullopt);
    QCOMPARE(m_menus->reads, 0);
}

void TestShortcutRunner::chordOffTheLayoutTypesNothingAndSaysSo()
{
    m_keys->missingKeys = {u"ä"_s};
    Outcome outcome;
    m_runner->run(curatedRow(u"Umlaut"_s, u"⌃ Ä"_s), kEditor, outcome.recorder());
    m_scheduler->advance(ShortcutRunner::kKeystrokeDelayMs);
    QVERIFY(m_keys->typed.isEmpty());
    const QString expected =
        u"Could not run “Umlaut”: ⌃ Ä cannot be typed on the current keyboard layout."_s;
    QCOMPARE(outcome.error, expected);
    QCOMPARE(m_runner->statusText(kEditor), expected);
}

void TestShortcutRunner::sessionWithoutKeysSaysSo()
{
    m_keys->succeeds = false;
    Outcome outcome;
    m_runner->run(curatedRow(u"Select All"_s, u"⌃ A"_s), kEditor, outcome.recorder());
    m_scheduler->advance(ShortcutRunner::kKeystrokeDelayMs);
    QCOMPARE(outcome.error,
             u"Could not run “Select All”: this session does not accept typed keys."_s);
}

void TestShortcutRunner::chordGoesToAnAppThatCouldNotBeActivatedOnlyWhenInFront()
{
    // As on Wayland: no activation, but the editor has the focus back once the HUD is gone.
    m_workspace->activationSucceeds = false;
    m_workspace->frontmost = makeApp(u"Tessaline"_s, u"org.tessaline.Tessaline"_s, 5);
    Outcome outcome;
    m_runner->run(curatedRow(u"Select All"_s, u"⌃ A"_s), kEditor, outcome.recorder());
    QCOMPARE(m_workspace->activated.size(), 1);
    QCOMPARE(outcome.calls, 0);
    m_workspace->frontmost = m_workspace->apps.at(1);
    m_scheduler->advance(ShortcutRunner::kKeystrokeDelayMs);
    QCOMPARE(m_keys->typed, (QList<QList<KeyStroke>>{{{KeyStroke::Control, u"a"_s}}}));
    QCOMPARE(outcome.calls, 1);
    QCOMPARE(outcome.error, std::nullopt);
}

void TestShortcutRunner::appNeitherActivatedNorInFrontGetsNoKeys()
{
    m_workspace->activationSucceeds = false;
    m_workspace->frontmost = m_workspace->apps.at(0);
    Outcome outcome;
    m_runner->run(curatedRow(u"Select All"_s, u"⌃ A"_s), kEditor, outcome.recorder());
    m_scheduler->advance(ShortcutRunner::kKeystrokeDelayMs);
    QVERIFY(m_keys->typed.isEmpty());
    QCOMPARE(m_keys->posts, 0);
    const QString expected =
        u"Could not run “Select All”: Mousepad could not be brought to the front."_s;
    QCOMPARE(outcome.error, expected);
    QCOMPARE(m_runner->statusText(kEditor), expected);

    // Nothing in front at all is no better.
    m_workspace->frontmost.reset();
    Outcome second;
    m_runner->run(curatedRow(u"Select All"_s, u"⌃ A"_s), kEditor, second.recorder());
    m_scheduler->advance(ShortcutRunner::kKeystrokeDelayMs);
    QVERIFY(m_keys->typed.isEmpty());
    QCOMPARE(second.error, expected);
}

void TestShortcutRunner::appNotRunningTouchesNothing()
{
    const TrackedApp gone{u"Gedit"_s, u"org.gnome.gedit"_s};
    Outcome outcome;
    m_runner->run(curatedRow(u"Select All"_s, u"⌃ A"_s), gone, outcome.recorder());
    QCOMPARE(m_runner->statusText(gone), u"Could not run “Select All”: Gedit is not running."_s);
    m_runner->run(menuRow(u"Save"_s, u"⌃ S"_s, u"File"_s), TrackedApp::placeholder(),
                  outcome.recorder());
    m_scheduler->advance(1000);
    QVERIFY(m_workspace->activated.isEmpty());
    QVERIFY(m_keys->typed.isEmpty());
    QCOMPARE(m_menus->reads, 0);
    QCOMPARE(outcome.calls, 2);
    // Only the latest failure is kept.
    QCOMPARE(m_runner->statusText(gone), std::nullopt);
    QCOMPARE(m_runner->statusText(TrackedApp::placeholder()),
             u"Could not run “Save”: there is no app to run it in."_s);
}

void TestShortcutRunner::statusBelongsToItsAppAndClearsOnSuccess()
{
    m_menus->bar(kEditorPid).add(u"Edit"_s)->add(u"Undo"_s, false);
    m_runner->run(menuRow(u"Undo"_s, u"⌃ Z"_s, u"Edit"_s), kEditor);
    m_scheduler->advance(0);
    QVERIFY(m_runner->statusText(kEditor));
    QCOMPARE(m_runner->statusText(TrackedApp{u"Terminal"_s, u"debian-xterm"_s}), std::nullopt);

    m_runner->run(curatedRow(u"Select All"_s, u"⌃ A"_s), kEditor);
    m_scheduler->advance(ShortcutRunner::kKeystrokeDelayMs);
    QCOMPARE(m_runner->statusText(kEditor), std::nullopt);
}

void TestShortcutRunner::clearStatusEmits()
{
    m_runner->run(curatedRow(u"Nothing"_s, QString()), kEditor);
    QCOMPARE(m_runner->statusText(kEditor),
             u"Could not run “Nothing”: its shortcut has no key to type."_s);
    QVERIFY(m_workspace->activated.isEmpty());
    QSignalSpy statusChanged(m_runner.get(), &ShortcutRunner::statusChanged);
    m_runner->clearStatus();
    QCOMPARE(statusChanged.size(), 1);
    QCOMPARE(m_runner->statusText(kEditor), std::nullopt);
}

QTEST_GUILESS_MAIN(TestShortcutRunner)
#include "tst_ShortcutRunner.moc"
