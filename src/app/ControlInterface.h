// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace Tessaline {

class AppDelegate;

/// Tessaline's session-bus interface "org.tessaline.Tessaline" at "/org/tessaline/Tessaline".
/// Owning the bus name keeps Tessaline to one instance: a second start asks the running one to
/// show its HUD and ends. Launchers and scripts can open the windows through it as well.
class ControlInterface : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tessaline.Tessaline")
public:
    static constexpr auto kService = "org.tessaline.Tessaline";
    static constexpr auto kPath = "/org/tessaline/Tessaline";

    explicit ControlInterface(AppDelegate& delegate, QObject* parent = nullptr);

    /// Takes the bus name and publishes the interface; false when another instance owns it.
    bool registerOnSessionBus();
    /// Asks the running instance to show its HUD; false when none answered.
    static bool showHUDOfRunningInstance();
    /// Calls `method` of the running instance's interface; false when none answered.
    static bool callRunningInstance(const QString& method);

public slots:
    Q_SCRIPTABLE void ShowHUD();
    Q_SCRIPTABLE void ToggleHUD();
    Q_SCRIPTABLE void ShowBrowser();
    Q_SCRIPTABLE void ShowSettings();
    Q_SCRIPTABLE void ShowOnboarding();
    Q_SCRIPTABLE void ScanCurrentApp();
    Q_SCRIPTABLE void ScanOpenApps();
    Q_SCRIPTABLE void Quit();

private:
    AppDelegate& m_delegate;
};

} // namespace Tessaline
