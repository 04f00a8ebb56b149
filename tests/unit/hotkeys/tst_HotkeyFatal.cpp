// SPDX-License-Identifier: MIT
// Values that cannot be Carbon codes end the process. Each case runs in a child copy of this
// executable, which must die with the expected message.
#include "ManualScheduler.h"
#include "hotkeys/HotkeyManager.h"
#include "settings/DefaultsStore.h"

#include <hotkey/KeyCombo.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using Tessaline::DefaultsStore;
using Tessaline::HotkeyManager;

namespace {

constexpr auto kCaseVariable = "TESSALINE_HOTKEY_FATAL_CASE";
constexpr auto kDirVariable = "TESSALINE_HOTKEY_FATAL_DIR";

// Runs one case in the child. Returning means the case did not end the process.
void runCase(const QByteArray& name, const QString& dir)
{
    DefaultsStore defaults(dir + QStringLiteral("/defaults.json"));
    Tessaline::Testing::ManualScheduler scheduler;
    const QString keyCode = QStringLiteral("Hotkey.keyCode");
    const QString modifiers = QStringLiteral("Hotkey.modifiers");
    if (name == "storedKeyCodeTooLarge") {
        defaults.setInteger(keyCode, 0x100000000ll);
        HotkeyManager manager(defaults, scheduler, [] {});
    } else if (name == "storedModifiersNegative") {
        defaults.setInteger(modifiers, -1);
        HotkeyManager manager(defaults, scheduler, [] {});
    } else if (name == "storedLargestValues") {
        defaults.setInteger(keyCode, 0xFFFFFFFFll);
        defaults.setInteger(modifiers, 0);
        HotkeyManager manager(defaults, scheduler, [] {});
        std::printf("read %u\n", manager.keyCode());
    } else if (name == "displayTextOfLargeCode") {
        HotkeyManager manager(defaults, scheduler, [] {});
        manager.setKeyCode(65536);
        std::printf("%s\n", qPrintable(manager.displayText()));
    } else if (name == "dictionaryNegative") {
        HotKey::KeyCombo::fromDictionary(
            {{QStringLiteral("keyCode"), -1}, {QStringLiteral("modifiers"), 0}});
    } else if (name == "dictionaryTooLarge") {
        HotKey::KeyCombo::fromDictionary(
            {{QStringLiteral("keyCode"), 1},
             {QStringLiteral("modifiers"), QVariant::fromValue<qint64>(0x100000000ll)}});
    }
}

} // namespace

class TestHotkeyFatal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cases_data();
    void cases();
};

void TestHotkeyFatal::cases_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("fatal");
    QTest::addColumn<QString>("message");
    QTest::addRow("stored key code above 32 bits")
        << QByteArray("storedKeyCodeTooLarge") << true << QStringLiteral("Hotkey.keyCode");
    QTest::addRow("stored negative modifiers")
        << QByteArray("storedModifiersNegative") << true << QStringLiteral("Hotkey.modifiers");
    QTest::addRow("largest stored values are fine")
        << QByteArray("storedLargestValues") << false << QStringLiteral("read 4294967295");
    QTest::addRow("display text of a code above 16 bits")
        << QByteArray("displayTextOfLargeCode") << true << QStringLiteral("65536");
    QTest::addRow("dictionary with a negative code")
        << QByteArray("dictionaryNegative") << true << QStringLiteral("keyCode");
    QTest::addRow("dictionary with modifiers above 32 bits")
        << QByteArray("dictionaryTooLarge") << true << QStringLiteral("modifiers");
}

void TestHotkeyFatal::cases()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, fatal);
    QFETCH(QString, message);
    QTemporaryDir dir;
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(kCaseVariable), QString::fromLatin1(name));
    environment.insert(QString::fromLatin1(kDirVariable), dir.path());
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {});
    QVERIFY(child.waitForFinished(30000));
    const QString output =
        QString::fromLocal8Bit(child.readAllStandardError() + child.readAllStandardOutput());
    if (fatal) {
        QVERIFY2(child.exitStatus() == QProcess::CrashExit || child.exitCode() != 0,
                 qPrintable(output));
    } else {
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
    }
    QVERIFY2(output.contains(message), qPrintable(output));
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QByteArray name = qgetenv(kCaseVariable);
    if (!name.isEmpty()) {
        runCase(name, QString::fromLocal8Bit(qgetenv(kDirVariable)));
        return 0;
    }
    TestHotkeyFatal test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_HotkeyFatal.moc"
