// SPDX-License-Identifier: MIT
// Keyboard control of the cheat-sheet list, driven by real key presses delivered to real windows.
#include "ListNavigator.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using Tessaline::ListNavigator;

namespace {

/// A window that records every key press that reaches it.
class KeyWindow : public QWindow
{
public:
    QList<int> received;
    QString typed;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        received.append(event->key());
        typed += event->text();
        event->accept();
    }
};

// xkb keycodes of an evdev keyboard, as xcb and Wayland report them for a key's place.
constexpr quint32 kSlashPlace = 61;
constexpr quint32 kSevenPlace = 16;
constexpr quint32 kKeypadSlashPlace = 106;

/// Presses a key at `scanCode` the way the windowing system delivers it to `window`.
void pressAt(QWindow& window, quint32 scanCode, Qt::Key key, Qt::KeyboardModifiers modifiers,
             const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, text);
    QCoreApplication::sendEvent(&window, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, scanCode, 0, 0, text);
    QCoreApplication::sendEvent(&window, &release);
}

} // namespace

class TestListNavigator : public QObject
{
    Q_OBJECT

    std::unique_ptr<KeyWindow> m_panel;
    std::unique_ptr<KeyWindow> m_other;
    std::unique_ptr<ListNavigator> m_navigator;
    QList<int> m_activated;

    bool activate(QWindow& window)
    {
        window.show();
        window.requestActivate();
        return QTest::qWaitForWindowActive(&window) && QGuiApplication::focusWindow() == &window;
    }

private Q_SLOTS:
    void init()
    {
        m_panel = std::make_unique<KeyWindow>();
        m_panel->resize(200, 200);
        m_other = std::make_unique<KeyWindow>();
        m_other->resize(200, 200);
        m_navigator = std::make_unique<ListNavigator>();
        m_navigator->setPanel(m_panel.get());
        m_activated.clear();
        m_navigator->setOnActivate([this](int index) { m_activated.append(index); });
        m_navigator->start();
        QVERIFY(activate(*m_panel));
    }

    void cleanup()
    {
        m_navigator.reset();
        m_other.reset();
        m_panel.reset();
    }

    void startsWithNothingSelected()
    {
        ListNavigator fresh;
        QCOMPARE(fresh.selection(), -1);
        QCOMPARE(fresh.searchFocusRequest(), 0);
        QCOMPARE(fresh.itemCount(), 0);

        // Until it is started it leaves every key to the panel.
        m_navigator->stop();
        fresh.setPanel(m_panel.get());
        fresh.syncCount(3);
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QCOMPARE(m_panel->received, QList<int>{Qt::Key_Down});
        QCOMPARE(fresh.selection(), -1);
    }

