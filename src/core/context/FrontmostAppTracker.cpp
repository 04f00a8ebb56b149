// SPDX-License-Identifier: MIT
#include "context/FrontmostAppTracker.h"

#include "LogCategories.h"
#include "platform/Workspace.h"
#include "settings/DefaultsStore.h"

#include <QPointer>

#include <chrono>
#include <functional>

namespace Tessaline {
namespace {

const QString kLastAppNameKey = QStringLiteral("FrontmostAppTracker.lastAppName");
const QString kLastBundleIDKey = QStringLiteral("FrontmostAppTracker.lastBundleID");

} // namespace

/// A live subscription to the workspace's activation notifications. Destroying it is the one
/// way to unsubscribe.
class AppActivationObserver
{
public:
    explicit AppActivationObserver(QMetaObject::Connection token) : m_token(std::move(token)) {}
    ~AppActivationObserver()
    {
        if (m_token)
            QObject::disconnect(m_token);
    }
    AppActivationObserver(const AppActivationObserver&) = delete;
    AppActivationObserver& operator=(const AppActivationObserver&) = delete;

private:
    QMetaObject::Connection m_token;
};

namespace {

using ActivationHandler = std::function<void(const std::optional<RunningApplication>&)>;

/// Hands every activation the workspace announces to `handler` until the returned observer is
/// destroyed.
std::unique_ptr<AppActivationObserver> observeAppActivations(Workspace& workspace,
                                                             ActivationHandler handler)
{
    QMetaObject::Connection token =
        QObject::connect(&workspace, &Workspace::applicationActivated, std::move(handler));
    return std::make_unique<AppActivationObserver>(std::move(token));
}

} // namespace

FrontmostAppTracker::FrontmostAppTracker(Workspace& workspace, DefaultsStore& defaults,
                                         QObject* parent)
    : QObject(parent), m_workspace(workspace), m_defaults(defaults), m_current(savedApp(defaults))
{}

FrontmostAppTracker::~FrontmostAppTracker() = default;

void FrontmostAppTracker::start()
{
    accept(m_workspace.frontmostApplication());

    QPointer<FrontmostAppTracker> weakSelf(this);
    // The notification is only a trigger: accept runs later from the event loop, never inside
    // the workspace's emission, and not at all once the tracker is gone.
    m_watcher = observeAppActivations(m_workspace,
                                      [weakSelf](const std::optional<RunningApplication>& app) {
                                          if (!weakSelf)
                                              return;
                                          QMetaObject::invokeMethod(
                                              weakSelf.data(),
                                              [weakSelf, app] {
                                                  if (weakSelf)
                                                      weakSelf->accept(app);
                                              },
                                              Qt::QueuedConnection);
                                      });
}

void FrontmostAppTracker::accept(const std::optional<RunningApplication>& app)
{
    if (!app)
        return;
    if (!app->isRegular)
        return;
    // Tessaline's own panel and windows must not replace the app the user came from.
    if (app->bundleIdentifier == m_workspace.ownBundleIdentifier())
        return;

    m_current =
        TrackedApp{app->localizedName.value_or(QStringLiteral("Desktop")), app->bundleIdentifier};
    if (lcTrackerTiming().isDebugEnabled()) {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        qCDebug(lcTrackerTiming, "app in front %s at %lld us",
                qUtf8Printable(m_current.bundleID.value_or(m_current.name)),
                static_cast<long long>(
                    std::chrono::duration_cast<std::chrono::microseconds>(now).count()));
    }
    emit currentChanged();
    save(m_current);
}

TrackedApp FrontmostAppTracker::savedApp(const DefaultsStore& defaults)
{
    const std::optional<QString> name = defaults.stringValue(kLastAppNameKey);
    if (!name || name->isEmpty())
        return TrackedApp::placeholder();
    return TrackedApp{*name, defaults.stringValue(kLastBundleIDKey)};
}

void FrontmostAppTracker::save(const TrackedApp& app)
{
    m_defaults.setString(kLastAppNameKey, app.name);
    m_defaults.setOptionalString(kLastBundleIDKey, app.bundleID);
}

} // namespace Tessaline
