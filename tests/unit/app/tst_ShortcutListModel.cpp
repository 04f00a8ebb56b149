// SPDX-License-Identifier: MIT
// The cheat sheet's row model: a vault change reaches the list as row-level changes, so a list
// view keeps its scroll position and selection; a new search text resets it.
#include "AppTestSupport.h"
#include "ShortcutListModel.h"
#include "search/FuzzyMatch.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace Tessaline;
using AppTestSupport::item;
using Entry = ShortcutListModel::Entry;

namespace {

Entry entry(const QString& group, const QString& name, const QString& chord = QStringLiteral("⌃ A"))
{
    return Entry{group, item(name, chord)};
}

QStringList names(const QAbstractItemModel& model)
{
    QStringList values;
    for (int row = 0; row < model.rowCount(); ++row)
        values << model.index(row, 0).data(ShortcutListModel::GroupRole).toString() +
                      QLatin1Char('/') +
                      model.index(row, 0).data(ShortcutListModel::NameRole).toString();
    return values;
}

QStringList names(const QList<Entry>& entries)
{
    QStringList values;
    for (const Entry& e : entries)
        values << e.group + QLatin1Char('/') + e.item.name;
    return values;
}

// Counts what a list view hears of an update.
struct Signals
{
    explicit Signals(ShortcutListModel& model)
        : resets(&model, &QAbstractItemModel::modelReset),
          inserts(&model, &QAbstractItemModel::rowsInserted),
          removes(&model, &QAbstractItemModel::rowsRemoved),
          moves(&model, &QAbstractItemModel::rowsMoved),
          changes(&model, &QAbstractItemModel::dataChanged)
    {}
    QSignalSpy resets, inserts, removes, moves, changes;
};

} // namespace

class TestShortcutListModel : public QObject
{
    Q_OBJECT

private slots:
    void anUnchangedListSaysNothing()
    {
        ShortcutListModel model;
        QAbstractItemModelTester tester(&model);
        const QList<Entry> rows{entry(u"A"_qs, u"Copy"_qs), entry(u"A"_qs, u"Paste"_qs)};
        model.reset(rows, QString());
        Signals heard(model);
        model.update(rows, QString());
        QCOMPARE(heard.resets.count() + heard.inserts.count() + heard.removes.count() +
                     heard.moves.count() + heard.changes.count(),
                 0);
    }

    void aFavoriteMovesItsRowWithoutAReset()
    {
        ShortcutListModel model;
        QAbstractItemModelTester tester(&model);
        model.reset({entry(u"Editor shortcuts"_qs, u"Find"_qs),
                     entry(u"Editor shortcuts"_qs, u"Save"_qs), entry(u"Global"_qs, u"Copy"_qs)},
                    QString());
        Signals heard(model);
        Entry starred = entry(u"Favorites for Editor"_qs, u"Save"_qs);
        starred.item.favorite = true;
        model.update(
            {starred, entry(u"Editor shortcuts"_qs, u"Find"_qs), entry(u"Global"_qs, u"Copy"_qs)},
            QString());
        QCOMPARE(heard.resets.count(), 0);
        QCOMPARE(heard.removes.count(), 1);
        QCOMPARE(heard.inserts.count(), 1);
        QCOMPARE(names(model), (QStringList{u"Favorites for Editor/Save"_qs,
                                            u"Editor shortcuts/Find"_qs, u"Global/Copy"_qs}));
        QVERIFY(model.index(0, 0).data(ShortcutListModel::FavoriteRole).toBool());
    }

    void changedDataIsChangedInPlace()
    {
        ShortcutListModel model;
        QAbstractItemModelTester tester(&model);
        model.reset({entry(u"Global"_qs, u"Copy"_qs), entry(u"Global"_qs, u"Paste"_qs)}, QString());
        Signals heard(model);
        Entry noted = entry(u"Global"_qs, u"Paste"_qs);
        noted.item.note = u"From the clipboard"_qs;
        model.update({entry(u"Global"_qs, u"Copy"_qs), noted}, QString());
        QCOMPARE(heard.resets.count(), 0);
        QCOMPARE(heard.inserts.count() + heard.removes.count() + heard.moves.count(), 0);
        QCOMPARE(heard.changes.count(), 1);
        QCOMPARE(heard.changes.at(0).at(0).toModelIndex().row(), 1);
        QCOMPARE(model.index(1, 0).data(ShortcutListModel::DetailRole).toString(),
                 u"From the clipboard"_qs);
    }

