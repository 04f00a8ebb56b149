// SPDX-License-Identifier: MIT
// The application root on a faked desktop: the welcome window at launch, the HUD toggle and
// where the HUD panel goes.
#include "AppDelegate.h"
#include "FakeAccessibilityElement.h"
#include "FakeAccessibilityTrust.h"
#include "FakeAlertPresenter.h"
#include "FakeClipboard.h"
#include "FakeClock.h"
#include "FakeCoachTipPresenter.h"
#include "FakeDesktopKeySettings.h"
#include "FakeHotKeyService.h"
#include "FakeKeyInjector.h"
#include "FakeSystemKeyMonitor.h"
#include "FakeTrayAppearance.h"
#include "FakeWindowHints.h"
#include "FakeWorkspace.h"
#include "FloatingPanel.h"
#include "ManualScheduler.h"
#include "ShortcutListModel.h"
#include "SymbolImageProvider.h"
#include "WindowPlacement.h"
#include "settings/DefaultsStore.h"

#include <hotkey/HotKeysController.h>

#include <QAbstractItemModel>
#include <QGuiApplication>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

using namespace Tessaline;
using namespace Tessaline::Testing;

namespace {

// The titles of the application's windows.
constexpr const char* kWelcome = "Welcome to Tessaline";
constexpr const char* kSettings = "Tessaline Settings";
constexpr const char* kBrowser = "All Tessaline Shortcuts";

} // namespace

