// SPDX-License-Identifier: MIT
#include "AppDelegate.h"

#include "AppWindowPresenter.h"
#include "Branding.h"
#include "BrowserModel.h"
#include "CheatSheetModel.h"
#include "FloatingPanel.h"
#include "ListNavigator.h"
#include "LogCategories.h"
#include "MenuBarController.h"
#include "SettingsModel.h"
#include "WindowPlacement.h"
#include "coach/CoachTipController.h"
#include "commands/ShortcutRunner.h"
#include "context/FrontmostAppTracker.h"
#include "helpers/TextHelperService.h"
#include "hotkeys/HotkeyManager.h"
#include "lookup/DesktopShortcuts.h"
#include "platform/Clipboard.h"
#include "platform/WindowHints.h"
#include "platform/Workspace.h"
#include "scan/AppMenuScanner.h"
#include "settings/DefaultsStore.h"
#include "settings/KeyNamePreference.h"
#include "vault/VaultStore.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QIcon>
#include <QQmlEngine>
#include <QTimer>
#include <QUrl>

#include <chrono>

namespace Tessaline {
namespace {

const QString kOnboardingCompletedKey = QStringLiteral("Onboarding.completed");

QUrl logoUrl()
{
    QString path = Branding::resourceImagePath();
    if (path.isEmpty())
        path = Branding::developmentImagePath();
    return path.isEmpty() ? QUrl() : QUrl::fromLocalFile(path);
}

} // namespace

AppDelegate::AppDelegate(Platform platform, QObject* parent)
    : QObject(parent), m_platform(platform), m_store(std::make_unique<VaultStore>()),
      m_frontmostAppTracker(
          std::make_unique<FrontmostAppTracker>(platform.workspace, platform.defaults)),
      m_menuScanner(std::make_unique<AppMenuScanner>(platform.workspace, platform.trust,
                                                     platform.elements, platform.alerts)),
      m_coachTipController(std::make_unique<CoachTipController>(
          platform.defaults, platform.clock, platform.scheduler, platform.keyMonitor,
          platform.tipPresenter, platform.keySettings)),
      m_windowPresenter(std::make_unique<AppWindowPresenter>(platform.engine, platform.defaults)),
      m_keyNames(std::make_unique<KeyNamePreference>(platform.defaults))
{}

AppDelegate::~AppDelegate()
{
    delete m_panel.data();
}

void AppDelegate::applicationDidFinishLaunching(Launch launch)
{
    if (const std::optional<QImage> logo = Branding::image())
        QGuiApplication::setWindowIcon(QIcon(QPixmap::fromImage(*logo)));

    m_frontmostAppTracker->start();
    // The command line and text editors write the same file: show their edits without a click.
    m_store->followOutsideChanges();

    QPointer<AppDelegate> self(this);
    m_textHelperService = std::make_unique<TextHelperService>(
        [self] {
            return self ? self->m_frontmostAppTracker->current() : TrackedApp::placeholder();
        },
        m_platform.workspace, m_platform.clipboard, m_platform.keyInjector, m_platform.trust,
        m_platform.alerts, m_platform.scheduler);
    m_textHelperService->setTextInserter(m_platform.textInserter);
    if (m_platform.menuCommands) {
        m_shortcutRunner =
            std::make_unique<ShortcutRunner>(m_platform.workspace, *m_platform.menuCommands,
                                             m_platform.keyInjector, m_platform.scheduler);
    }

    m_hotkeyManager =
        std::make_unique<HotkeyManager>(m_platform.defaults, m_platform.scheduler, [self] {
            if (self)
                self->toggleHUD();
        });
    m_hotkeyManager->followKeyNames(*m_keyNames);
    m_hotkeyManager->rebind();

    auto call = [self](void (AppDelegate::*method)()) {
        return [self, method] {
            if (self)
                (self.data()->*method)();
        };
    };
    m_menuBarController = std::make_unique<MenuBarController>(
        MenuBarController::Actions{
            call(&AppDelegate::toggleHUD), call(&AppDelegate::showBrowser),
            call(&AppDelegate::scanCurrentAppMenus), call(&AppDelegate::scanOpenApps),
            call(&AppDelegate::showSettings), call(&AppDelegate::showOnboarding),
            [self](TextHelperAction action) {
                if (self)
                    self->performHelper(action);
            }},
        m_platform.trayAppearance);

    m_coachTipController->start();

    // Clicking anywhere outside Tessaline closes the HUD. The toolkit reports a lost focus a
    // moment late: when the user leaves a Tessaline window and calls the HUD up at once, the
    // news arrives after the new panel is shown. Only a panel that has had the focus closes.
    m_resignObserver =
        connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state != Qt::ApplicationActive && m_panel && m_panel->hasBeenActive())
                        closeHUD();
                });

    if (launch == Launch::ByUser &&
        !m_platform.defaults.boolValue(kOnboardingCompletedKey).value_or(false))
        showOnboarding();
}