    void chordTextFollowsTheKeyNameStyleInPlace()
    {
        ShortcutListModel model;
        QAbstractItemModelTester tester(&model);
        model.reset({entry(u"Global"_qs, u"Save as"_qs, u"⌃ ⇧ S"_qs),
                     entry(u"Global"_qs, u"Lock"_qs, u"⌘ L"_qs)},
                    QString());
        // Words by default; the stored chord stays what gets copied.
        QCOMPARE(model.index(0, 0).data(ShortcutListModel::ChordTextRole).toString(),
                 u"Ctrl+Shift+S"_qs);
        QCOMPARE(model.index(0, 0).data(ShortcutListModel::ChordRole).toString(), u"⌃ ⇧ S"_qs);

        Signals heard(model);
        model.setKeyNameStyle(KeyNameStyle::Symbols);
        QCOMPARE(heard.resets.count(), 0);
        QCOMPARE(heard.changes.count(), 1);
        QCOMPARE(heard.changes.at(0).at(0).toModelIndex().row(), 0);
        QCOMPARE(heard.changes.at(0).at(1).toModelIndex().row(), 1);
        QCOMPARE(heard.changes.at(0).at(2).value<QList<int>>(),
                 (QList<int>{ShortcutListModel::ChordTextRole, ShortcutListModel::WasTextRole}));
        QCOMPARE(model.index(0, 0).data(ShortcutListModel::ChordTextRole).toString(), u"⌃ ⇧ S"_qs);
        QCOMPARE(model.index(1, 0).data(ShortcutListModel::ChordTextRole).toString(),
                 u"Super L"_qs);

        model.setKeyNameStyle(KeyNameStyle::Symbols);
        QCOMPARE(heard.changes.count(), 1);
        QVERIFY(model.roleNames().value(ShortcutListModel::ChordTextRole) == "chordText");
    }

    void aNewQueryResets()
    {
        ShortcutListModel model;
        QAbstractItemModelTester tester(&model);
        model.reset({entry(u"Global"_qs, u"Copy"_qs)}, QString());
        Signals heard(model);
        model.update({entry(u"Global"_qs, u"Copy"_qs)}, u"co"_qs);
        QCOMPARE(heard.resets.count(), 1);
        QCOMPARE(model.index(0, 0).data(ShortcutListModel::NameHtmlRole).toString(),
                 FuzzyMatch::highlighted(u"Copy"_qs, u"co"_qs));
    }

    // Any old list becomes any new one, duplicates included, through changes the model tester
    // accepts, and never through a reset.
    void randomUpdatesEndAtTheTarget()
    {
        QRandomGenerator random(20261123);
        const QStringList groups{u"Favorites"_qs, u"App"_qs, u"Global"_qs};
        auto randomList = [&] {
            QList<Entry> list;
            const int count = random.bounded(12);
            for (int i = 0; i < count; ++i) {
                Entry e = entry(groups.at(random.bounded(groups.size())),
                                QString(QChar(u'a' + random.bounded(6))));
                if (random.bounded(4) == 0)
                    e.item.note = QString::number(random.bounded(3));
                list << e;
            }
            return list;
        };
        for (int round = 0; round < 500; ++round) {
            ShortcutListModel model;
            QAbstractItemModelTester tester(&model,
                                            QAbstractItemModelTester::FailureReportingMode::QtTest);
            model.reset(randomList(), QString());
            Signals heard(model);
            const QList<Entry> target = randomList();
            model.update(target, QString());
            QCOMPARE(names(model), names(target));
            for (int row = 0; row < model.rowCount(); ++row)
                QCOMPARE(model.entries().at(row).item, target.at(row).item);
            QCOMPARE(heard.resets.count(), 0);
        }
    }
};

QTEST_MAIN(TestShortcutListModel)
#include "tst_ShortcutListModel.moc"
