// SPDX-License-Identifier: MIT
#include "AppCommandLine.h"

#include <QtTest>

using Tessaline::AppCommandLine;
using Request = Tessaline::AppCommandLine::Request;

Q_DECLARE_METATYPE(Request)

namespace {

QStringList line(const char* arguments)
{
    QStringList list{QStringLiteral("/usr/bin/tessaline")};
    const QString text = QString::fromUtf8(arguments);
    if (!text.isEmpty())
        list += text.split(QLatin1Char(' '));
    return list;
}

struct Outcome
{
    int status = -1;
    QString out;
    QString err;
    QStringList forwarded;
};

Outcome run(const char* arguments, bool instanceRuns)
{
    Outcome outcome;
    QTextStream out(&outcome.out);
    QTextStream err(&outcome.err);
    AppCommandLine commandLine(line(arguments));
    outcome.status = commandLine.run(out, err, [&](const QString& method) {
        outcome.forwarded << method;
        return instanceRuns;
    });
    out.flush();
    err.flush();
    return outcome;
}

} // namespace

class TestAppCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void requests_data();
    void requests();
    void helpListsEveryOption();
    void versionIsTheProjectVersion();
    void toggleAndQuitForwardToTheRunningInstance();
    void noRunningInstanceEndsWithAMessage();
    void mistakesEndWithAMessage_data();
    void mistakesEndWithAMessage();
};

void TestAppCommandLine::requests_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<Request>("request");
    QTest::addColumn<bool>("startsTray");
    QTest::addRow("none") << "" << Request::StartTray << true;
    QTest::addRow("autostart") << "--autostart" << Request::StartTrayAtLogin << true;
    QTest::addRow("help") << "--help" << Request::Help << false;
    QTest::addRow("-h") << "-h" << Request::Help << false;
    QTest::addRow("version") << "--version" << Request::Version << false;
    QTest::addRow("toggle") << "--toggle" << Request::Toggle << false;
    QTest::addRow("quit") << "--quit" << Request::Quit << false;
    QTest::addRow("help wins") << "--toggle --help" << Request::Help << false;
    QTest::addRow("unknown") << "--frobnicate" << Request::Invalid << false;
    QTest::addRow("two actions") << "--toggle --quit" << Request::Invalid << false;
    QTest::addRow("positional") << "file.json" << Request::Invalid << false;
}

void TestAppCommandLine::requests()
{
    QFETCH(QString, arguments);
    QFETCH(Request, request);
    QFETCH(bool, startsTray);
    const AppCommandLine commandLine(line(arguments.toUtf8().constData()));
    QCOMPARE(commandLine.request(), request);
    QCOMPARE(commandLine.startsTray(), startsTray);
    QCOMPARE(commandLine.atLogin(), request == Request::StartTrayAtLogin);
}

void TestAppCommandLine::helpListsEveryOption()
{
    const Outcome outcome = run("--help", true);
    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.err.isEmpty());
    QVERIFY(outcome.forwarded.isEmpty());
    QVERIFY2(outcome.out.startsWith(QStringLiteral("Usage: tessaline [options]\n")),
             qPrintable(outcome.out));
    for (const char* option : {"--help", "--version", "--toggle", "--quit", "--autostart"})
        QVERIFY2(outcome.out.contains(QLatin1String(option)), option);
}

void TestAppCommandLine::versionIsTheProjectVersion()
{
    const Outcome outcome = run("--version", true);
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.out, QStringLiteral("tessaline " TESSALINE_VERSION "\n"));
}

void TestAppCommandLine::toggleAndQuitForwardToTheRunningInstance()
{
    Outcome outcome = run("--toggle", true);
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.forwarded, QStringList{QStringLiteral("ToggleHUD")});
    QVERIFY(outcome.out.isEmpty());
    QVERIFY(outcome.err.isEmpty());
    outcome = run("--quit", true);
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.forwarded, QStringList{QStringLiteral("Quit")});
}

void TestAppCommandLine::noRunningInstanceEndsWithAMessage()
{
    Outcome outcome = run("--toggle", false);
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.err, QStringLiteral("tessaline: no running Tessaline answered on the session "
                                         "bus; nothing to toggle.\n"));
    outcome = run("--quit", false);
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.err.endsWith(QStringLiteral("nothing to quit.\n")));
}

void TestAppCommandLine::mistakesEndWithAMessage_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("message");
    QTest::addRow("unknown") << "--frobnicate"
                             << "tessaline: Unknown option 'frobnicate'.\n";
    QTest::addRow("two actions") << "--quit --autostart"
                                 << "tessaline: Give only one of --toggle, --quit and "
                                    "--autostart.\n";
    QTest::addRow("positional") << "file.json"
                                << "tessaline: Unexpected argument 'file.json'.\n";
}

void TestAppCommandLine::mistakesEndWithAMessage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, message);
    const Outcome outcome = run(arguments.toUtf8().constData(), true);
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.out.isEmpty());
    QVERIFY(outcome.forwarded.isEmpty());
    QCOMPARE(outcome.err, message + QStringLiteral("Try 'tessaline --help'.\n"));
}

QTEST_GUILESS_MAIN(TestAppCommandLine)
#include "tst_AppCommandLine.moc"
