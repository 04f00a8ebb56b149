// SPDX-License-Identifier: MIT
#include "ViewFixture.h"

#include "BrowserModel.h"
#include "CheatSheetModel.h"
#include "FakeClock.h"
#include "FakeCoachTipPresenter.h"
#include "FakeDesktopKeySettings.h"
#include "FakeHotKeyService.h"
#include "FakeKeyInjector.h"
#include "FakeMenuCommandRunner.h"
#include "FakeScanDesktop.h"
#include "FakeSystemKeyMonitor.h"
#include "FakeWorkspace.h"
#include "ListNavigator.h"
#include "ManualScheduler.h"
#include "SettingsModel.h"
#include "coach/CoachTipController.h"
#include "commands/ShortcutRunner.h"
#include "helpers/TextHelperAction.h"
#include "hotkeys/HotkeyManager.h"
#include "scan/AppMenuScanner.h"
#include "settings/AutostartEntry.h"
#include "settings/DefaultsStore.h"
#include "settings/KeyNamePreference.h"
#include "vault/VaultCodec.h"
#include "vault/VaultStore.h"

#include <hotkey/HotKeysController.h>

#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

using namespace Tessaline;
using namespace Tessaline::Testing;

namespace {

ShortcutItem item(const QString& name, const QString& chord)
{
    ShortcutItem result;
    result.name = name;
    result.chord = chord;
    return result;
}

VaultData sampleVault()
{
    VaultData data;
    data.global = {item(QStringLiteral("Copy"), QStringLiteral("⌘C")),
                   item(QStringLiteral("Paste"), QStringLiteral("⌘V"))};
    data.apps = {
        AppShortcutPack{QStringLiteral("Editor"),
                        QStringLiteral("org.example.Editor"),
                        {item(QStringLiteral("Find"), QStringLiteral("⌘F")),
                         item(QStringLiteral("Save"), QStringLiteral("⌘S")),
                         item(QStringLiteral("Yank line"), QStringLiteral("⌃Y"))}},
        AppShortcutPack{QStringLiteral("Hollow"), QStringLiteral("org.example.Hollow"), {}}};
    return data;
}

/// Models stay the fixture's: the QML garbage collector never deletes them under a view.
QObject* keep(QObject* object)
{
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    return object;
}

TrackedApp tracked(const QString& appName, const QString& bundleID)
{
    return TrackedApp{appName,
                      bundleID.isEmpty() ? std::nullopt : std::optional<QString>(bundleID)};
}

} // namespace

ViewFixture::ViewFixture(QObject* parent) : QObject(parent)
{
    reset();
}

ViewFixture::~ViewFixture()
{
    release();
}

/// What runnable cheat sheets run rows with: a runner over a faked desktop.
struct FixtureRunner
{
    Tessaline::Testing::FakeWorkspace workspace;
    Tessaline::Testing::FakeMenuCommandRunner menus;
    Tessaline::Testing::FakeKeyInjector keys;
    Tessaline::Testing::ManualScheduler scheduler;
    Tessaline::ShortcutRunner runner{workspace, menus, keys, scheduler};
};

void ViewFixture::release()
{
    qDeleteAll(m_models.children());
    m_coachTips.reset();
    m_keySettings.reset();
    m_tipPresenter.reset();
    m_clock.reset();
    m_keyMonitor.reset();
    m_runner.reset();
    m_ran.clear();
    m_keyNames.reset();
    m_hotkeys.reset();
    m_defaults.reset();
    m_desktop.reset();
    m_store.reset();
    HotKey::HotKeysController::setService(nullptr);
    m_hotKeyService.reset();
}

void ViewFixture::reset()
{
    release();
    m_copied.clear();
    QFile::remove(autostartFile());
    m_dir = std::make_unique<QTemporaryDir>();
    VaultStore::Configuration configuration;
    configuration.dataFilePath = m_dir->filePath(QStringLiteral("data/keybinds.json"));
    QDir().mkpath(m_dir->filePath(QStringLiteral("data")));
    QFile file(configuration.dataFilePath);
    if (file.open(QIODevice::WriteOnly))
        file.write(VaultCodec::encode(sampleVault()));
    file.close();

    m_hotKeyService = std::make_unique<FakeHotKeyService>();
    HotKey::HotKeysController::setService(m_hotKeyService.get());
    m_scheduler = std::make_unique<ManualScheduler>();
    m_store = std::make_unique<VaultStore>(configuration);
    m_desktop = std::make_unique<FakeScanDesktop>();
    m_defaults = std::make_unique<DefaultsStore>(m_dir->filePath(QStringLiteral("defaults.json")));
    m_hotkeys = std::make_unique<HotkeyManager>(*m_defaults, *m_scheduler, [] {});
    m_keyNames = std::make_unique<KeyNamePreference>(*m_defaults);
    m_hotkeys->followKeyNames(*m_keyNames);
    m_keyMonitor = std::make_unique<FakeSystemKeyMonitor>();
    m_clock = std::make_unique<FakeClock>();
    m_tipPresenter = std::make_unique<FakeCoachTipPresenter>();
    m_keySettings = std::make_unique<FakeDesktopKeySettings>();
    m_coachTips = std::make_unique<CoachTipController>(
        *m_defaults, *m_clock, *m_scheduler, *m_keyMonitor, *m_tipPresenter, *m_keySettings);
}

