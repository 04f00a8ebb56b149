// SPDX-License-Identifier: MIT
#include "CoachTipPanelPresenter.h"

#include "LogCategories.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QQuickImageProvider>
#include <QQuickItem>
#include <QQuickView>
#include <QRegion>
#include <QScreen>
#include <QVariantMap>

namespace Tessaline {
namespace {

const QUrl kViewUrl(QStringLiteral("qrc:/tessaline/coachtip/CoachTipView.qml"));
const QString kFallbackSymbol = QStringLiteral(":/tessaline/coachtip/lightbulb.svg");
constexpr int kCornerRadius = 12;

// The lightbulb in yellow: the theme's icon when it has one, else the bundled drawing, painted
// as a yellow silhouette either way.
class SymbolImageProvider final : public QQuickImageProvider
{
public:
    SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString&, QSize* size, const QSize& requestedSize) override
    {
        const QSize target = requestedSize.isValid() ? requestedSize : QSize(48, 48);
        QIcon icon = QIcon::fromTheme(QLatin1String(CoachTipPanelPresenter::kSymbolIconName));
        if (icon.isNull() || icon.availableSizes().isEmpty())
            icon = QIcon(kFallbackSymbol);
        QImage image(target, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            const QPixmap pixmap = icon.pixmap(target);
            if (!pixmap.isNull()) {
                painter.drawPixmap(image.rect(), pixmap);
            } else {
                // Without an SVG reader: a plain disc, so the place is never blank.
                painter.setPen(Qt::NoPen);
                painter.setBrush(Qt::white);
                painter.drawEllipse(image.rect().adjusted(4, 4, -4, -4));
            }
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(image.rect(), QColor(0xf5, 0xc2, 0x11));
        }
        if (size)
            *size = image.size();
        // A copy without the painter's engine attached to it.
        return image.copy();
    }
};

QRegion roundedRegion(const QSize& size)
{
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(0, 0), size), kCornerRadius, kCornerRadius);
    return QRegion(path.toFillPolygon().toPolygon());
}

} // namespace

CoachTipPanelPresenter::CoachTipPanelPresenter(QObject* parent) : QObject(parent)
{
    m_engine.addImageProvider(QStringLiteral("coachtip"), new SymbolImageProvider);
}

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
    window->setInitialProperties(
        {{QStringLiteral("tip"), QVariantMap{{QStringLiteral("id"), tip.id},
                                             {QStringLiteral("title"), tip.title},
                                             {QStringLiteral("message"), tip.message}}}});
    window->setSource(kViewUrl);
    if (window->status() != QQuickView::Ready) {
        for (const QQmlError& error : window->errors())
            qCWarning(lcCoach) << error.toString();
    }
    if (QQuickItem* root = window->rootObject()) {
        connect(root, SIGNAL(dismiss()), this, SLOT(panelDismissed()));
        connect(root, SIGNAL(neverShow()), this, SLOT(panelNeverShow()));
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

std::optional<CoachTipPresenter::PanelId> CoachTipPanelPresenter::panelOf(const QObject* root) const
{
    for (const auto& [id, panel] : m_panels) {
        if (panel.window && panel.window->rootObject() == root)
            return id;
    }
    return std::nullopt;
}

void CoachTipPanelPresenter::panelDismissed()
{
    const std::optional<PanelId> id = panelOf(sender());
    if (!id)
        return;
    // Copied: the callback usually hides the panel, which drops its entry.
    const std::function<void()> callback = m_panels.at(*id).onDismiss;
    if (callback)
        callback();
}

void CoachTipPanelPresenter::panelNeverShow()
{
    const std::optional<PanelId> id = panelOf(sender());
    if (!id)
        return;
    const std::function<void()> callback = m_panels.at(*id).onNeverShow;
    if (callback)
        callback();
}

} // namespace Tessaline
