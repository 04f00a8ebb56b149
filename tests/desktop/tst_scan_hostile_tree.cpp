// SPDX-License-Identifier: MIT
// The menu snapshot reader against a tree that loops back on itself and goes 5000 levels
// deep: it ends, keeps each object once, stops at its depth limit and still reads the
// shortcuts within reach.
#include "FakeAccessibilityTrust.h"
#include "FakeAlertPresenter.h"
#include "FakeWorkspace.h"
#include "platform/AccessibilityElementFactory.h"
#include "platform/atspi/AtspiMenuSnapshot.h"
#include "platform/atspi/AtspiSnapshotElement.h"
#include "platform/atspi/AtspiWalkState.h"
#include "scan/AppMenuScanner.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTest>

using namespace Tessaline;
using namespace Tessaline::Testing;

namespace {

const QString kService = QStringLiteral("org.tessaline.FakeMenuTree");

// Hands out the fake application's element for any process id.
class FakeTreeFactory final : public AccessibilityElementFactory
{
public:
    AccessibilityElementPtr applicationElement(qint64) override
    {
        return std::make_shared<AtspiSnapshotElement>(
            QDBusConnection::sessionBus(),
            AtspiReference{kService,
                           QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root"))},
            500);
    }
};

} // namespace

class TestScanHostileTree : public QObject
{
    Q_OBJECT

    QProcess server;

private Q_SLOTS:
    void initTestCase()
    {
        AtspiBus::registerTypes();
        server.setProgram(QCoreApplication::applicationDirPath() +
                          QStringLiteral("/scan_fake_menu_tree"));
        server.start();
        QVERIFY(server.waitForStarted(5000));
        QTRY_VERIFY_WITH_TIMEOUT(
            QDBusConnection::sessionBus().interface()->isServiceRegistered(kService), 10000);
    }

    void cleanupTestCase()
    {
        server.terminate();
        server.waitForFinished(5000);
    }

    void snapshotEndsWithinLimits()
    {
        const auto snapshot = AtspiMenuSnapshot::read(
            QDBusConnection::sessionBus(),
            AtspiReference{kService,
                           QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root"))},
            500);
        QVERIFY(snapshot);
        // Menu bar, File, Save, Loop, Again and the chain down to the depth limit, each once.
        const qsizetype expected = 5 + (AtspiWalkState::kMaxDepth - 1);
        QCOMPARE(snapshot->nodes().size(), expected);
        QCOMPARE(snapshot->nodes().first().children.size(), 1);
    }

    void scanFindsTheShortcutsWithinReach()
    {
        FakeWorkspace workspace;
        workspace.apps = {makeApp(QStringLiteral("Fake"), QStringLiteral("org.fake"), 99)};
        FakeAccessibilityTrust trust;
        FakeTreeFactory elements;
        FakeAlertPresenter alerts;
        AppMenuScanner scanner(workspace, trust, elements, alerts);
        const ScanOutcome outcome =
            scanner.scan(TrackedApp{QStringLiteral("Fake"), QStringLiteral("org.fake")});
        const auto* result = std::get_if<ScanResult>(&outcome);
        QVERIFY(result);
        QStringList lines;
        for (const ShortcutItem& item : result->shortcuts)
            lines.append(item.name + QStringLiteral(" = ") + item.chord + QStringLiteral(" @ ") +
                         item.menu.value_or(QString()));
        QCOMPARE(lines, QStringList({
                            QStringLiteral("Again = ⌃ G @ File > Loop"),
                            QStringLiteral("Level 0 = ⌃ F1 @ File"),
                            QStringLiteral("Level 1 = ⌃ F2 @ File > Level 0"),
                            QStringLiteral("Level 2 = ⌃ F3 @ File > Level 0 > Level 1"),
                            QStringLiteral("Save = ⌃ S @ File"),
                        }));
    }
};

QTEST_GUILESS_MAIN(TestScanHostileTree)
#include "tst_scan_hostile_tree.moc"
