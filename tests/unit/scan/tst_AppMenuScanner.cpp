// SPDX-License-Identifier: MIT
// Scan orchestration: checks before the walk, merging, status messages, exclusion and the
// permission prompt.
#include "FakeScanDesktop.h"
#include "vault/VaultStore.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Tessaline;
using namespace Tessaline::Testing;

namespace {

const QString kPermissionText = QStringLiteral(
    "Tessaline needs Accessibility permission to read app menus and discover shortcuts. After "
    "enabling it, reopen the app you want to scan and try again.");

TrackedApp tracked(const QString& name, const QString& bundleID)
{
    return TrackedApp{name, bundleID};
}

} // namespace

class TestAppMenuScanner : public QObject
{
    Q_OBJECT

    std::unique_ptr<FakeScanDesktop> desktop;
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<VaultStore> store;

    // Registers a running application whose menu bar has one menu with `items` shortcuts.
    void addApp(const QString& name, const QString& bundleID, qint64 pid, int items)
    {
        desktop->workspace.apps.append(makeApp(name, bundleID, pid));
        QList<FakeElementPtr> entries;
        for (int i = 0; i < items; ++i)
            entries.append(makeItem(QStringLiteral("Command %1").arg(i),
                                    QString(QChar(QLatin1Char('a').unicode() + i))));
        desktop->elements.applications.insert(
            pid, makeApplication({makeMenu(QStringLiteral("File"), entries)}));
    }

    QString status() const
    {
        return desktop->scanner.statusText().value_or(QStringLiteral("<none>"));
    }

private Q_SLOTS:
    void init()
    {
        desktop = std::make_unique<FakeScanDesktop>();
        // A fresh, empty vault for every test.
        folder = std::make_unique<QTemporaryDir>();
        store = std::make_unique<VaultStore>(
            VaultStore::Configuration{folder->filePath(QStringLiteral("keybinds.json")), {}});
    }

    void cleanup()
    {
        desktop.reset();
        store.reset();
    }

    void initialState()
    {
        QVERIFY(!desktop->scanner.isScanning());
        QVERIFY(!desktop->scanner.statusText());
        QVERIFY(!desktop->scanner.statusAppBundleID());
        QVERIFY(!desktop->scanner.statusText(tracked(QStringLiteral("A"), QStringLiteral("a"))));
    }

    void errorDescriptions()
    {
        QCOMPARE(MenuScanError::appNotRunning(QStringLiteral("Preview")).errorDescription(),
                 QStringLiteral("Preview is not running anymore."));
        QCOMPARE(MenuScanError::menuUnavailable(QStringLiteral("Preview")).errorDescription(),
                 QStringLiteral("Tessaline could not read the menu bar for Preview."));
        QCOMPARE(MenuScanError::missingBundleID().errorDescription(),
                 QStringLiteral("Tessaline could not identify the current app."));
        QCOMPARE(MenuScanError::accessibilityNotGranted().errorDescription(),
                 QStringLiteral("Accessibility permission is needed to scan menus."));
    }

    void scanChecksRunInOrder()
    {
        // No bundle id wins over missing trust.
        desktop->trust.trusted = false;
        QCOMPARE(desktop->scanner.scan(TrackedApp::placeholder()),
                 ScanOutcome(MenuScanError::missingBundleID()));
        QCOMPARE(desktop->scanner.scan(tracked(QStringLiteral("Gone"), QStringLiteral("org.gone"))),
                 ScanOutcome(MenuScanError::accessibilityNotGranted()));
        desktop->trust.trusted = true;
        QCOMPARE(desktop->scanner.scan(tracked(QStringLiteral("Gone"), QStringLiteral("org.gone"))),
                 ScanOutcome(MenuScanError::appNotRunning(QStringLiteral("Gone"))));
        // Running, but the accessibility service does not know the process.
        desktop->workspace.apps.append(
            makeApp(QStringLiteral("Mute"), QStringLiteral("org.mute"), 7));
        QCOMPARE(desktop->scanner.scan(tracked(QStringLiteral("Mute"), QStringLiteral("org.mute"))),
                 ScanOutcome(MenuScanError::menuUnavailable(QStringLiteral("Mute"))));
        // Known, but without a menu bar.
        desktop->elements.applications.insert(7, std::make_shared<FakeAccessibilityElement>());
        QCOMPARE(desktop->scanner.scan(tracked(QStringLiteral("Mute"), QStringLiteral("org.mute"))),
                 ScanOutcome(MenuScanError::menuUnavailable(QStringLiteral("Mute"))));
        QVERIFY(desktop->alerts.shown.isEmpty());
    }

