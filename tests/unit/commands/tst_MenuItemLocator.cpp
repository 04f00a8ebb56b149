// SPDX-License-Identifier: MIT
#include "commands/MenuItemLocator.h"

#include "FakeMenuCommandRunner.h"

#include <QtTest>

using namespace Tessaline;
using namespace Tessaline::Testing;
using namespace Qt::Literals::StringLiterals;

class TestMenuItemLocator : public QObject
{
    Q_OBJECT

private slots:
    void findsAnItemByPathAndName();
    void passesThroughUntitledAndRepeatedLevels();
    void readsOnlyTheMenusOnThePath();
    void itemsStraightInTheMenuBar();
    void ellipsisMatchesThreeDots();
    void enabledMatchWinsOverDisabled();
    void disabledItemIsStillFound();
    void missingItemIsNull();
    void sameNameUnderAnotherMenuIsNotTaken();
    void silentApplicationFails();
};

void TestMenuItemLocator::findsAnItemByPathAndName()
{
    FakeMenuEntry bar{QString()};
    auto file = bar.add(u"File"_s);
    file->add(u"New"_s);
    auto newWindow = file->add(u"New Window"_s);
    bar.add(u"Edit"_s)->add(u"New Window"_s);
    const auto found = MenuItemLocator::find(bar.entries, {u"File"_s}, u"New Window"_s);
    QVERIFY(found);
    QCOMPARE(found->get(), newWindow.get());
}

void TestMenuItemLocator::passesThroughUntitledAndRepeatedLevels()
{
    // Menu bar -> "View" item -> untitled popup -> "Zoom" item -> popup titled "Zoom" -> item.
    FakeMenuEntry bar{QString()};
    auto popup = bar.add(u"View"_s)->add(QString());
    auto zoomPopup = popup->add(u"Zoom"_s)->add(u"Zoom"_s);
    auto zoomIn = zoomPopup->add(u"Zoom In"_s);
    const auto found = MenuItemLocator::find(bar.entries, {u"View"_s, u"Zoom"_s}, u"Zoom In"_s);
    QVERIFY(found);
    QCOMPARE(found->get(), zoomIn.get());
}

void TestMenuItemLocator::readsOnlyTheMenusOnThePath()
{
    FakeMenuEntry bar{QString()};
    auto file = bar.add(u"File"_s);
    file->add(u"Save"_s);
    auto edit = bar.add(u"Edit"_s);
    edit->add(u"Copy"_s);
    QVERIFY(MenuItemLocator::find(bar.entries, {u"File"_s}, u"Save"_s).value());
    QCOMPARE(file->childReads, 1);
    QCOMPARE(edit->childReads, 0);
}

void TestMenuItemLocator::itemsStraightInTheMenuBar()
{
    FakeMenuEntry bar{QString()};
    bar.add(u"File"_s)->add(u"Help"_s);
    auto help = bar.add(u"Help"_s);
    const auto found = MenuItemLocator::find(bar.entries, {}, u"Help"_s);
    QVERIFY(found);
    QCOMPARE(found->get(), help.get());
}

void TestMenuItemLocator::ellipsisMatchesThreeDots()
{
    FakeMenuEntry bar{QString()};
    auto open = bar.add(u"File"_s)->add(u"Open…"_s);
    const auto found = MenuItemLocator::find(bar.entries, {u"File"_s}, u"Open..."_s);
    QVERIFY(found);
    QCOMPARE(found->get(), open.get());
}

void TestMenuItemLocator::enabledMatchWinsOverDisabled()
{
    FakeMenuEntry bar{QString()};
    auto file = bar.add(u"File"_s);
    file->add(u"Close"_s, false);
    auto enabled = file->add(u"Close"_s, true);
    const auto found = MenuItemLocator::find(bar.entries, {u"File"_s}, u"Close"_s);
    QVERIFY(found);
    QCOMPARE(found->get(), enabled.get());
}

void TestMenuItemLocator::disabledItemIsStillFound()
{
    FakeMenuEntry bar{QString()};
    auto undo = bar.add(u"Edit"_s)->add(u"Undo"_s, false);
    const auto found = MenuItemLocator::find(bar.entries, {u"Edit"_s}, u"Undo"_s);
    QVERIFY(found);
    QCOMPARE(found->get(), undo.get());
    QVERIFY(!(*found)->isEnabled());
}

void TestMenuItemLocator::missingItemIsNull()
{
    FakeMenuEntry bar{QString()};
    bar.add(u"File"_s)->add(u"Save"_s);
    const auto found = MenuItemLocator::find(bar.entries, {u"File"_s}, u"Save As..."_s);
    QVERIFY(found);
    QVERIFY(!*found);
}

void TestMenuItemLocator::sameNameUnderAnotherMenuIsNotTaken()
{
    FakeMenuEntry bar{QString()};
    bar.add(u"Edit"_s)->add(u"Find"_s);
    const auto found = MenuItemLocator::find(bar.entries, {u"Search"_s}, u"Find"_s);
    QVERIFY(found);
    QVERIFY(!*found);
}

void TestMenuItemLocator::silentApplicationFails()
{
    FakeMenuEntry bar{QString()};
    auto file = bar.add(u"File"_s);
    file->add(u"Save"_s);
    file->answers = false;
    const auto found = MenuItemLocator::find(bar.entries, {u"File"_s}, u"Save"_s);
    QVERIFY(!found);
    QCOMPARE(found.error(), u"the app did not answer"_s);
}

QTEST_GUILESS_MAIN(TestMenuItemLocator)
#include "tst_MenuItemLocator.moc"