void AppDelegate::applicationWillTerminate()
{
    m_coachTipController->stop();
    if (m_resignObserver)
        disconnect(m_resignObserver);
}

void AppDelegate::toggleHUD()
{
    qCDebug(lcHudTiming, "toggle with the HUD %s",
            m_panel && m_panel->isVisible() ? "shown" : "hidden");
    if (m_panel && m_panel->isVisible()) {
        closeHUD();
        return;
    }
    showHUD();
}

void AppDelegate::showHUD()
{
    QElapsedTimer sinceRequest;
    sinceRequest.start();
    m_frontmostAppTracker->accept(m_platform.workspace.frontmostApplication());
    const TrackedApp app = m_frontmostAppTracker->current();

    auto* panel = new FloatingPanel(&m_platform.engine);
    auto* model = new CheatSheetModel(
        *m_store, *m_menuScanner, app, [this](const QString& text) { copyText(text); },
        helperActionList(), panel);
    model->followKeyNames(*m_keyNames);
    if (m_textHelperService)
        model->followTextHelpers(*m_textHelperService);
    model->setDesktopShortcuts(DesktopShortcuts::current(&m_platform.keySettings));
    auto* navigator = new ListNavigator(panel);
    navigator->setPanel(panel);
    navigator->setOnActivate([model](int index) { model->copyChordAt(index); });
    if (m_shortcutRunner) {
        QPointer<AppDelegate> self(this);
        model->followRunner(*m_shortcutRunner, [self, app](const ShortcutItem& item) {
            if (self)
                self->runShortcut(item, app);
        });
        navigator->setOnRun([model](int index) { model->runAt(index); });
    }
    panel->setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(model)},
                                 {QStringLiteral("navigator"), QVariant::fromValue(navigator)}});
    connect(model, &CheatSheetModel::closeRequested, this, &AppDelegate::closeHUD);
    connect(model, &CheatSheetModel::reloadRequested, this, &AppDelegate::reloadVault);
    connect(model, &CheatSheetModel::scanMenusRequested, this, &AppDelegate::scanCurrentAppMenus);
    connect(model, &CheatSheetModel::browseAllRequested, this, &AppDelegate::showBrowser);
    connect(model, &CheatSheetModel::settingsRequested, this, &AppDelegate::showSettings);
    connect(model, &CheatSheetModel::helperActionRequested, this, &AppDelegate::helperActionChosen);
    panel->setSource(QUrl(QStringLiteral("qrc:/Tessaline/qml/ContentView.qml")));

    connect(
        panel, &QQuickWindow::frameSwapped, panel,
        [sinceRequest] {
            // The wall-clock time lets a benchmark measure from a key press it sent itself.
            const auto now = std::chrono::system_clock::now().time_since_epoch();
            qCDebug(lcHudTiming, "first frame %.2f ms after the request, at %lld us",
                    static_cast<double>(sinceRequest.nsecsElapsed()) / 1e6,
                    static_cast<long long>(
                        std::chrono::duration_cast<std::chrono::microseconds>(now).count()));
        },
        Qt::SingleShotConnection);
    WindowPlacement::centerUnderMouse(*panel);
    panel->show();
    m_platform.windowHints.skipTaskbar(*panel);
    panel->raise();
    panel->requestActivate();

    delete m_panel.data();
    m_panel = panel;
}

void AppDelegate::closeHUD()
{
    if (!m_panel)
        return;
    qCDebug(lcHudTiming, "closing the HUD");
    FloatingPanel* panel = m_panel.data();
    m_panel = nullptr;
    panel->hide();
    // The view may be inside one of its own signal handlers.
    panel->deleteLater();
}

void AppDelegate::reloadVault()
{
    m_store->reload();
}

void AppDelegate::helperActionChosen(const QString& rawValue)
{
    if (const std::optional<TextHelperAction> action = TextHelperActions::fromRawValue(rawValue))
        performHelper(*action);
}

void AppDelegate::scanCurrentAppMenus()
{
    m_frontmostAppTracker->accept(m_platform.workspace.frontmostApplication());
    const TrackedApp app = m_frontmostAppTracker->current();
    QPointer<AppDelegate> self(this);
    auto afterScan = [self] {
        if (!self)
            return;
        const bool shown = self->m_panel && self->m_panel->isVisible();
        qCDebug(lcHudTiming, "scan over with the HUD %s", shown ? "shown" : "hidden");
        if (!shown)
            self->showHUD();
    };
    if (m_menuScanner->isScanning()) {
        // The request is dropped while another scan runs; the HUD still comes up.
        QTimer::singleShot(0, this, afterScan);
        return;
    }
    connect(m_menuScanner.get(), &AppMenuScanner::scanFinished, this, afterScan,
            Qt::SingleShotConnection);
    m_menuScanner->scanAndMergeCurrentApp(app, *m_store);
}

