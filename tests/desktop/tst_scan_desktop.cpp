// SPDX-License-Identifier: MIT
// Scanning real applications' menus over the accessibility bus of a throw-away desktop:
// mousepad (GTK 3) and a Qt Widgets window, the vault merge and its messages, the plain walk
// and the snapshot reader agreeing, and an application that stopped answering.
#include "AtspiPlainElementFactory.h"
#include "FakeAlertPresenter.h"
#include "FakeWorkspace.h"
#include "platform/atspi/AtspiAccessibilityTrust.h"
#include "platform/atspi/AtspiElementFactory.h"
#include "scan/AppMenuScanner.h"
#include "vault/VaultStore.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Tessaline;
using namespace Tessaline::Testing;

namespace {

const QString kMousepadID = QStringLiteral("org.xfce.mousepad");
const QString kQtAppID = QStringLiteral("org.tessaline.ScanMenuSample");

std::optional<ShortcutItem> findItem(const QList<ShortcutItem>& items, const QString& name)
{
    for (const ShortcutItem& item : items) {
        if (item.name == name)
            return item;
    }
    return std::nullopt;
}

QString describe(const QList<ShortcutItem>& items)
{
    QStringList lines;
    for (const ShortcutItem& item : items)
        lines.append(item.name + QStringLiteral(" = ") + item.chord + QStringLiteral(" @ ") +
                     item.menu.value_or(QString()));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

class TestScanDesktop : public QObject
{
    Q_OBJECT

    AtspiAccessibilityTrust trust;
    FakeWorkspace workspace;
    FakeAlertPresenter alerts;
    QProcess mousepad;
    QProcess qtApp;
    QTemporaryDir folder;

    // Starts `process` and waits until its menu bar can be read.
    bool startAndWait(QProcess& process, const QString& program, const QStringList& arguments)
    {
        process.setProgram(program);
        process.setArguments(arguments);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start();
        if (!process.waitForStarted(10000))
            return false;
        AtspiElementFactory elements;
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 20000) {
            if (const auto application = elements.applicationElement(process.processId())) {
                if (application->attributeValue(AccessibilityAttribute::menuBar).isValid())
                    return true;
            }
            QTest::qWait(200);
        }
        return false;
    }

    // The application's pipelined reader, or the plain walk it is checked against.
    enum class Reader
    {
        snapshot,
        plainWalk,
    };

    static std::unique_ptr<AccessibilityElementFactory> elementsFor(Reader reader)
    {
        if (reader == Reader::plainWalk)
            return std::make_unique<AtspiPlainElementFactory>();
        return std::make_unique<AtspiElementFactory>();
    }

    ScanOutcome scanWith(Reader reader, const TrackedApp& app)
    {
        const auto elements = elementsFor(reader);
        AppMenuScanner scanner(workspace, trust, *elements, alerts);
        return scanner.scan(app);
    }

    static void stop(QProcess& process)
    {
        if (process.state() == QProcess::NotRunning)
            return;
        ::kill(static_cast<pid_t>(process.processId()), SIGCONT);
        process.terminate();
        if (!process.waitForFinished(5000)) {
            process.kill();
            process.waitForFinished(5000);
        }
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(folder.isValid());
        // Switching accessibility on before the Qt application starts makes it expose itself.
        trust.requestTrust();
        QVERIFY(trust.isTrusted());
        QVERIFY2(startAndWait(mousepad, QStringLiteral("mousepad"),
                              {QStringLiteral("--disable-server")}),
                 "mousepad did not show its menu bar on the accessibility bus");
        QVERIFY2(startAndWait(qtApp,
                              QCoreApplication::applicationDirPath() +
                                  QStringLiteral("/scan_qt_menu_app"),
                              {}),
                 "the Qt application did not show its menu bar on the accessibility bus");
        workspace.apps = {makeApp(QStringLiteral("Mousepad"), kMousepadID, mousepad.processId()),
                          makeApp(QStringLiteral("Scan Menu Sample"), kQtAppID, qtApp.processId())};
    }

    void cleanupTestCase()
    {
        stop(mousepad);
        stop(qtApp);
    }

    void mousepadMenusBecomeShortcuts()
    {
        const ScanOutcome outcome =
            scanWith(Reader::snapshot, TrackedApp{QStringLiteral("Mousepad"), kMousepadID});
        const auto* result = std::get_if<ScanResult>(&outcome);
        QVERIFY(result);
        const QList<ShortcutItem>& items = result->shortcuts;
        qInfo("mousepad: %d shortcuts\n%s", int(items.size()), qPrintable(describe(items)));
        const auto save = findItem(items, QStringLiteral("Save"));
        QVERIFY(save);
        QCOMPARE(save->chord, QStringLiteral("⌃ S"));
        QCOMPARE(save->menu, std::optional<QString>(QStringLiteral("File")));
        const auto lineUp = findItem(items, QStringLiteral("Line Up"));
        QVERIFY(lineUp);
        QCOMPARE(lineUp->chord, QStringLiteral("⌥ ↑"));
        QCOMPARE(lineUp->menu, std::optional<QString>(QStringLiteral("Edit > Move")));
        const auto fullscreen = findItem(items, QStringLiteral("Fullscreen"));
        QVERIFY(fullscreen);
        QCOMPARE(fullscreen->chord, QStringLiteral("F11"));
        // Mnemonic-only items are no shortcuts.
        QVERIFY(!findItem(items, QStringLiteral("Save All")));
        QVERIFY(items.size() >= 30);
    }

    void mousepadScanMergesIntoTheVault()
    {
        VaultStore store(
            VaultStore::Configuration{folder.filePath(QStringLiteral("keybinds.json")), {}});
        for (const AppShortcutPack& pack : store.data().apps)
            QVERIFY(pack.name.toLower() != QStringLiteral("mousepad"));
        const ScanOutcome outcome =
            scanWith(Reader::snapshot, TrackedApp{QStringLiteral("Mousepad"), kMousepadID});
        QVERIFY(std::holds_alternative<ScanResult>(outcome));
        const int n = int(std::get<ScanResult>(outcome).shortcuts.size());

        AtspiElementFactory elements;
        AppMenuScanner scanner(workspace, trust, elements, alerts);
        QSignalSpy finished(&scanner, &AppMenuScanner::scanFinished);
        const TrackedApp app{QStringLiteral("Mousepad"), kMousepadID};
        scanner.scanAndMergeCurrentApp(app, store);
        QCOMPARE(scanner.statusText(),
                 std::optional<QString>(QStringLiteral("Scanning Mousepad menus...")));
        QVERIFY(finished.wait(20000));
        QCOMPARE(scanner.statusText(),
                 std::optional<QString>(
                     QStringLiteral("Added %1 of %1 discovered shortcuts for Mousepad.").arg(n)));
        scanner.scanAndMergeCurrentApp(app, store);
        QVERIFY(finished.wait(20000));
        QCOMPARE(
            scanner.statusText(),
            std::optional<QString>(
                QStringLiteral("Found %1 shortcuts for Mousepad; they were already in the vault.")
                    .arg(n)));
        QCOMPARE(scanner.statusText(app), scanner.statusText());
    }

    void qtMenusBecomeShortcuts()
    {
        const ScanOutcome outcome =
            scanWith(Reader::snapshot, TrackedApp{QStringLiteral("Scan Menu Sample"), kQtAppID});
        const auto* result = std::get_if<ScanResult>(&outcome);
        QVERIFY(result);
        qInfo("Qt sample: %d shortcuts\n%s", int(result->shortcuts.size()),
              qPrintable(describe(result->shortcuts)));
        const QStringList expected = {
            QStringLiteral("Comment = ⌃ K, ⌃ C @ Edit"),
            QStringLiteral("Delete = Delete @ Edit"),
            QStringLiteral("Full Screen = F11 @ View"),
            QStringLiteral("Line Down = ⌥ ↓ @ Edit > Move"),
            QStringLiteral("Line Up = ⌥ ↑ @ Edit > Move"),
            QStringLiteral("New = ⌃ N @ File"),
            QStringLiteral("Open... = ⌃ O @ File"),
            QStringLiteral("Quit = ⌃ Q @ File"),
            QStringLiteral("Redo = ⌃ ⇧ Z @ Edit"),
            QStringLiteral("Reload = ⇧ ⌘ F5 @ View"),
            QStringLiteral("Save = ⌃ S @ File"),
            QStringLiteral("Save As... = ⌃ ⇧ S @ File"),
            QStringLiteral("Undo = ⌃ Z @ Edit"),
            QStringLiteral("Zoom In = ⌃ + @ View"),
        };
        QCOMPARE(describe(result->shortcuts), expected.join(QLatin1Char('\n')));
    }

    void snapshotEqualsThePlainWalk_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("bundleID");
        QTest::addRow("mousepad") << QStringLiteral("Mousepad") << kMousepadID;
        QTest::addRow("qt") << QStringLiteral("Scan Menu Sample") << kQtAppID;
    }
    void snapshotEqualsThePlainWalk()
    {
        QFETCH(QString, name);
        QFETCH(QString, bundleID);
        const TrackedApp app{name, bundleID};
        const ScanOutcome plain = scanWith(Reader::plainWalk, app);
        const ScanOutcome snapshot = scanWith(Reader::snapshot, app);
        QVERIFY(std::holds_alternative<ScanResult>(plain));
        QVERIFY(std::holds_alternative<ScanResult>(snapshot));
        QCOMPARE(describe(std::get<ScanResult>(snapshot).shortcuts),
                 describe(std::get<ScanResult>(plain).shortcuts));
        QCOMPARE(std::get<ScanResult>(snapshot), std::get<ScanResult>(plain));
    }