    void scanUsesTheFirstRunningInstance()
    {
        addApp(QStringLiteral("Editor"), QStringLiteral("org.editor"), 10, 2);
        addApp(QStringLiteral("Editor"), QStringLiteral("org.editor"), 11, 5);
        const ScanOutcome outcome = desktop->scanner.scan(
            tracked(QStringLiteral("My Editor"), QStringLiteral("org.editor")));
        const auto* result = std::get_if<ScanResult>(&outcome);
        QVERIFY(result);
        QCOMPARE(desktop->elements.requested, QList<qint64>{10});
        QCOMPARE(result->shortcuts.size(), 2);
        QCOMPARE(result->app, tracked(QStringLiteral("My Editor"), QStringLiteral("org.editor")));
    }

    void currentAppScanAddsThenFindsThemAlreadyThere()
    {
        addApp(QStringLiteral("Preview"), QStringLiteral("com.example.Preview"), 5, 3);
        const TrackedApp preview =
            tracked(QStringLiteral("Preview"), QStringLiteral("com.example.Preview"));
        QSignalSpy texts(&desktop->scanner, &AppMenuScanner::statusTextChanged);
        QSignalSpy scanning(&desktop->scanner, &AppMenuScanner::isScanningChanged);

        desktop->scanner.scanAndMergeCurrentApp(preview, *store);
        // The flag and the first message are set before the request returns.
        QVERIFY(desktop->scanner.isScanning());
        QCOMPARE(status(), QStringLiteral("Scanning Preview menus..."));
        QCOMPARE(desktop->scanner.statusAppBundleID(), preview.bundleID);
        QVERIFY(desktop->waitForScan());
        QVERIFY(!desktop->scanner.isScanning());
        QCOMPARE(scanning.size(), 2);
        QCOMPARE(texts.size(), 2);
        QCOMPARE(status(), QStringLiteral("Added 3 of 3 discovered shortcuts for Preview."));

        desktop->scanner.scanAndMergeCurrentApp(preview, *store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(),
                 QStringLiteral("Found 3 shortcuts for Preview; they were already in the vault."));
    }

    void currentAppScanCountsOnlyNewOnes()
    {
        addApp(QStringLiteral("Notes"), QStringLiteral("org.notes"), 5, 2);
        const TrackedApp notes = tracked(QStringLiteral("Notes"), QStringLiteral("org.notes"));
        desktop->scanner.scanAndMergeCurrentApp(notes, *store);
        QVERIFY(desktop->waitForScan());
        addApp(QStringLiteral("Notes"), QStringLiteral("org.notes"), 6, 5);
        desktop->workspace.apps.removeFirst();
        desktop->scanner.scanAndMergeCurrentApp(notes, *store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(), QStringLiteral("Added 3 of 5 discovered shortcuts for Notes."));
    }

    void currentAppScanWithNoShortcuts()
    {
        addApp(QStringLiteral("Calculator"), QStringLiteral("org.calc"), 5, 0);
        desktop->scanner.scanAndMergeCurrentApp(
            tracked(QStringLiteral("Calculator"), QStringLiteral("org.calc")), *store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(), QStringLiteral("No menu shortcuts found for Calculator."));
    }

    void currentAppScanReportsErrors()
    {
        desktop->scanner.scanAndMergeCurrentApp(
            tracked(QStringLiteral("Gone"), QStringLiteral("org.gone")), *store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(), QStringLiteral("Gone is not running anymore."));

        desktop->workspace.apps.append(
            makeApp(QStringLiteral("Frozen"), QStringLiteral("org.frozen"), 9));
        desktop->scanner.scanAndMergeCurrentApp(
            tracked(QStringLiteral("Frozen"), QStringLiteral("org.frozen")), *store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(), QStringLiteral("Tessaline could not read the menu bar for Frozen."));
        QVERIFY(desktop->alerts.shown.isEmpty());
    }

    void placeholderMessageIsGeneral()
    {
        addApp(QStringLiteral("B"), QStringLiteral("org.b"), 5, 1);
        desktop->scanner.scanAndMergeCurrentApp(TrackedApp::placeholder(), *store);
        QVERIFY(desktop->waitForScan());
        const QString expected = QStringLiteral("Tessaline could not identify the current app.");
        QCOMPARE(status(), expected);
        QVERIFY(!desktop->scanner.statusAppBundleID());
        QCOMPARE(desktop->scanner.statusText(tracked(QStringLiteral("B"), QStringLiteral("org.b"))),
                 std::optional<QString>(expected));
        QCOMPARE(desktop->scanner.statusText(TrackedApp::placeholder()),
                 std::optional<QString>(expected));
    }

