// SPDX-License-Identifier: MIT
// The presenter of the settings, browser and welcome windows: one window per kind, forgetting on
// close, and the order of the steps that finish the welcome window.
#include "AppTestSupport.h"
#include "AppWindowPresenter.h"
#include "FakeAccessibilityTrust.h"
#include "FakeHotKeyService.h"
#include "ManualScheduler.h"
#include "SettingsModel.h"
#include "SymbolImageProvider.h"
#include "hotkeys/HotkeyManager.h"
#include "settings/DefaultsStore.h"

#include <hotkey/HotKeysController.h>

#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

using namespace Tessaline;
using Kind = AppWindowPresenter::Kind;

class TestAppWindowPresenter : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Testing::FakeHotKeyService> m_service;
    std::unique_ptr<DefaultsStore> m_defaults;
    Testing::ManualScheduler m_scheduler;
    std::unique_ptr<VaultStore> m_store;
    std::unique_ptr<HotkeyManager> m_hotkeys;
    std::unique_ptr<KeyNamePreference> m_keyNames;
    Testing::FakeAccessibilityTrust m_trust;
    std::unique_ptr<SettingsModel> m_settings;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<AppWindowPresenter> m_presenter;

    QVariantMap settingsProperties() const
    {
        return {{QStringLiteral("model"), QVariant::fromValue<QObject*>(m_settings.get())}};
    }

    QQuickItem* startButton(QQuickView& view) const
    {
        return view.rootObject()
                   ? view.rootObject()->findChild<QQuickItem*>(QStringLiteral("startButton"))
                   : nullptr;
    }

    static bool forgotten(const QPointer<QQuickView>& window)
    {
        // A closed window is deleted on the next event-loop turn.
        return QTest::qWaitFor([&window] { return window.isNull(); }, 2000);
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_service = std::make_unique<Testing::FakeHotKeyService>();
        HotKey::HotKeysController::setService(m_service.get());
        m_defaults = std::make_unique<DefaultsStore>(m_dir->filePath(QStringLiteral("d.json")));
        m_store = std::make_unique<VaultStore>(AppTestSupport::writeVault(*m_dir, VaultData{}));
        m_hotkeys = std::make_unique<HotkeyManager>(*m_defaults, m_scheduler, [] {});
        m_keyNames = std::make_unique<KeyNamePreference>(*m_defaults);
        m_settings =
            std::make_unique<SettingsModel>(*m_store, m_hotkeys.get(), *m_keyNames, m_trust);
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
        m_presenter = std::make_unique<AppWindowPresenter>(*m_engine, *m_defaults);
    }

    void cleanup()
    {
        m_presenter.reset();
        m_engine.reset();
        m_settings.reset();
        m_keyNames.reset();
        m_hotkeys.reset();
        m_store.reset();
        m_defaults.reset();
        HotKey::HotKeysController::setService(nullptr);
        m_service.reset();
        m_dir.reset();
    }

    void noWindowBeforeTheFirstRequest()
    {
        QVERIFY(!m_presenter->window(Kind::Settings));
        QVERIFY(!m_presenter->window(Kind::Browser));
        QVERIFY(!m_presenter->window(Kind::Onboarding));
    }

    void showingSettingsTwiceYieldsOneWindow()
    {
        QSignalSpy created(m_presenter.get(), &AppWindowPresenter::windowCreated);
        m_presenter->showSettings(settingsProperties());
        QQuickView* first = m_presenter->window(Kind::Settings);
        QVERIFY(first);
        QVERIFY(first->isVisible());
        QVERIFY2(first->rootObject(), "the settings view was not built");
        QCOMPARE(first->title(), QStringLiteral("Tessaline Settings"));
        QCOMPARE(first->size(), QSize(560, 520));

        m_presenter->showSettings(settingsProperties());
        QCOMPARE(m_presenter->window(Kind::Settings), first);
        QVERIFY(first->isVisible());
        QCOMPARE(created.count(), 1);
        QCOMPARE(created.at(0).at(0).value<Kind>(), Kind::Settings);
        QVERIFY(!m_presenter->window(Kind::Browser));
    }

    void closingForgetsTheWindowAndTheNextRequestBuildsANewOne()
    {
        QSignalSpy created(m_presenter.get(), &AppWindowPresenter::windowCreated);
        m_presenter->showSettings(settingsProperties());
        QPointer<QQuickView> first = m_presenter->window(Kind::Settings);
        QVERIFY(first);
        first->close();
        QVERIFY(!m_presenter->window(Kind::Settings));
        QVERIFY(forgotten(first));

        m_presenter->showSettings(settingsProperties());
        QQuickView* second = m_presenter->window(Kind::Settings);
        QVERIFY(second);
        QVERIFY(second->isVisible());
        QCOMPARE(created.count(), 2);
        QCOMPARE(created.at(1).at(1).value<QQuickView*>(), second);
    }

    void finishingOnboardingWritesTheFlagBeforeClosingAndBeforeTheCompletion()
    {
        QVERIFY(!m_defaults->contains(QStringLiteral("Onboarding.completed")));
        QStringList steps;
        m_presenter->showOnboarding({}, [this, &steps] {
            steps << QStringLiteral("completion");
            QCOMPARE(m_defaults->boolValue(QStringLiteral("Onboarding.completed")),
                     std::optional<bool>(true));
            QVERIFY(!m_presenter->window(Kind::Onboarding));
        });
        QPointer<QQuickView> view = m_presenter->window(Kind::Onboarding);
        QVERIFY(view);
        QCOMPARE(view->title(), QStringLiteral("Welcome to Tessaline"));
        connect(view.data(), &QWindow::visibleChanged, this, [this, &steps](bool visible) {
            if (visible)
                return;
            steps << (m_defaults->boolValue(QStringLiteral("Onboarding.completed")) ==
                              std::optional<bool>(true)
                          ? QStringLiteral("closed after writing")
                          : QStringLiteral("closed before writing"));
        });
        QVERIFY(QTest::qWaitForWindowExposed(view.data()));
        QQuickItem* button = startButton(*view);
        QVERIFY(button);
        QTest::mouseClick(
            view.data(), Qt::LeftButton, {},
            button->mapToScene(QPointF(button->width() / 2, button->height() / 2)).toPoint());
        QCOMPARE(steps, (QStringList{QStringLiteral("closed after writing"),
                                     QStringLiteral("completion")}));
        QVERIFY(forgotten(view));

        // The flag is on disk, not only in memory.
        DefaultsStore reread(m_dir->filePath(QStringLiteral("d.json")));
        QCOMPARE(reread.boolValue(QStringLiteral("Onboarding.completed")),
                 std::optional<bool>(true));
    }

    void closingTheWelcomeWindowDoesNotWriteTheFlag()
    {
        int completions = 0;
        m_presenter->showOnboarding({}, [&completions] { ++completions; });
        QPointer<QQuickView> view = m_presenter->window(Kind::Onboarding);
        QVERIFY(view);
        view->close();
        QVERIFY(forgotten(view));
        QVERIFY(!m_defaults->contains(QStringLiteral("Onboarding.completed")));
        QCOMPARE(completions, 0);
    }

    void reopenedWelcomeWindowStillFinishes()
    {
        m_presenter->showOnboarding({}, [] {});
        QPointer<QQuickView> first = m_presenter->window(Kind::Onboarding);
        first->close();
        QVERIFY(forgotten(first));
        int completions = 0;
        m_presenter->showOnboarding({}, [&completions] { ++completions; });
        QQuickView* second = m_presenter->window(Kind::Onboarding);
        QVERIFY(second && second->rootObject());
        QVERIFY(QMetaObject::invokeMethod(second->rootObject(), "complete"));
        QCOMPARE(completions, 1);
        QCOMPARE(m_defaults->boolValue(QStringLiteral("Onboarding.completed")),
                 std::optional<bool>(true));
    }
};

QTEST_MAIN(TestAppWindowPresenter)
#include "tst_AppWindowPresenter.moc"