void AppDelegate::scanOpenApps()
{
    QPointer<AppDelegate> self(this);
    auto afterScan = [self] {
        if (self)
            self->showBrowser();
    };
    if (m_menuScanner->isScanning()) {
        QTimer::singleShot(0, this, afterScan);
        return;
    }
    connect(m_menuScanner.get(), &AppMenuScanner::scanFinished, this, afterScan,
            Qt::SingleShotConnection);
    m_menuScanner->scanAndMergeOpenApps(*m_store);
}

void AppDelegate::showBrowser()
{
    if (m_windowPresenter->window(AppWindowPresenter::Kind::Browser)) {
        m_windowPresenter->showBrowser({});
        return;
    }
    auto* model = new BrowserModel(
        *m_store, *m_menuScanner, [this](const QString& text) { copyText(text); }, this);
    model->followKeyNames(*m_keyNames);
    m_windowPresenter->showBrowser({{QStringLiteral("model"), QVariant::fromValue(model)}});
    QQuickView* window = m_windowPresenter->window(AppWindowPresenter::Kind::Browser);
    if (!window) {
        delete model;
        return;
    }
    connect(window, &QObject::destroyed, model, &QObject::deleteLater);
    connect(model, &BrowserModel::scanOpenAppsRequested, this, &AppDelegate::scanOpenApps);
    connect(model, &BrowserModel::showJsonRequested, this, &AppDelegate::showVaultFile);
}

void AppDelegate::showVaultFile()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(m_store->dataFilePath()));
}

void AppDelegate::showSettings()
{
    if (!m_hotkeyManager)
        return;
    if (m_windowPresenter->window(AppWindowPresenter::Kind::Settings)) {
        m_windowPresenter->showSettings({});
        return;
    }
    auto* model =
        new SettingsModel(*m_store, m_hotkeyManager.get(), *m_keyNames, m_platform.trust, this);
    model->watchCoachTips(*m_coachTipController);
    m_windowPresenter->showSettings({{QStringLiteral("model"), QVariant::fromValue(model)}});
    if (QQuickView* window = m_windowPresenter->window(AppWindowPresenter::Kind::Settings))
        connect(window, &QObject::destroyed, model, &QObject::deleteLater);
    else
        delete model;
}

void AppDelegate::showOnboarding()
{
    const bool wasOpen = m_windowPresenter->window(AppWindowPresenter::Kind::Onboarding);
    SettingsModel* model = nullptr;
    QVariantMap properties{{QStringLiteral("logoSource"), logoUrl()}};
    if (!wasOpen) {
        model =
            new SettingsModel(*m_store, m_hotkeyManager.get(), *m_keyNames, m_platform.trust, this);
        properties.insert(QStringLiteral("accessibility"), QVariant::fromValue(model));
    }
    m_windowPresenter->showOnboarding(properties, [] {});
    if (!model)
        return;
    if (QQuickView* window = m_windowPresenter->window(AppWindowPresenter::Kind::Onboarding))
        connect(window, &QObject::destroyed, model, &QObject::deleteLater);
    else
        delete model;
}

void AppDelegate::performHelper(TextHelperAction action)
{
    closeHUD();
    if (m_textHelperService)
        m_textHelperService->perform(action);
}

void AppDelegate::runShortcut(const ShortcutItem& item, const TrackedApp& app)
{
    if (!m_shortcutRunner)
        return;
    qCDebug(lcHudTiming, "running %s", qUtf8Printable(item.name));
    // The HUD goes first, so that the app it was showing can take the focus back.
    closeHUD();
    m_shortcutRunner->run(item, app, [name = item.name](const Expected<void>& outcome) {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        qCDebug(lcHudTiming, "ran %s at %lld us: %s", qUtf8Printable(name),
                static_cast<long long>(
                    std::chrono::duration_cast<std::chrono::microseconds>(now).count()),
                outcome ? "done" : qUtf8Printable(outcome.error()));
    });
}

void AppDelegate::copyText(const QString& text)
{
    m_platform.clipboard.clear();
    m_platform.clipboard.setText(text);
}

QVariantList AppDelegate::helperActionList() const
{
    QVariantList actions;
    for (TextHelperAction action : TextHelperActions::all()) {
        actions.append(
            QVariantMap{{QStringLiteral("raw"), TextHelperActions::rawValue(action)},
                        {QStringLiteral("title"), TextHelperActions::title(action)},
                        {QStringLiteral("help"), TextHelperActions::description(action)}});
    }
    return actions;
}

} // namespace Tessaline