    void zeroRowsPassEveryKeyThrough()
    {
        m_navigator->syncCount(0);
        QSignalSpy focus(m_navigator.get(), &ListNavigator::searchFocusRequestChanged);
        for (Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Slash})
            QTest::keyClick(m_panel.get(), key);
        QCOMPARE(m_panel->received, (QList<int>{Qt::Key_Down, Qt::Key_Up, Qt::Key_Return,
                                                Qt::Key_Enter, Qt::Key_Slash}));
        QCOMPARE(m_navigator->selection(), -1);
        QCOMPARE(m_navigator->searchFocusRequest(), 0);
        QCOMPARE(focus.count(), 0);
        QVERIFY(m_activated.isEmpty());
    }

    void anotherFocusedWindowGetsEveryKey()
    {
        m_navigator->syncCount(5);
        m_navigator->setSelection(1);
        QVERIFY(activate(*m_other));
        for (Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Slash})
            QTest::keyClick(m_other.get(), key);
        QCOMPARE(m_other->received,
                 (QList<int>{Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Slash}));
        QVERIFY(m_panel->received.isEmpty());
        QCOMPARE(m_navigator->selection(), 1);
        QCOMPARE(m_navigator->searchFocusRequest(), 0);
        QVERIFY(m_activated.isEmpty());
    }

    void downFromNoneSelectsTheFirstRowAndStopsAtTheLast()
    {
        m_navigator->syncCount(3);
        QSignalSpy changed(m_navigator.get(), &ListNavigator::selectionChanged);
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QCOMPARE(m_navigator->selection(), 0);
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QCOMPARE(m_navigator->selection(), 2);
        // No wrapping past the end.
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QCOMPARE(m_navigator->selection(), 2);
        QCOMPARE(changed.count(), 3);
        // The arrows are consumed: the panel's own controls never see them.
        QVERIFY(m_panel->received.isEmpty());
    }

    void upFromNoneSelectsTheFirstRowAndStopsThere()
    {
        m_navigator->syncCount(4);
        QTest::keyClick(m_panel.get(), Qt::Key_Up);
        QCOMPARE(m_navigator->selection(), 0);
        QTest::keyClick(m_panel.get(), Qt::Key_Up);
        QCOMPARE(m_navigator->selection(), 0);
        m_navigator->setSelection(3);
        QTest::keyClick(m_panel.get(), Qt::Key_Up);
        QCOMPARE(m_navigator->selection(), 2);
        QVERIFY(m_panel->received.isEmpty());
    }

    void returnWithoutSelectionPassesTheEventOn()
    {
        m_navigator->syncCount(4);
        QSignalSpy activated(m_navigator.get(), &ListNavigator::activated);
        QTest::keyClick(m_panel.get(), Qt::Key_Return);
        QCOMPARE(m_panel->received, QList<int>{Qt::Key_Return});
        QVERIFY(m_activated.isEmpty());
        QCOMPARE(activated.count(), 0);
    }

    void returnOnASelectedRowActivatesItAndIsConsumed()
    {
        m_navigator->syncCount(4);
        m_navigator->setSelection(2);
        QSignalSpy activated(m_navigator.get(), &ListNavigator::activated);
        QTest::keyClick(m_panel.get(), Qt::Key_Return);
        QCOMPARE(m_activated, QList<int>{2});
        QCOMPARE(activated.count(), 1);
        QCOMPARE(activated.at(0).at(0).toInt(), 2);
        // The keypad's Enter does the same.
        QTest::keyClick(m_panel.get(), Qt::Key_Enter);
        QCOMPARE(m_activated, (QList<int>{2, 2}));
        QVERIFY(m_panel->received.isEmpty());
    }

    void controlReturnRunsTheSelectedRowInsteadOfCopying()
    {
        QList<int> runs;
        m_navigator->setOnRun([&runs](int index) { runs.append(index); });
        m_navigator->syncCount(4);
        m_navigator->setSelection(1);
        QTest::keyClick(m_panel.get(), Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(runs, QList<int>{1});
        QVERIFY(m_activated.isEmpty());
        QTest::keyClick(m_panel.get(), Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
        QCOMPARE(runs, (QList<int>{1, 1}));
        // Only the Control key itself reached the panel.
        QCOMPARE(m_panel->received.count(Qt::Key_Control), m_panel->received.size());
        // Plain Return still copies.
        QTest::keyClick(m_panel.get(), Qt::Key_Return);
        QCOMPARE(m_activated, QList<int>{1});
        QCOMPARE(runs.size(), 2);
    }

    void controlReturnWithoutSelectionOrRunnerPassesTheEventOn()
    {
        m_navigator->syncCount(4);
        QTest::keyClick(m_panel.get(), Qt::Key_Return, Qt::ControlModifier);
        m_navigator->setSelection(0);
        QTest::keyClick(m_panel.get(), Qt::Key_Return, Qt::ControlModifier);
        m_panel->received.removeAll(Qt::Key_Control);
        QCOMPARE(m_panel->received, (QList<int>{Qt::Key_Return, Qt::Key_Return}));
        QVERIFY(m_activated.isEmpty());
    }

    void slashAsksForTheSearchFieldAndIsConsumed()
    {
        m_navigator->syncCount(2);
        QSignalSpy focus(m_navigator.get(), &ListNavigator::searchFocusRequestChanged);
        QTest::keyClick(m_panel.get(), Qt::Key_Slash);
        QTest::keyClick(m_panel.get(), Qt::Key_Slash);
        QCOMPARE(m_navigator->searchFocusRequest(), 2);
        QCOMPARE(focus.count(), 2);
        QVERIFY(m_panel->received.isEmpty());
        QCOMPARE(m_navigator->selection(), -1);
    }

    void keypadSlashPassesThrough()
    {
        m_navigator->syncCount(2);
        QTest::keyClick(m_panel.get(), Qt::Key_Slash, Qt::KeypadModifier);
        QCOMPARE(m_navigator->searchFocusRequest(), 0);
        QCOMPARE(m_panel->received, QList<int>{Qt::Key_Slash});
    }

    // The navigator's key is the slash key's place, whatever the modifiers make of it.
    void slashKeyIsReadByItsPlace_data()
    {
        QTest::addColumn<quint32>("scanCode");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("consumed");
        QTest::addRow("slash") << kSlashPlace << int(Qt::Key_Slash) << int(Qt::NoModifier)
                               << u"/"_qs << true;
        QTest::addRow("shift+slash types no question mark")
            << kSlashPlace << int(Qt::Key_Question) << int(Qt::ShiftModifier) << u"?"_qs << true;
        QTest::addRow("another layout's character at the slash place")
            << kSlashPlace << int(Qt::Key_Minus) << int(Qt::NoModifier) << u"-"_qs << true;
        QTest::addRow("slash typed with shift+7 is text")
            << kSevenPlace << int(Qt::Key_Slash) << int(Qt::ShiftModifier) << u"/"_qs << false;
        QTest::addRow("keypad slash is text") << kKeypadSlashPlace << int(Qt::Key_Slash)
                                              << int(Qt::KeypadModifier) << u"/"_qs << false;
        QTest::addRow("no scan code: the slash key name")
            << quint32(0) << int(Qt::Key_Slash) << int(Qt::NoModifier) << u"/"_qs << true;
        QTest::addRow("no scan code: a question mark is text")
            << quint32(0) << int(Qt::Key_Question) << int(Qt::ShiftModifier) << u"?"_qs << false;
    }

    void slashKeyIsReadByItsPlace()
    {
        QFETCH(quint32, scanCode);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, text);
        QFETCH(bool, consumed);
        m_navigator->syncCount(2);
        pressAt(*m_panel, scanCode, Qt::Key(key), Qt::KeyboardModifiers(modifiers), text);
        QCOMPARE(m_navigator->searchFocusRequest(), consumed ? 1 : 0);
        QCOMPARE(m_panel->typed, consumed ? QString() : text);
    }

    void otherKeysPassThrough()
    {
        m_navigator->syncCount(2);
        QTest::keyClick(m_panel.get(), Qt::Key_A);
        QTest::keyClick(m_panel.get(), Qt::Key_Escape);
        QCOMPARE(m_panel->received, (QList<int>{Qt::Key_A, Qt::Key_Escape}));
    }

    void ctrlKAsksForKeyLookupEvenWithoutRows()
    {
        m_navigator->syncCount(0);
        QSignalSpy asked(m_navigator.get(), &ListNavigator::lookupRequested);
        QTest::keyClick(m_panel.get(), Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(asked.count(), 1);
        // (QTest presses the modifier keys themselves too; those pass.)
        QCOMPARE(m_panel->received.count(Qt::Key_K), 0);
        // K alone and Ctrl+Shift+K are not it.
        QTest::keyClick(m_panel.get(), Qt::Key_K);
        QTest::keyClick(m_panel.get(), Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(asked.count(), 1);
        QCOMPARE(m_panel->received.count(Qt::Key_K), 2);
        // Another focused window keeps its Ctrl+K.
        QVERIFY(activate(*m_other));
        QTest::keyClick(m_other.get(), Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(asked.count(), 1);
        QCOMPARE(m_other->received.count(Qt::Key_K), 1);
    }

    void capturingTakesEveryKeyAsAChord()
    {
        m_navigator->syncCount(4);
        QSignalSpy capturing(m_navigator.get(), &ListNavigator::capturingChanged);
        QSignalSpy chords(m_navigator.get(), &ListNavigator::chordPressed);
        QSignalSpy cancelled(m_navigator.get(), &ListNavigator::lookupCancelled);
        m_navigator->setCapturing(true);
        QCOMPARE(capturing.count(), 1);

        QTest::keyClick(m_panel.get(), Qt::Key_Shift, Qt::ShiftModifier); // waits for its key
        QTest::keyClick(m_panel.get(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QTest::keyClick(m_panel.get(), Qt::Key_Return);
        QTest::keyClick(m_panel.get(), Qt::Key_Slash);
        QTest::keyClick(m_panel.get(), Qt::Key_F5, Qt::MetaModifier | Qt::AltModifier);
        QTest::keyClick(m_panel.get(), Qt::Key_Escape, Qt::ControlModifier);
        const QStringList expected = {QStringLiteral("⌃ ⇧ S"),  QStringLiteral("↓"),
                                      QStringLiteral("Return"), QStringLiteral("/"),
                                      QStringLiteral("⌥ ⌘ F5"), QStringLiteral("⌃ Esc")};
        QStringList pressed;
        for (const QList<QVariant>& chord : std::as_const(chords))
            pressed << chord.at(0).toString();
        QCOMPARE(pressed, expected);
        // None of them reached the panel or moved the selection.
        QVERIFY(m_panel->received.isEmpty());
        QCOMPARE(m_navigator->selection(), -1);
        QCOMPARE(m_navigator->searchFocusRequest(), 0);
        QVERIFY(m_activated.isEmpty());

        QTest::keyClick(m_panel.get(), Qt::Key_Escape);
        QCOMPARE(cancelled.count(), 1);
        QCOMPARE(chords.count(), expected.size());
        QVERIFY(m_panel->received.isEmpty());

        m_navigator->setCapturing(false);
        QTest::keyClick(m_panel.get(), Qt::Key_Escape);
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QCOMPARE(m_panel->received, QList<int>{Qt::Key_Escape});
        QCOMPARE(m_navigator->selection(), 0);
        QCOMPARE(cancelled.count(), 1);
    }

    void shrinkingTheListClampsTheSelection()
    {
        QSignalSpy counts(m_navigator.get(), &ListNavigator::itemCountChanged);
        m_navigator->syncCount(10);
        m_navigator->setSelection(7);
        m_navigator->syncCount(3);
        QCOMPARE(m_navigator->selection(), 2);
        QCOMPARE(m_navigator->itemCount(), 3);
        m_navigator->syncCount(0);
        QCOMPARE(m_navigator->selection(), -1);
        QCOMPARE(counts.count(), 3);
        // Growing keeps the selection where it is.
        m_navigator->syncCount(5);
        m_navigator->setSelection(1);
        m_navigator->syncCount(8);
        QCOMPARE(m_navigator->selection(), 1);
    }

    void stoppedNavigatorIgnoresKeysAndClearsTheSelection()
    {
        m_navigator->syncCount(5);
        m_navigator->setSelection(3);
        m_navigator->stop();
        QCOMPARE(m_navigator->selection(), -1);
        QTest::keyClick(m_panel.get(), Qt::Key_Down);
        QTest::keyClick(m_panel.get(), Qt::Key_Slash);
        QCOMPARE(m_panel->received, (QList<int>{Qt::Key_Down, Qt::Key_Slash}));
        QCOMPARE(m_navigator->selection(), -1);
        QCOMPARE(m_navigator->searchFocusRequest(), 0);
    }
};

QTEST_MAIN(TestListNavigator)
#include "tst_ListNavigator.moc"
