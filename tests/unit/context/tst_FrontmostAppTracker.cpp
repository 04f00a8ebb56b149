// SPDX-License-Identifier: MIT
#include "context/FrontmostAppTracker.h"
#include "settings/DefaultsStore.h"

#include "FakeWorkspace.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using Tessaline::DefaultsStore;
using Tessaline::FrontmostAppTracker;
using Tessaline::RunningApplication;
using Tessaline::TrackedApp;
using Tessaline::Testing::FakeWorkspace;
using Tessaline::Testing::makeApp;

namespace {

const QString kNameKey = QStringLiteral("FrontmostAppTracker.lastAppName");
const QString kBundleKey = QStringLiteral("FrontmostAppTracker.lastBundleID");

TrackedApp tracked(const QString& name, const std::optional<QString>& bundleID)
{
    return TrackedApp{name, bundleID};
}

/// A workspace that also tells how many subscriptions its activation signal has.
class CountingWorkspace final : public Tessaline::Workspace
{
public:
    std::optional<RunningApplication> frontmostApplication() const override { return {}; }
    QList<RunningApplication> runningApplications() const override { return {}; }
    bool activate(const RunningApplication&) override { return false; }

    int activationSubscriptions() const
    {
        const QByteArray signature =
            "2" + QMetaMethod::fromSignal(&Workspace::applicationActivated).methodSignature();
        return receivers(signature.constData());
    }
    void announce(const RunningApplication& app) { emit applicationActivated(app); }
};

RunningApplication tessalineItself()
{
    return makeApp(QStringLiteral("Tessaline"), QStringLiteral("org.tessaline.Tessaline"), 42);
}

} // namespace

class TestFrontmostAppTracker : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstLaunchWithTessalineFrontmostIsThePlaceholder();
    void startTakesTheFrontmostApp();
    void activationIsAcceptedAfterTheNotificationReturns();
    void acceptedAppIsSavedAndRestoredByANewTracker();
    void appWithoutLocalizedNameIsStoredAsMac();
    void appWithoutBundleIDRemovesTheSavedBundleID();
    void ignoredActivationsLeaveCurrentAndDefaultsAlone_data();
    void ignoredActivationsLeaveCurrentAndDefaultsAlone();
    void appWithoutBundleIDIsIgnoredWhenTessalineHasNone();
    void savedEmptyNameCountsAsNothingSaved();
    void savedNameWithoutBundleIDRestoresWithoutOne();
    void sameAppAgainIsPublishedAgain();
    void currentIsAReadableProperty();
    void startingAgainReplacesTheSubscription();
    void destroyedTrackerStopsListening();
    void trackerDestroyedBeforeAQueuedActivationIgnoresIt();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<DefaultsStore> m_defaults;
    FakeWorkspace m_workspace;

    void reopenDefaults()
    {
        m_defaults.reset();
        m_defaults = std::make_unique<DefaultsStore>(m_dir->filePath(QStringLiteral("d.json")));
    }
};

void TestFrontmostAppTracker::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    reopenDefaults();
    m_workspace.apps.clear();
    m_workspace.frontmost.reset();
    m_workspace.ownBundleID = QStringLiteral("org.tessaline.Tessaline");
}

void TestFrontmostAppTracker::cleanup()
{
    m_defaults.reset();
    m_dir.reset();
}

void TestFrontmostAppTracker::firstLaunchWithTessalineFrontmostIsThePlaceholder()
{
    m_workspace.frontmost = tessalineItself();
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    QCOMPARE(tracker.current(), tracked(QStringLiteral("Desktop"), std::nullopt));

    QSignalSpy changes(&tracker, &FrontmostAppTracker::currentChanged);
    tracker.start();
    QCoreApplication::processEvents();
    QCOMPARE(changes.count(), 0);
    QCOMPARE(tracker.current(), tracked(QStringLiteral("Desktop"), std::nullopt));
    QVERIFY(!m_defaults->contains(kNameKey));
    QVERIFY(!m_defaults->contains(kBundleKey));
}