    void stoppedApplicationFailsWithinSeconds_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addRow("snapshot") << int(Reader::snapshot);
        QTest::addRow("plain walk") << int(Reader::plainWalk);
    }
    void stoppedApplicationFailsWithinSeconds()
    {
        QFETCH(int, mode);
        VaultStore store(VaultStore::Configuration{
            folder.filePath(QStringLiteral("stopped-%1.json").arg(mode)), {}});
        const auto elements = elementsFor(static_cast<Reader>(mode));
        AppMenuScanner scanner(workspace, trust, *elements, alerts);
        QSignalSpy finished(&scanner, &AppMenuScanner::scanFinished);
        QCOMPARE(::kill(static_cast<pid_t>(mousepad.processId()), SIGSTOP), 0);
        QElapsedTimer timer;
        timer.start();
        scanner.scanAndMergeCurrentApp(TrackedApp{QStringLiteral("Mousepad"), kMousepadID}, store);
        const bool ended = finished.wait(30000);
        const qint64 elapsed = timer.elapsed();
        ::kill(static_cast<pid_t>(mousepad.processId()), SIGCONT);
        QVERIFY(ended);
        qInfo("stopped application reported after %lld ms", elapsed);
        QCOMPARE(scanner.statusText(), std::optional<QString>(QStringLiteral(
                                           "Tessaline could not read the menu bar for Mousepad.")));
        QVERIFY2(elapsed < 5000, qPrintable(QString::number(elapsed)));
        // Once it answers again, it can be scanned again.
        QTest::qWait(300);
        scanner.scanAndMergeCurrentApp(TrackedApp{QStringLiteral("Mousepad"), kMousepadID}, store);
        QVERIFY(finished.wait(20000));
        QVERIFY(scanner.statusText()->startsWith(QStringLiteral("Added ")));
    }
};

QTEST_GUILESS_MAIN(TestScanDesktop)
#include "tst_scan_desktop.moc"
