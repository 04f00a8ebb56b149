// SPDX-License-Identifier: MIT
#include "AppWindowPresenter.h"

#include "OnboardingCommands.h"
#include "WindowPlacement.h"
#include "settings/DefaultsStore.h"

#include <QQmlEngine>

namespace Tessaline {
namespace {

struct WindowLayout
{
    const char* view;
    const char* title;
    int width;
    int height;
    bool resizable;
    bool minimizable;
};

WindowLayout windowLayout(AppWindowPresenter::Kind kind)
{
    switch (kind) {
    case AppWindowPresenter::Kind::Settings:
        return {"SettingsView", "Tessaline Settings", 560, 520, false, true};
    case AppWindowPresenter::Kind::Browser:
        return {"VaultBrowserView", "All Tessaline Shortcuts", 760, 620, true, true};
    case AppWindowPresenter::Kind::Onboarding:
        return {"OnboardingView", "Welcome to Tessaline", 600, 500, false, false};
    }
    Q_UNREACHABLE();
}

} // namespace

AppWindowPresenter::AppWindowPresenter(QQmlEngine& engine, DefaultsStore& defaults, QObject* parent)
    : QObject(parent), m_engine(engine), m_defaults(defaults)
{}

AppWindowPresenter::~AppWindowPresenter()
{
    for (Slot* open : {&m_settings, &m_browser, &m_onboarding}) {
        QQuickView* window = open->window.data();
        open->window = nullptr;
        if (!window)
            continue;
        // A window hides while it is destroyed; its close handler must not see it half gone.
        window->disconnect(this);
        delete window;
    }
}

AppWindowPresenter::Slot& AppWindowPresenter::slot(Kind kind)
{
    switch (kind) {
    case Kind::Settings:
        return m_settings;
    case Kind::Browser:
        return m_browser;
    case Kind::Onboarding:
        return m_onboarding;
    }
    Q_UNREACHABLE();
}

QQuickView* AppWindowPresenter::window(Kind kind) const
{
    return const_cast<AppWindowPresenter*>(this)->slot(kind).window.data();
}

QQuickView* AppWindowPresenter::show(Kind kind, const QVariantMap& properties)
{
    Slot& current = slot(kind);
    if (current.window) {
        current.window->show();
        current.window->raise();
        current.window->requestActivate();
        return current.window;
    }

    const WindowLayout layout = windowLayout(kind);
    auto* view = new QQuickView(&m_engine, nullptr);
    Qt::WindowFlags flags =
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
    if (layout.minimizable)
        flags |= Qt::WindowMinimizeButtonHint;
    view->setFlags(flags);
    view->setTitle(QString::fromUtf8(layout.title));
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    view->setInitialProperties(properties);
    view->setSource(
        QUrl(QStringLiteral("qrc:/Tessaline/qml/%1.qml").arg(QLatin1String(layout.view))));
    view->resize(layout.width, layout.height);
    if (!layout.resizable) {
        view->setMinimumSize(view->size());
        view->setMaximumSize(view->size());
    } else {
        view->setMinimumSize(QSize(layout.width / 2, layout.height / 2));
    }
    WindowPlacement::centerOnPrimaryScreen(*view);

    // Closing (hiding) forgets the window; the next request builds a new one.
    connect(view, &QWindow::visibleChanged, this, [this, kind, view](bool visible) {
        if (visible)
            return;
        Slot& closed = slot(kind);
        if (closed.window == view)
            closed.window = nullptr;
        view->deleteLater();
    });
    current.window = view;
    view->show();
    view->raise();
    view->requestActivate();
    emit windowCreated(kind, view);
    return view;
}

void AppWindowPresenter::showSettings(const QVariantMap& properties)
{
    show(Kind::Settings, properties);
}

void AppWindowPresenter::showBrowser(const QVariantMap& properties)
{
    show(Kind::Browser, properties);
}

void AppWindowPresenter::showOnboarding(const QVariantMap& properties,
                                        std::function<void()> onComplete)
{
    m_onboardingComplete = std::move(onComplete);
    if (m_onboarding.window) {
        show(Kind::Onboarding, properties);
        return;
    }
    // The view's command reaches the presenter through an object that lives with the window.
    auto* commands = new OnboardingCommands(this);
    QVariantMap withCommands = properties;
    withCommands.insert(QStringLiteral("commands"), QVariant::fromValue(commands));
    QQuickView* view = show(Kind::Onboarding, withCommands);
    commands->setParent(view);
    connect(commands, &OnboardingCommands::completed, this,
            &AppWindowPresenter::completeOnboarding);
}

void AppWindowPresenter::completeOnboarding()
{
    m_defaults.setBool(QStringLiteral("Onboarding.completed"), true);
    m_defaults.sync();
    if (m_onboarding.window)
        m_onboarding.window->close();
    if (m_onboardingComplete)
        m_onboardingComplete();
}

} // namespace Tessaline