QObject* ViewFixture::cheatSheet(const QString& appName, const QString& bundleID)
{
    QVariantList helpers;
    for (TextHelperAction action : TextHelperActions::all()) {
        helpers.append(
            QVariantMap{{QStringLiteral("raw"), TextHelperActions::rawValue(action)},
                        {QStringLiteral("title"), TextHelperActions::title(action)},
                        {QStringLiteral("help"), TextHelperActions::description(action)}});
    }
    auto* model = new CheatSheetModel(
        *m_store, m_desktop->scanner, tracked(appName, bundleID),
        [this](const QString& text) { m_copied << text; }, helpers, &m_models);
    model->followKeyNames(*m_keyNames);
    return keep(model);
}

QObject* ViewFixture::runnableCheatSheet(const QString& appName, const QString& bundleID)
{
    auto* model = qobject_cast<CheatSheetModel*>(cheatSheet(appName, bundleID));
    if (!m_runner)
        m_runner = std::make_unique<FixtureRunner>();
    model->followRunner(m_runner->runner, [this](const ShortcutItem& item) { m_ran << item.name; });
    return model;
}

void ViewFixture::bindOnDesktop(QObject* model, const QString& name, const QString& chord)
{
    if (auto* sheet = qobject_cast<CheatSheetModel*>(model))
        sheet->setDesktopShortcuts({{name, QStringLiteral("Desktop: org.example.keys"), chord}});
}

QObject* ViewFixture::navigator()
{
    return keep(new ListNavigator(&m_models));
}

namespace {

QQuickWindow* windowOf(QObject* item)
{
    auto* quickItem = qobject_cast<QQuickItem*>(item);
    return quickItem ? quickItem->window() : nullptr;
}

} // namespace

void ViewFixture::attachNavigator(QObject* navigator, QObject* item)
{
    if (auto* keys = qobject_cast<ListNavigator*>(navigator))
        keys->setPanel(windowOf(item));
}

void ViewFixture::pressKeyAt(QObject* item, quint32 scanCode, int key, int modifiers,
                             const QString& text)
{
    QQuickWindow* window = windowOf(item);
    if (!window)
        return;
    const auto mods = Qt::KeyboardModifiers(modifiers);
    QKeyEvent press(QEvent::KeyPress, key, mods, scanCode, 0, 0, text);
    QCoreApplication::sendEvent(window, &press);
    QKeyEvent release(QEvent::KeyRelease, key, mods, scanCode, 0, 0, text);
    QCoreApplication::sendEvent(window, &release);
}

QObject* ViewFixture::browser()
{
    auto* model = new BrowserModel(
        *m_store, m_desktop->scanner, [this](const QString& text) { m_copied << text; }, &m_models);
    model->followKeyNames(*m_keyNames);
    return keep(model);
}

QObject* ViewFixture::settings()
{
    auto* model =
        new SettingsModel(*m_store, m_hotkeys.get(), *m_keyNames, m_desktop->trust, &m_models);
    model->watchCoachTips(*m_coachTips);
    return keep(model);
}

void ViewFixture::startScan(const QString& appName, const QString& bundleID)
{
    m_desktop->scanner.scanAndMergeCurrentApp(tracked(appName, bundleID), *m_store);
}

bool ViewFixture::scanWithDrift(const QString& appName, const QString& bundleID)
{
    // Menu modifier masks: 4 is Control, 1 Shift, 8 "no Super".
    constexpr int control = 4 | 8;
    constexpr int controlShift = control | 1;
    const qint64 pid = 4242;
    m_desktop->workspace.apps.append(makeApp(appName, bundleID, pid));
    const auto setMenu = [this, pid](const QList<FakeElementPtr>& items) {
        m_desktop->elements.applications.insert(
            pid, makeApplication({makeMenu(QStringLiteral("File"), items)}));
    };
    setMenu({makeItem(QStringLiteral("Cut"), QStringLiteral("x"), control),
             makeItem(QStringLiteral("Close"), QStringLiteral("w"), control)});
    startScan(appName, bundleID);
    if (!m_desktop->waitForScan())
        return false;
    setMenu({makeItem(QStringLiteral("Cut"), QStringLiteral("x"), controlShift)});
    startScan(appName, bundleID);
    return m_desktop->waitForScan();
}

QString ViewFixture::autostartFile() const
{
    return AutostartEntry().filePath();
}

bool ViewFixture::fileExists(const QString& path) const
{
    return QFile::exists(path);
}

bool ViewFixture::removeFile(const QString& path) const
{
    return QFile::remove(path);
}

void ViewFixture::setSessionGrabsKeys(bool grabs)
{
    m_hotKeyService->grabs = grabs;
}

void ViewFixture::refuseTipKeys(const QString& reason)
{
    m_coachTips->stop();
    m_keyMonitor->available = false;
    m_keyMonitor->reason = reason;
    m_coachTips->start();
}

bool ViewFixture::doAccessibleAction(QObject* item, const QString& action) const
{
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(item);
    if (!accessible || !accessible->actionInterface())
        return false;
    QAccessibleActionInterface* actions = accessible->actionInterface();
    const QString name = action == QStringLiteral("Toggle")
                             ? QAccessibleActionInterface::toggleAction()
                             : QAccessibleActionInterface::pressAction();
    if (!actions->actionNames().contains(name))
        return false;
    actions->doAction(name);
    return true;
}
