// SPDX-License-Identifier: MIT
// The user's choice between chords in words and in symbols, kept in the user defaults.
#include "settings/DefaultsStore.h"
#include "settings/KeyNamePreference.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace Tessaline;

class TestKeyNamePreference : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(m_dir.emplace().isValid()); }

    void wordsByDefault()
    {
        DefaultsStore defaults(file());
        KeyNamePreference preference(defaults);
        QCOMPARE(preference.style(), KeyNameStyle::Words);
        QVERIFY(preference.usesWords());
        QCOMPARE(preference.draw(u"⌃ ⇧ S"_qs), u"Ctrl+Shift+S"_qs);
        QVERIFY(!defaults.contains(QString::fromLatin1(KeyNamePreference::defaultsKey)));
    }

    void choiceIsWrittenAndReadBack()
    {
        {
            DefaultsStore defaults(file());
            KeyNamePreference preference(defaults);
            QSignalSpy changed(&preference, &KeyNamePreference::styleChanged);
            preference.setUsesWords(false);
            QCOMPARE(changed.count(), 1);
            preference.setStyle(KeyNameStyle::Symbols);
            QCOMPARE(changed.count(), 1);
            QCOMPARE(preference.draw(u"⌃ ⌘ Q"_qs), u"⌃ Super Q"_qs);
            QCOMPARE(defaults.stringValue(QString::fromLatin1(KeyNamePreference::defaultsKey)),
                     u"symbols"_qs);
        }
        DefaultsStore reopened(file());
        QCOMPARE(KeyNamePreference::read(reopened), KeyNameStyle::Symbols);
        KeyNamePreference preference(reopened);
        preference.setUsesWords(true);
        QCOMPARE(reopened.stringValue(QString::fromLatin1(KeyNamePreference::defaultsKey)),
                 u"words"_qs);
    }

    void unknownValueMeansWords_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addRow("other text") << QVariant(u"Symbols please"_qs);
        QTest::addRow("wrong type") << QVariant(true);
    }
    void unknownValueMeansWords()
    {
        QFETCH(QVariant, stored);
        DefaultsStore defaults(file());
        const QString key = QString::fromLatin1(KeyNamePreference::defaultsKey);
        if (stored.typeId() == QMetaType::Bool)
            defaults.setBool(key, stored.toBool());
        else
            defaults.setString(key, stored.toString());
        QCOMPARE(KeyNamePreference(defaults).style(), KeyNameStyle::Words);
    }

private:
    QString file() const { return m_dir->filePath(QStringLiteral("defaults.json")); }
    std::optional<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestKeyNamePreference)
#include "tst_KeyNamePreference.moc"