    void statusBelongsToTheScannedApp()
    {
        addApp(QStringLiteral("A"), QStringLiteral("org.a"), 5, 1);
        addApp(QStringLiteral("B"), QStringLiteral("org.b"), 6, 2);
        const TrackedApp a = tracked(QStringLiteral("A"), QStringLiteral("org.a"));
        const TrackedApp b = tracked(QStringLiteral("B"), QStringLiteral("org.b"));
        desktop->scanner.scanAndMergeCurrentApp(a, *store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(desktop->scanner.statusText(a), desktop->scanner.statusText());
        QVERIFY(desktop->scanner.statusText());
        QVERIFY(!desktop->scanner.statusText(b));
        QVERIFY(!desktop->scanner.statusText(TrackedApp::placeholder()));

        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(desktop->waitForScan());
        const QString summary = QStringLiteral(
            "Scanned 2 open apps. Added 2 new shortcuts from 3 found across 2 apps.");
        QCOMPARE(status(), summary);
        QCOMPARE(desktop->scanner.statusText(a), std::optional<QString>(summary));
        QCOMPARE(desktop->scanner.statusText(b), std::optional<QString>(summary));
        QCOMPARE(desktop->scanner.statusText(TrackedApp::placeholder()),
                 std::optional<QString>(summary));
    }

    void currentAppRequestDuringOpenAppsScanIsDropped()
    {
        addApp(QStringLiteral("A"), QStringLiteral("org.a"), 5, 1);
        addApp(QStringLiteral("B"), QStringLiteral("org.b"), 6, 1);
        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(desktop->scanner.isScanning());
        const QString progress = QStringLiteral("Scanning A (1 of 2)...");
        QCOMPARE(status(), progress);
        QSignalSpy texts(&desktop->scanner, &AppMenuScanner::statusTextChanged);
        desktop->scanner.scanAndMergeCurrentApp(
            tracked(QStringLiteral("B"), QStringLiteral("org.b")), *store);
        QCOMPARE(texts.size(), 0);
        QCOMPARE(status(), progress);
        QVERIFY(!desktop->scanner.statusAppBundleID());
        // A second open-apps request is dropped as well.
        desktop->scanner.scanAndMergeOpenApps(*store);
        QCOMPARE(texts.size(), 0);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(),
                 QStringLiteral(
                     "Scanned 2 open apps. Added 2 new shortcuts from 2 found across 2 apps."));
    }

