// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace Tessaline {
class CoachTipController;
class DefaultsStore;
class KeyNamePreference;
class HotkeyManager;
class VaultStore;
namespace Testing {
class FakeClock;
class FakeCoachTipPresenter;
class FakeDesktopKeySettings;
class FakeHotKeyService;
class FakeScanDesktop;
class FakeSystemKeyMonitor;
class ManualScheduler;
} // namespace Testing
} // namespace Tessaline

class QQmlEngine;
struct FixtureRunner;

/// What the view tests build their views on: a real vault in a private folder (a global list,
/// the "Editor" pack with three shortcuts and the empty "Hollow" pack), a scanner over a faked
/// desktop, and the models the application hands to its views. Reachable from QML as `fixture`.
class ViewFixture : public QObject
{
    Q_OBJECT
public:
    explicit ViewFixture(QObject* parent = nullptr);
    ~ViewFixture() override;

    /// Starts over with a fresh vault, scanner and hotkey; models made before stay usable
    /// only until the next reset.
    Q_INVOKABLE
    void reset();
    /// A cheat-sheet model for the app (an empty bundle id means none).
    Q_INVOKABLE
    QObject* cheatSheet(const QString& appName, const QString& bundleID);
    /// A cheat-sheet model whose rows can be run; the rows run are listed by ran().
    Q_INVOKABLE
    QObject* runnableCheatSheet(const QString& appName, const QString& bundleID);
    /// The names of the rows run from runnable cheat sheets, in order.
    Q_INVOKABLE
    QStringList ran() const { return m_ran; }
    /// Lets the desktop itself take `chord` under `name` for the cheat sheet `model`.
    Q_INVOKABLE
    void bindOnDesktop(QObject* model, const QString& name, const QString& chord);
    /// A fresh keyboard navigator for a cheat-sheet view.
    Q_INVOKABLE
    QObject* navigator();
    /// Lets `navigator` act on the keys of the window that shows `item`.
    Q_INVOKABLE
    void attachNavigator(QObject* navigator, QObject* item);
    /// Presses and releases a key at the keyboard place `scanCode` in the window that shows
    /// `item`, as the windowing system delivers it: `key`, `modifiers` and `text` are what the
    /// layout makes of that place.
    Q_INVOKABLE
    void pressKeyAt(QObject* item, quint32 scanCode, int key, int modifiers, const QString& text);
    Q_INVOKABLE
    QObject* browser();
    Q_INVOKABLE
    QObject* settings();
    /// Starts a current-app scan; the faked desktop runs no app, so it ends with a message.
    Q_INVOKABLE
    void startScan(const QString& appName, const QString& bundleID);
    /// Scans the app twice on the faked desktop, its menu changing in between: "Cut" moves
    /// from Ctrl+X to Ctrl+Shift+X and "Close" leaves. Returns once both scans have ended.
    Q_INVOKABLE
    bool scanWithDrift(const QString& appName, const QString& bundleID);
    /// Every text the models put on the clipboard.
    Q_INVOKABLE
    QStringList copied() const { return m_copied; }
    /// The autostart entry of the test's private config folder (reset removes it).
    Q_INVOKABLE
    QString autostartFile() const;
    Q_INVOKABLE
    bool fileExists(const QString& path) const;
    Q_INVOKABLE
    bool removeFile(const QString& path) const;
    /// Runs an action ("Toggle", "Press") on an item the way assistive tools do, through
    /// Qt's accessibility interface; false when the item offers no such action.
    Q_INVOKABLE
    bool doAccessibleAction(QObject* item, const QString& action) const;

    /// Makes the session one that lets no application take a global key (as Wayland without a
    /// global-shortcuts service is), or one that does.
    Q_INVOKABLE
    void setSessionGrabsKeys(bool grabs);
    /// Starts the coach tips on a desktop that keeps their keys from Tessaline for `reason`.
    Q_INVOKABLE
    void refuseTipKeys(const QString& reason);

private:
    void release();

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Tessaline::Testing::FakeScanDesktop> m_desktop;
    std::unique_ptr<Tessaline::Testing::FakeHotKeyService> m_hotKeyService;
    std::unique_ptr<Tessaline::Testing::ManualScheduler> m_scheduler;
    std::unique_ptr<Tessaline::VaultStore> m_store;
    std::unique_ptr<Tessaline::DefaultsStore> m_defaults;
    std::unique_ptr<Tessaline::HotkeyManager> m_hotkeys;
    std::unique_ptr<Tessaline::KeyNamePreference> m_keyNames;
    std::unique_ptr<Tessaline::Testing::FakeSystemKeyMonitor> m_keyMonitor;
    std::unique_ptr<Tessaline::Testing::FakeClock> m_clock;
    std::unique_ptr<Tessaline::Testing::FakeCoachTipPresenter> m_tipPresenter;
    std::unique_ptr<Tessaline::Testing::FakeDesktopKeySettings> m_keySettings;
    std::unique_ptr<Tessaline::CoachTipController> m_coachTips;
    std::unique_ptr<FixtureRunner> m_runner;
    QObject m_models;
    QStringList m_copied;
    QStringList m_ran;
};
