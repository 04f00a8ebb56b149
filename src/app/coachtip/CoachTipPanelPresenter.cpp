// SPDX-License-Identifier: MIT
#include "CoachTipPanelPresenter.h"

#include "CoachTipCommands.h"
#include "LogCategories.h"

#include <QGuiApplication>
#include <QPainterPath>
#include <QQuickView>
#include <QRegion>
#include <QScreen>
#include <QVariantMap>

namespace Tessaline {
namespace {

const QUrl kViewUrl(QStringLiteral("qrc:/Tessaline/qml/CoachTipView.qml"));
constexpr int kCornerRadius = 12;

QRegion roundedRegion(const QSize& size)
{
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(0, 0), size), kCornerRadius, kCornerRadius);
    return QRegion(path.toFillPolygon().toPolygon());
}

} // namespace

CoachTipPanelPresenter::CoachTipPanelPresenter(QQmlEngine& engine, QObject* parent)
    : QObject(parent), m_engine(engine)
{}

CoachTipPanelPresenter::~CoachTipPanelPresenter()
{
    for (auto& [id, panel] : m_panels)
        delete panel.window.data();
}

std::optional<QRect> CoachTipPanelPresenter::availableGeometry() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    return screen->availableGeometry();
}

CoachTipPresenter::PanelId CoachTipPanelPresenter::showPanel(const CoachTip& tip,
                                                             const QRect& frame,
                                                             std::function<void()> onDismiss,
                                                             std::function<void()> onNeverShow)
{
    const PanelId id = m_nextId++;
    auto* window = new QQuickView(&m_engine, nullptr);
    // Frameless and above other windows; never focused, so the user's typing keeps going to
    // the application in front.
    window->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                     Qt::WindowDoesNotAcceptFocus);
    window->setProperty("_q_showWithoutActivating", true);
    window->setTitle(tip.title);
    window->setColor(Qt::transparent);
    window->setResizeMode(QQuickView::SizeRootObjectToView);
    // The view's buttons reach the presenter through an object that lives with the window.
    auto* commands = new CoachTipCommands(window);
    connect(commands, &CoachTipCommands::dismissed, this,
            [this, id] { panelAnswered(id, &Panel::onDismiss); });
    connect(commands, &CoachTipCommands::neverShowChosen, this,
            [this, id] { panelAnswered(id, &Panel::onNeverShow); });
    window->setInitialProperties(
        {{QStringLiteral("tip"), QVariantMap{{QStringLiteral("id"), tip.id},
                                             {QStringLiteral("title"), tip.title},
                                             {QStringLiteral("message"), tip.message}}},
         {QStringLiteral("commands"), QVariant::fromValue(commands)}});
    window->setSource(kViewUrl);
    if (window->status() != QQuickView::Ready) {
        for (const QQmlError& error : window->errors())
            qCWarning(lcCoach) << error.toString();
    }
    window->setGeometry(frame);
    window->setMinimumSize(frame.size());
    window->setMaximumSize(frame.size());
    // Without a compositor a transparent window shows black corners: cut them off instead.
    window->setMask(roundedRegion(frame.size()));
    window->show();
    m_panels.emplace(id, Panel{window, std::move(onDismiss), std::move(onNeverShow)});
    return id;
}

void CoachTipPanelPresenter::hidePanel(PanelId id)
{
    const auto it = m_panels.find(id);
    if (it == m_panels.end())
        return;
    if (QQuickView* window = it->second.window) {
        window->hide();
        // Later: this may run inside one of the window's own button handlers.
        window->deleteLater();
    }
    m_panels.erase(it);
}

QQuickView* CoachTipPanelPresenter::window(PanelId id) const
{
    const auto it = m_panels.find(id);
    return it == m_panels.end() ? nullptr : it->second.window.data();
}

void CoachTipPanelPresenter::panelAnswered(PanelId id, std::function<void()> Panel::*callback)
{
    const auto it = m_panels.find(id);
    if (it == m_panels.end())
        return;
    // Copied: the callback usually hides the panel, which drops its entry.
    const std::function<void()> call = it->second.*callback;
    if (call)
        call();
}

} // namespace Tessaline