    void openAppsScanShowsProgressPerApp()
    {
        addApp(QStringLiteral("Zed"), QStringLiteral("org.zed"), 5, 2);
        addApp(QStringLiteral("alpha"), QStringLiteral("org.alpha"), 6, 0);
        addApp(QStringLiteral("Mid"), QStringLiteral("org.mid"), 7, 4);
        QStringList seen;
        connect(&desktop->scanner, &AppMenuScanner::statusTextChanged, this,
                [&] { seen.append(status()); });
        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(seen, QStringList({
                           QStringLiteral("Preparing to scan open apps..."),
                           QStringLiteral("Scanning alpha (1 of 3)..."),
                           QStringLiteral("Scanning Mid (2 of 3)..."),
                           QStringLiteral("Scanning Zed (3 of 3)..."),
                           QStringLiteral("Scanned 3 open apps. Added 6 new shortcuts from 6 "
                                          "found across 2 apps."),
                       }));
        // A second pass finds the same and adds nothing.
        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(),
                 QStringLiteral(
                     "Scanned 3 open apps. Added 0 new shortcuts from 6 found across 2 apps."));
    }

    void appThatQuitDuringOpenAppsScanIsSkippedButCounted()
    {
        addApp(QStringLiteral("A"), QStringLiteral("org.a"), 5, 1);
        addApp(QStringLiteral("B"), QStringLiteral("org.b"), 6, 3);
        addApp(QStringLiteral("C"), QStringLiteral("org.c"), 7, 2);
        QStringList seen;
        // B quits after the list was made, while A is being scanned.
        connect(&desktop->scanner, &AppMenuScanner::statusTextChanged, this, [&] {
            seen.append(status());
            if (status() == QStringLiteral("Scanning A (1 of 3)..."))
                desktop->workspace.apps.removeAt(1);
        });
        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(desktop->waitForScan());
        QVERIFY(seen.contains(QStringLiteral("Scanning B (2 of 3)...")));
        QCOMPARE(seen.last(),
                 QStringLiteral(
                     "Scanned 2 open apps. Added 3 new shortcuts from 3 found across 2 apps."));
        QVERIFY(!seen.contains(QStringLiteral("B is not running anymore.")));
    }

    void openAppsScanWithNothingToScan()
    {
        // Only Tessaline itself, a non-regular app and one without a bundle id.
        desktop->workspace.apps.append(
            makeApp(QStringLiteral("Tessaline"), QStringLiteral("org.tessaline.Tessaline"), 2));
        RunningApplication agent = makeApp(QStringLiteral("Agent"), QStringLiteral("org.agent"), 3);
        agent.isRegular = false;
        desktop->workspace.apps.append(agent);
        desktop->workspace.apps.append(
            RunningApplication{QStringLiteral("Anon"), std::nullopt, 4, true});
        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(!desktop->scanner.isScanning());
        QCOMPARE(status(), QStringLiteral("No open apps with menu bars were found."));
        QVERIFY(!desktop->scanner.statusAppBundleID());
    }

    void scannableRunningAppsFiltersAndSorts()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        desktop->workspace.apps = {
            makeApp(QStringLiteral("zebra"), QStringLiteral("org.zebra"), 1),
            makeApp(QStringLiteral("Tessaline"), QStringLiteral("org.tessaline.Tessaline"), 2),
            RunningApplication{std::nullopt, QStringLiteral("org.unnamed"), 3, true},
            makeApp(QStringLiteral("Écran"), QStringLiteral("org.ecran"), 4),
            makeApp(QStringLiteral("Zebra Two"), QStringLiteral("org.zebra"), 5),
            RunningApplication{QStringLiteral("Dock"), QStringLiteral("org.dock"), 6, false},
            RunningApplication{QStringLiteral("NoId"), std::nullopt, 7, true},
            makeApp(QStringLiteral("apple"), QStringLiteral("org.apple"), 8),
        };
        const QList<TrackedApp> apps = desktop->scanner.scannableRunningApps();
        QCOMPARE(apps, QList<TrackedApp>({
                           tracked(QStringLiteral("apple"), QStringLiteral("org.apple")),
                           tracked(QStringLiteral("Écran"), QStringLiteral("org.ecran")),
                           tracked(QStringLiteral("org.unnamed"), QStringLiteral("org.unnamed")),
                           tracked(QStringLiteral("zebra"), QStringLiteral("org.zebra")),
                       }));
    }

    void missingPermissionOnCurrentAppScanPrompts()
    {
        addApp(QStringLiteral("A"), QStringLiteral("org.a"), 5, 1);
        desktop->trust.trusted = false;
        desktop->scanner.scanAndMergeCurrentApp(
            tracked(QStringLiteral("A"), QStringLiteral("org.a")), *store);
        QVERIFY(desktop->waitForScan());
        QCOMPARE(status(), QStringLiteral("Accessibility permission is needed to scan app menus."));
        QCOMPARE(desktop->alerts.shown.size(), 1);
        QCOMPARE(desktop->alerts.shown.first().message,
                 QStringLiteral("Accessibility permission needed"));
        QCOMPARE(desktop->alerts.shown.first().informativeText, kPermissionText);
        QCOMPARE(desktop->alerts.shown.first().buttons,
                 QStringList({QStringLiteral("Turn On Accessibility"), QStringLiteral("Cancel")}));
        QCOMPARE(desktop->trust.requests, 1);
    }

    void missingPermissionOnOpenAppsScanPrompts()
    {
        addApp(QStringLiteral("A"), QStringLiteral("org.a"), 5, 1);
        desktop->trust.trusted = false;
        desktop->alerts.response = AlertPresenter::kFirstButton + 1; // Cancel
        desktop->scanner.scanAndMergeOpenApps(*store);
        QVERIFY(!desktop->scanner.isScanning());
        QCOMPARE(status(), QStringLiteral("Accessibility permission is needed to scan open apps."));
        QCOMPARE(desktop->alerts.shown.size(), 1);
        QCOMPARE(desktop->trust.requests, 0);
        QVERIFY(desktop->elements.requested.isEmpty());
    }

    void promptOpensTheRequestOnlyOnTheFirstButton()
    {
        desktop->scanner.promptForAccessibility();
        QCOMPARE(desktop->trust.requests, 1);
        desktop->alerts.response = AlertPresenter::kFirstButton + 1;
        desktop->scanner.promptForAccessibility();
        QCOMPARE(desktop->trust.requests, 1);
        QCOMPARE(desktop->alerts.shown.size(), 2);
    }

    void scannerGoneBeforeTheScanContinuesDoesNothing()
    {
        addApp(QStringLiteral("A"), QStringLiteral("org.a"), 5, 1);
        // A scanner of its own over the same desktop, to destroy mid-scan.
        auto scanner = std::make_unique<AppMenuScanner>(desktop->workspace, desktop->trust,
                                                        desktop->elements, desktop->alerts);
        scanner->scanAndMergeCurrentApp(tracked(QStringLiteral("A"), QStringLiteral("org.a")),
                                        *store);
        scanner.reset();
        QTest::qWait(20);
        QVERIFY(desktop->elements.requested.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestAppMenuScanner)
#include "tst_AppMenuScanner.moc"