class TestAppDelegate : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    FakeWorkspace m_workspace;
    FakeAccessibilityTrust m_trust;
    FakeAccessibilityElementFactory m_elements;
    FakeAlertPresenter m_alerts;
    FakeSystemKeyMonitor m_keyMonitor;
    FakeCoachTipPresenter m_tipPresenter;
    FakeDesktopKeySettings m_keySettings;
    FakeClipboard m_clipboard;
    FakeKeyInjector m_keyInjector;
    FakeWindowHints m_windowHints;
    FakeTrayAppearance m_trayAppearance;
    FakeClock m_clock;
    ManualScheduler m_scheduler;
    FakeHotKeyService m_hotKeyService;
    std::unique_ptr<DefaultsStore> m_defaults;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<AppDelegate> m_delegate;

    void launch(AppDelegate::Launch how = AppDelegate::Launch::ByUser)
    {
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
        m_delegate = std::make_unique<AppDelegate>(AppDelegate::Platform{
            m_workspace, m_trust, m_elements, m_alerts, m_keyMonitor, m_tipPresenter, m_clipboard,
            m_keyInjector, m_windowHints, m_clock, m_scheduler, *m_defaults, *m_engine,
            m_keySettings, m_trayAppearance});
        m_delegate->applicationDidFinishLaunching(how);
    }

    // The HUD on screen, found as the user sees it: the visible floating panel.
    static FloatingPanel* hud()
    {
        for (QWindow* window : QGuiApplication::topLevelWindows()) {
            auto* panel = qobject_cast<FloatingPanel*>(window);
            if (panel && panel->isVisible())
                return panel;
        }
        return nullptr;
    }

    // The open window with this title.
    static QQuickView* window(const char* title)
    {
        for (QWindow* window : QGuiApplication::topLevelWindows()) {
            auto* view = qobject_cast<QQuickView*>(window);
            if (view && view->isVisible() && view->title() == QLatin1String(title))
                return view;
        }
        return nullptr;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        HotKey::HotKeysController::setService(&m_hotKeyService);
        m_defaults = std::make_unique<DefaultsStore>(m_dir->filePath(QStringLiteral("d.json")));
        m_workspace.frontmost =
            makeApp(QStringLiteral("Editor"), QStringLiteral("org.example.Editor"), 42);
        m_trust.trusted = true;
        m_windowHints.skippedTaskbar.clear();
    }

    void cleanup()
    {
        if (m_delegate)
            m_delegate->applicationWillTerminate();
        m_delegate.reset();
        m_engine.reset();
        m_defaults.reset();
        HotKey::HotKeysController::setService(nullptr);
        m_dir.reset();
    }

    void welcomeWindowOpensUntilOnboardingIsCompleted()
    {
        launch();
        QQuickView* welcome = window(kWelcome);
        QVERIFY(welcome);
        QVERIFY(welcome->isVisible());
        QVERIFY(welcome->rootObject());
        // Finishing it from its button writes the flag.
        QVERIFY(QMetaObject::invokeMethod(welcome->rootObject(), "complete"));
        QCOMPARE(m_defaults->boolValue(QStringLiteral("Onboarding.completed")),
                 std::optional<bool>(true));
    }

    void noWindowAtLaunchOnceOnboardingIsCompleted()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), true);
        launch();
        QVERIFY(!window(kWelcome));
        QVERIFY(!window(kSettings));
        QVERIFY(!hud());
    }

    void startAtLoginOpensNoWindowEvenBeforeOnboarding()
    {
        launch(AppDelegate::Launch::AtLogin);
        QVERIFY(!window(kWelcome));
        QVERIFY(!window(kSettings));
        QVERIFY(!hud());
        QVERIFY(!m_defaults->contains(QStringLiteral("Onboarding.completed")));
        // The HUD is still reachable as after any other start.
        m_delegate->toggleHUD();
        QVERIFY(hud());
    }

    void falseFlagStillShowsTheWelcomeWindow()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), false);
        launch();
        QVERIFY(window(kWelcome));
    }

    void togglingShowsThenHidesAndDropsThePanel()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), true);
        launch();
        m_delegate->toggleHUD();
        QPointer<FloatingPanel> first = hud();
        QVERIFY(first);
        QVERIFY(first->isVisible());
        QVERIFY(first->rootObject());
        QCOMPARE(first->size(), QSize(720, 560));
        QCOMPARE(first->position(),
                 WindowPlacement::centeredOrigin(WindowPlacement::areaUnderMouse(), first->size()));
        // The HUD is a panel: the window manager is asked to keep it out of the taskbar.
        QCOMPARE(m_windowHints.skippedTaskbar, QList<const QWindow*>{first.data()});

        m_delegate->toggleHUD();
        QVERIFY(!hud());
        QVERIFY(QTest::qWaitFor([&first] { return first.isNull(); }, 2000));

        m_delegate->toggleHUD();
        QVERIFY(hud());
        QVERIFY(hud()->isVisible());
        QCOMPARE(m_windowHints.skippedTaskbar.size(), 2);
        QCOMPARE(m_windowHints.skippedTaskbar.last(), static_cast<const QWindow*>(hud()));
    }

    void hudShowsTheAppThatWasInFront()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), true);
        launch();
        m_delegate->showHUD();
        QQuickItem* root = hud()->rootObject();
        QVERIFY(root);
        QObject* model = root->property("model").value<QObject*>();
        QVERIFY(model);
        QCOMPARE(model->property("appName").toString(), QStringLiteral("Editor"));
    }

    void arrowsAndReturnInTheHUDCopyTheSelectedChord()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), true);
        launch();
        m_delegate->showHUD();
        FloatingPanel* panel = hud();
        QVERIFY(QTest::qWaitForWindowActive(panel));
        QObject* model = panel->rootObject()->property("model").value<QObject*>();
        QObject* navigator = panel->rootObject()->property("navigator").value<QObject*>();
        auto* rows = model->property("rows").value<QAbstractItemModel*>();
        QVERIFY(rows && rows->rowCount() >= 2);
        const QString second = rows->index(1, 0).data(ShortcutListModel::ChordRole).toString();

        // Return with nothing selected copies nothing.
        QTest::keyClick(panel, Qt::Key_Return);
        QVERIFY(!m_clipboard.content);
        QTest::keyClick(panel, Qt::Key_Down);
        QTest::keyClick(panel, Qt::Key_Down);
        QCOMPARE(navigator->property("selection").toInt(), 1);
        QTest::keyClick(panel, Qt::Key_Return);
        QCOMPARE(m_clipboard.content, std::optional<QString>(second));
        // The HUD stays open after a copy.
        QCOMPARE(hud(), panel);
        QVERIFY(panel->isVisible());

        // "/" brings the focus back to the search field and types nothing.
        auto* search = panel->rootObject()->findChild<QQuickItem*>(QStringLiteral("searchField"));
        QVERIFY(search);
        panel->rootObject()->forceActiveFocus();
        QVERIFY(!search->hasActiveFocus());
        QTest::keyClick(panel, Qt::Key_Slash);
        QVERIFY(search->hasActiveFocus());
        QCOMPARE(search->property("text").toString(), QString());
        QCOMPARE(navigator->property("searchFocusRequest").toInt(), 1);
        // Typing goes to the search field and clears the selection.
        QTest::keyClick(panel, Qt::Key_C);
        QCOMPARE(model->property("filter").toString(), QStringLiteral("c"));
        QCOMPARE(navigator->property("selection").toInt(), -1);
    }

    void closeFromTheViewClosesTheHUD()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), true);
        launch();
        m_delegate->showHUD();
        QPointer<FloatingPanel> panel = hud();
        QVERIFY(QMetaObject::invokeMethod(panel->rootObject(), "close"));
        QVERIFY(!hud());
        QVERIFY(QTest::qWaitFor([&panel] { return panel.isNull(); }, 2000));
    }

    void commandsFromTheViewsReachTheApplication()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), true);
        launch();
        m_delegate->showHUD();
        QPointer<FloatingPanel> panel = hud();
        QVERIFY(panel && panel->rootObject());

        QVERIFY(QMetaObject::invokeMethod(panel->rootObject(), "settings"));
        QVERIFY(window(kSettings));
        QVERIFY(QMetaObject::invokeMethod(panel->rootObject(), "browseAll"));
        QQuickView* browser = window(kBrowser);
        QVERIFY(browser && browser->rootObject());

        // The browser's open-apps scan runs, and ends with the browser in front again.
        auto* model = browser->rootObject()->property("model").value<QObject*>();
        QVERIFY(model);
        QVERIFY(model->property("statusText").toString().isEmpty());
        QVERIFY(QMetaObject::invokeMethod(browser->rootObject(), "scanOpenApps"));
        QTRY_VERIFY(!model->property("isScanning").toBool() &&
                    !model->property("statusText").toString().isEmpty());
        QCOMPARE(window(kBrowser), browser);

        // A helper chosen in the HUD closes it.
        QVERIFY(QMetaObject::invokeMethod(
            panel->rootObject(), "helperAction",
            Q_ARG(QString, TextHelperActions::rawValue(TextHelperAction::Bullet))));
        QVERIFY(!hud());
        QVERIFY(QTest::qWaitFor([&panel] { return panel.isNull(); }, 2000));
    }

    void helperClosesTheHUDAndPastesNothingWithoutPermission()
    {
        m_defaults->setBool(QStringLiteral("Onboarding.completed"), true);
        launch();
        m_delegate->showHUD();
        QVERIFY(hud());
        m_trust.trusted = false;
        m_delegate->performHelper(TextHelperAction::Bullet);
        QVERIFY(!hud());
        m_scheduler.advance(5000);
        QTest::qWait(10);
        QCOMPARE(m_keyInjector.posts, 0);

        // With the permission the same helper does paste.
        m_trust.trusted = true;
        m_delegate->performHelper(TextHelperAction::Bullet);
        m_scheduler.advance(5000);
        QTest::qWait(10);
        m_scheduler.advance(5000);
        QCOMPARE(m_keyInjector.posts, 1);
    }
};

QTEST_MAIN(TestAppDelegate)
#include "tst_AppDelegate.moc"