void TestFrontmostAppTracker::startTakesTheFrontmostApp()
{
    m_workspace.frontmost =
        makeApp(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad"));
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    QSignalSpy changes(&tracker, &FrontmostAppTracker::currentChanged);
    tracker.start();
    // The frontmost app at start is taken at once, not from the event loop.
    QCOMPARE(changes.count(), 1);
    QCOMPARE(tracker.current(),
             tracked(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")));
}

void TestFrontmostAppTracker::activationIsAcceptedAfterTheNotificationReturns()
{
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();
    QSignalSpy changes(&tracker, &FrontmostAppTracker::currentChanged);

    m_workspace.activateAndAnnounce(
        makeApp(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));
    // Still inside the notification's turn of the event loop: nothing changed yet.
    QCOMPARE(changes.count(), 0);
    QCOMPARE(tracker.current(), TrackedApp::placeholder());

    QTRY_COMPARE(changes.count(), 1);
    QCOMPARE(tracker.current(), tracked(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));
}

void TestFrontmostAppTracker::acceptedAppIsSavedAndRestoredByANewTracker()
{
    {
        FrontmostAppTracker tracker(m_workspace, *m_defaults);
        tracker.start();
        m_workspace.activateAndAnnounce(
            makeApp(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")));
        QTRY_COMPARE(tracker.current().name, QStringLiteral("Mousepad"));
    }
    QCOMPARE(m_defaults->stringValue(kNameKey), std::optional<QString>(QStringLiteral("Mousepad")));
    QCOMPARE(m_defaults->stringValue(kBundleKey),
             std::optional<QString>(QStringLiteral("org.xfce.mousepad")));

    // A restart: the defaults are read back from the file by a fresh tracker, which keeps the
    // saved app while Tessaline itself is in front.
    reopenDefaults();
    m_workspace.frontmost = tessalineItself();
    FrontmostAppTracker restarted(m_workspace, *m_defaults);
    QCOMPARE(restarted.current(),
             tracked(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")));
    restarted.start();
    QCoreApplication::processEvents();
    QCOMPARE(restarted.current(),
             tracked(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")));
}

void TestFrontmostAppTracker::appWithoutLocalizedNameIsStoredAsMac()
{
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();
    RunningApplication nameless = makeApp(QString(), QStringLiteral("org.example.Nameless"));
    nameless.localizedName.reset();
    m_workspace.activateAndAnnounce(nameless);
    QTRY_COMPARE(tracker.current(),
                 tracked(QStringLiteral("Desktop"), QStringLiteral("org.example.Nameless")));
    QCOMPARE(m_defaults->stringValue(kNameKey), std::optional<QString>(QStringLiteral("Desktop")));
    QCOMPARE(m_defaults->stringValue(kBundleKey),
             std::optional<QString>(QStringLiteral("org.example.Nameless")));
}

void TestFrontmostAppTracker::appWithoutBundleIDRemovesTheSavedBundleID()
{
    m_defaults->setString(kNameKey, QStringLiteral("Mousepad"));
    m_defaults->setString(kBundleKey, QStringLiteral("org.xfce.mousepad"));
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();

    RunningApplication unidentified = makeApp(QStringLiteral("Scratch"), QString());
    unidentified.bundleIdentifier.reset();
    m_workspace.activateAndAnnounce(unidentified);
    QTRY_COMPARE(tracker.current(), tracked(QStringLiteral("Scratch"), std::nullopt));
    QCOMPARE(m_defaults->stringValue(kNameKey), std::optional<QString>(QStringLiteral("Scratch")));
    QVERIFY(!m_defaults->contains(kBundleKey));
}

void TestFrontmostAppTracker::ignoredActivationsLeaveCurrentAndDefaultsAlone_data()
{
    QTest::addColumn<std::optional<RunningApplication>>("activated");

    RunningApplication accessory = makeApp(QStringLiteral("Panel"), QStringLiteral("tint2"));
    accessory.isRegular = false;
    QTest::addRow("accessory app") << std::optional<RunningApplication>(accessory);
    QTest::addRow("Tessaline's own window") << std::optional<RunningApplication>(tessalineItself());
    QTest::addRow("unidentifiable window") << std::optional<RunningApplication>();
}

void TestFrontmostAppTracker::ignoredActivationsLeaveCurrentAndDefaultsAlone()
{
    QFETCH(std::optional<RunningApplication>, activated);

    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();
    m_workspace.activateAndAnnounce(
        makeApp(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")));
    QTRY_COMPARE(tracker.current().name, QStringLiteral("Mousepad"));
    // Stand-in values in the defaults show that the ignored activation does not write them.
    m_defaults->setString(kNameKey, QStringLiteral("marker"));
    m_defaults->setString(kBundleKey, QStringLiteral("marker.id"));

    QSignalSpy changes(&tracker, &FrontmostAppTracker::currentChanged);
    m_workspace.activateAndAnnounce(activated);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();

    QCOMPARE(changes.count(), 0);
    QCOMPARE(tracker.current(),
             tracked(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")));
    QCOMPARE(m_defaults->stringValue(kNameKey), std::optional<QString>(QStringLiteral("marker")));
    QCOMPARE(m_defaults->stringValue(kBundleKey),
             std::optional<QString>(QStringLiteral("marker.id")));
}

void TestFrontmostAppTracker::appWithoutBundleIDIsIgnoredWhenTessalineHasNone()
{
    // Two absent bundle ids count as equal: the app is taken for Tessaline itself.
    m_workspace.ownBundleID.reset();
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();
    RunningApplication unidentified = makeApp(QStringLiteral("Scratch"), QString());
    unidentified.bundleIdentifier.reset();
    QSignalSpy changes(&tracker, &FrontmostAppTracker::currentChanged);
    m_workspace.activateAndAnnounce(unidentified);
    QCoreApplication::processEvents();
    QCOMPARE(changes.count(), 0);
    QCOMPARE(tracker.current(), TrackedApp::placeholder());

    // An app with a bundle id is still followed.
    m_workspace.activateAndAnnounce(
        makeApp(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));
    QTRY_COMPARE(tracker.current(),
                 tracked(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));
}

void TestFrontmostAppTracker::savedEmptyNameCountsAsNothingSaved()
{
    m_defaults->setString(kNameKey, QString());
    m_defaults->setString(kBundleKey, QStringLiteral("org.xfce.mousepad"));
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    QCOMPARE(tracker.current(), tracked(QStringLiteral("Desktop"), std::nullopt));
}

void TestFrontmostAppTracker::savedNameWithoutBundleIDRestoresWithoutOne()
{
    m_defaults->setString(kNameKey, QStringLiteral("Scratch"));
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    QCOMPARE(tracker.current(), tracked(QStringLiteral("Scratch"), std::nullopt));
}

void TestFrontmostAppTracker::sameAppAgainIsPublishedAgain()
{
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();
    QSignalSpy changes(&tracker, &FrontmostAppTracker::currentChanged);
    const RunningApplication mousepad =
        makeApp(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad"));
    m_workspace.activateAndAnnounce(mousepad);
    QTRY_COMPARE(changes.count(), 1);
    m_workspace.activateAndAnnounce(mousepad);
    QTRY_COMPARE(changes.count(), 2);
    QCOMPARE(tracker.current(),
             tracked(QStringLiteral("Mousepad"), QStringLiteral("org.xfce.mousepad")));
}

void TestFrontmostAppTracker::currentIsAReadableProperty()
{
    m_workspace.frontmost = makeApp(QStringLiteral("XTerm"), QStringLiteral("debian-xterm"));
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();
    const QVariant value = tracker.property("current");
    QVERIFY(value.isValid());
    const auto app = value.value<TrackedApp>();
    QCOMPARE(app, tracked(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));

    // Views read the fields through the gadget's properties.
    const QMetaObject& meta = TrackedApp::staticMetaObject;
    const QMetaProperty name = meta.property(meta.indexOfProperty("name"));
    const QMetaProperty bundleID = meta.property(meta.indexOfProperty("bundleID"));
    QCOMPARE(name.readOnGadget(&app).toString(), QStringLiteral("XTerm"));
    QCOMPARE(bundleID.readOnGadget(&app).toString(), QStringLiteral("debian-xterm"));
    const TrackedApp placeholder = TrackedApp::placeholder();
    QCOMPARE(bundleID.readOnGadget(&placeholder).toString(), QString());
}

void TestFrontmostAppTracker::startingAgainReplacesTheSubscription()
{
    FrontmostAppTracker tracker(m_workspace, *m_defaults);
    tracker.start();
    tracker.start();
    QSignalSpy changes(&tracker, &FrontmostAppTracker::currentChanged);
    m_workspace.activateAndAnnounce(
        makeApp(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));
    QTRY_COMPARE(changes.count(), 1);
    // Give a second, stale subscription every chance to deliver.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(changes.count(), 1);
}

void TestFrontmostAppTracker::destroyedTrackerStopsListening()
{
    CountingWorkspace workspace;
    {
        FrontmostAppTracker tracker(workspace, *m_defaults);
        QCOMPARE(workspace.activationSubscriptions(), 0);
        tracker.start();
        QCOMPARE(workspace.activationSubscriptions(), 1);
        tracker.start();
        QCOMPARE(workspace.activationSubscriptions(), 1);
    }
    QCOMPARE(workspace.activationSubscriptions(), 0);
    workspace.announce(makeApp(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));
    QCoreApplication::processEvents();
    QVERIFY(!m_defaults->contains(kNameKey));
}

void TestFrontmostAppTracker::trackerDestroyedBeforeAQueuedActivationIgnoresIt()
{
    {
        FrontmostAppTracker tracker(m_workspace, *m_defaults);
        tracker.start();
        m_workspace.activateAndAnnounce(
            makeApp(QStringLiteral("XTerm"), QStringLiteral("debian-xterm")));
    }
    // The queued accept must not run on the destroyed tracker (ASan would report it) nor save.
    QCoreApplication::processEvents();
    QVERIFY(!m_defaults->contains(kNameKey));
}

QTEST_GUILESS_MAIN(TestFrontmostAppTracker)
#include "tst_FrontmostAppTracker.moc"
