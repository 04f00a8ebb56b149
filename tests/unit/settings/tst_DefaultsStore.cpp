// SPDX-License-Identifier: MIT
#include "settings/DefaultsStore.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

using Tessaline::DefaultsStore;

class TestDefaultsStore : public QObject
{
    Q_OBJECT

private slots:
    void valuesReadBackWithTheirTypes();
    void wrongTypeIsToldApartFromMissing();
    void removingAKeyMakesItMissing();
    void optionalStringRemovesTheKeyWhenAbsent();
    void defaultPathIsUnderTheUsersConfigFolder();
    void damagedFileReadsAsEmpty();
    void readerCreatesNothingAndWritesNothing();

private:
    QTemporaryDir m_dir;
    QString path(const char* name) const { return m_dir.filePath(QString::fromLatin1(name)); }
};

void TestDefaultsStore::valuesReadBackWithTheirTypes()
{
    const QString file = path("typed.json");
    {
        DefaultsStore store(file);
        store.setBool(QStringLiteral("Hotkey.enabled"), true);
        store.setInteger(QStringLiteral("Hotkey.keyCode"), 40);
        store.setDouble(QStringLiteral("CoachTip.lastShown.media-keys"), 3.0);
        store.setString(QStringLiteral("FrontmostAppTracker.lastAppName"), QStringLiteral("Files"));
    }
    DefaultsStore reopened(file);
    QCOMPARE(reopened.type(QStringLiteral("Hotkey.enabled")), DefaultsStore::ValueType::Bool);
    QCOMPARE(reopened.boolValue(QStringLiteral("Hotkey.enabled")), std::optional<bool>(true));
    QCOMPARE(reopened.integerValue(QStringLiteral("Hotkey.keyCode")), std::optional<qint64>(40));
    // 3.0 stays a double although JSON would write it as 3.
    QCOMPARE(reopened.type(QStringLiteral("CoachTip.lastShown.media-keys")),
             DefaultsStore::ValueType::Double);
    QCOMPARE(reopened.doubleValue(QStringLiteral("CoachTip.lastShown.media-keys")),
             std::optional<double>(3.0));
    QCOMPARE(reopened.stringValue(QStringLiteral("FrontmostAppTracker.lastAppName")),
             std::optional<QString>(QStringLiteral("Files")));
}

void TestDefaultsStore::readerCreatesNothingAndWritesNothing()
{
    const QString missing = path("absent/defaults.json");
    {
        DefaultsStore reader(missing, DefaultsStore::Access::ReadOnly);
        QVERIFY(!reader.contains(QStringLiteral("Hotkey.enabled")));
        reader.setBool(QStringLiteral("Hotkey.enabled"), true);
    }
    QVERIFY(!QFileInfo::exists(path("absent")));

    const QString file = path("kept.json");
    {
        DefaultsStore writer(file);
        writer.setString(QStringLiteral("KeyNames.style"), QStringLiteral("symbols"));
    }
    {
        DefaultsStore reader(file, DefaultsStore::Access::ReadOnly);
        QCOMPARE(reader.stringValue(QStringLiteral("KeyNames.style")),
                 std::optional<QString>(QStringLiteral("symbols")));
        reader.setString(QStringLiteral("KeyNames.style"), QStringLiteral("words"));
        reader.remove(QStringLiteral("KeyNames.style"));
    }
    QCOMPARE(DefaultsStore(file).stringValue(QStringLiteral("KeyNames.style")),
             std::optional<QString>(QStringLiteral("symbols")));
}

void TestDefaultsStore::wrongTypeIsToldApartFromMissing()
{
    const QString file = path("wrong.json");
    {
        DefaultsStore store(file);
        store.setString(QStringLiteral("Hotkey.keyCode"), QStringLiteral("40"));
    }
    DefaultsStore reopened(file);
    QCOMPARE(reopened.type(QStringLiteral("Hotkey.keyCode")), DefaultsStore::ValueType::String);
    QVERIFY(!reopened.integerValue(QStringLiteral("Hotkey.keyCode")).has_value());
    QVERIFY(reopened.contains(QStringLiteral("Hotkey.keyCode")));
    QCOMPARE(reopened.type(QStringLiteral("Hotkey.modifiers")), DefaultsStore::ValueType::Missing);
    QVERIFY(!reopened.contains(QStringLiteral("Hotkey.modifiers")));
}

void TestDefaultsStore::removingAKeyMakesItMissing()
{
    DefaultsStore store(path("remove.json"));
    store.setBool(QStringLiteral("Onboarding.completed"), true);
    store.remove(QStringLiteral("Onboarding.completed"));
    QVERIFY(!store.contains(QStringLiteral("Onboarding.completed")));
}

void TestDefaultsStore::optionalStringRemovesTheKeyWhenAbsent()
{
    DefaultsStore store(path("optional.json"));
    store.setOptionalString(QStringLiteral("FrontmostAppTracker.lastBundleID"),
                            QStringLiteral("org.xfce.mousepad"));
    QCOMPARE(store.stringValue(QStringLiteral("FrontmostAppTracker.lastBundleID")),
             std::optional<QString>(QStringLiteral("org.xfce.mousepad")));
    store.setOptionalString(QStringLiteral("FrontmostAppTracker.lastBundleID"), std::nullopt);
    QVERIFY(!store.contains(QStringLiteral("FrontmostAppTracker.lastBundleID")));
}

void TestDefaultsStore::defaultPathIsUnderTheUsersConfigFolder()
{
    QVERIFY(DefaultsStore::defaultFilePath().startsWith(qEnvironmentVariable("XDG_CONFIG_HOME")));
    QVERIFY(DefaultsStore::defaultFilePath().endsWith(QStringLiteral("/Tessaline/defaults.json")));
}

void TestDefaultsStore::damagedFileReadsAsEmpty()
{
    const QString file = path("damaged.json");
    QFile damaged(file);
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write("{ not json");
    damaged.close();
    DefaultsStore store(file);
    QVERIFY(!store.contains(QStringLiteral("Hotkey.enabled")));
}

QTEST_GUILESS_MAIN(TestDefaultsStore)
#include "tst_DefaultsStore.moc"
