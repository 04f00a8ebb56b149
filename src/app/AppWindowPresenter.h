// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickView>
#include <QVariantMap>

#include <functional>

class QQmlEngine;

namespace Tessaline {

class DefaultsStore;

/// Opens Tessaline's three ordinary windows: settings, the browser of all shortcuts and the
/// welcome window. At most one of each exists; asking again brings it forward; closing it
/// forgets it, so the next request builds a fresh, centred window.
class AppWindowPresenter : public QObject
{
    Q_OBJECT
public:
    enum class Kind
    {
        Settings,
        Browser,
        Onboarding
    };

    AppWindowPresenter(QQmlEngine& engine, DefaultsStore& defaults, QObject* parent = nullptr);
    ~AppWindowPresenter() override;

    /// Shows the settings window; `properties` are handed to the view when it is built.
    void showSettings(const QVariantMap& properties);
    void showBrowser(const QVariantMap& properties);
    /// Shows the welcome window. Finishing it writes "Onboarding.completed", closes the window
    /// and then calls `onComplete`.
    void showOnboarding(const QVariantMap& properties, std::function<void()> onComplete);

    /// The open window of a kind, or null.
    QQuickView* window(Kind kind) const;

signals:
    /// A window was built and shown for the first time (not when an open one is raised).
    void windowCreated(Tessaline::AppWindowPresenter::Kind kind, QQuickView* window);

private:
    /// The welcome view's "Start using Tessaline".
    void completeOnboarding();
    struct Slot
    {
        QPointer<QQuickView> window;
    };
    QQuickView* show(Kind kind, const QVariantMap& properties);
    Slot& slot(Kind kind);

    QQmlEngine& m_engine;
    DefaultsStore& m_defaults;
    Slot m_settings;
    Slot m_browser;
    Slot m_onboarding;
    std::function<void()> m_onboardingComplete;
};

} // namespace Tessaline
