// SPDX-License-Identifier: MIT
// Every text of every view stays readable under a light and a dark desktop palette: the colour a
// text is drawn in, blended over the backgrounds behind it, keeps the contrast ratio that makes
// text legible (4.5 : 1, or 3 : 1 for large and bold text).
#include "AppIconProvider.h"
#include "CoachTipPanelPresenter.h"
#include "SymbolImageProvider.h"
#include "ViewFixture.h"

#include <QDir>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickView>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <cmath>
#include <memory>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

namespace {

QPalette lightPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xef, 0xef, 0xef));
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xf7, 0xf7, 0xf7));
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Button, QColor(0xef, 0xef, 0xef));
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 0x80));
    palette.setColor(QPalette::Mid, QColor(0xb8, 0xb8, 0xb8));
    return palette;
}

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2d, 0x2d, 0x2d));
    palette.setColor(QPalette::WindowText, QColor(0xee, 0xee, 0xee));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::AlternateBase, QColor(0x35, 0x35, 0x35));
    palette.setColor(QPalette::Text, QColor(0xee, 0xee, 0xee));
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3a));
    palette.setColor(QPalette::ButtonText, QColor(0xee, 0xee, 0xee));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::PlaceholderText, QColor(0xee, 0xee, 0xee, 0x80));
    palette.setColor(QPalette::Mid, QColor(0x55, 0x55, 0x55));
    return palette;
}

/// `top` drawn over the opaque `bottom`.
QColor over(const QColor& top, const QColor& bottom)
{
    const double a = top.alphaF();
    return QColor::fromRgbF(static_cast<float>(top.redF() * a + bottom.redF() * (1 - a)),
                            static_cast<float>(top.greenF() * a + bottom.greenF() * (1 - a)),
                            static_cast<float>(top.blueF() * a + bottom.blueF() * (1 - a)));
}

double luminance(const QColor& color)
{
    auto channel = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) +
           0.0722 * channel(color.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

/// Texts that must be legible: shown, fully opaque and enabled. A disabled control's faded label
/// and a search field's placeholder are drawn in the colours the desktop gives them for that.
bool mustBeLegible(const QQuickItem* item)
{
    if (item->inherits("QQuickPlaceholderText") || !item->isEnabled())
        return false;
    for (const QQuickItem* node = item; node; node = node->parentItem()) {
        if (!node->isVisible() || node->opacity() < 0.99)
            return false;
    }
    return true;
}

/// The colour behind `item`: the window's, under every rectangle the item lies in, including
/// the rectangular backgrounds of the controls it belongs to.
QColor backgroundBehind(const QQuickItem* item, const QColor& windowColor)
{
    QList<const QQuickItem*> layers;
    for (const QQuickItem* node = item->parentItem(); node; node = node->parentItem()) {
        if (node->inherits("QQuickRectangle"))
            layers.prepend(node);
        if (node->inherits("QQuickControl")) {
            const auto* background = node->property("background").value<QQuickItem*>();
            if (background && background->inherits("QQuickRectangle") && background->isVisible())
                layers.prepend(background);
        }
    }
    QColor color = windowColor;
    for (const QQuickItem* layer : layers)
        color = over(layer->property("color").value<QColor>(), color);
    return color;
}

struct Finding
{
    QString text;
    double ratio = 0;
};

/// Every shown text under `root` whose contrast falls below what its size needs.
QList<Finding> illegibleTexts(QQuickItem* root, const QColor& windowColor, int* checked)
{
    QList<Finding> findings;
    QList<QQuickItem*> pending{root};
    while (!pending.isEmpty()) {
        QQuickItem* item = pending.takeLast();
        pending.append(item->childItems());
        const bool isText = item->inherits("QQuickText") || item->inherits("QQuickTextInput");
        if (!isText || !mustBeLegible(item))
            continue;
        QString text = item->property("text").toString();
        if (text.trimmed().isEmpty() || item->width() <= 0)
            continue;
        const QFont font = item->property("font").value<QFont>();
        const double pixelSize =
            font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * 4 / 3;
        const bool large = pixelSize >= 24 || (pixelSize >= 18.66 && font.bold());
        const QColor background = backgroundBehind(item, windowColor);
        const QColor ink = over(item->property("color").value<QColor>(), background);
        const double ratio = contrast(ink, background);
        ++*checked;
        if (ratio < (large ? 3.0 : 4.5))
            findings.append({text.left(40), ratio});
    }
    return findings;
}

} // namespace

class TestViewThemes : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QQuickView> show(const QString& viewName, const QVariantMap& properties,
                                     QSize size)
    {
        return showSource(QUrl(QStringLiteral("qrc:/Tessaline/qml/%1.qml").arg(viewName)),
                          properties, size);
    }

    std::unique_ptr<QQuickView> showCheatSheet(QObject* model)
    {
        return show(QStringLiteral("ContentView"),
                    {{QStringLiteral("model"), QVariant::fromValue(model)},
                     {QStringLiteral("navigator"), QVariant::fromValue(m_fixture.navigator())}},
                    QSize(720, 560));
    }

    std::unique_ptr<QQuickView> showSource(const QUrl& source, const QVariantMap& properties,
                                           QSize size)
    {
        auto view = std::make_unique<QQuickView>(m_engine.get(), nullptr);
        view->setResizeMode(QQuickView::SizeRootObjectToView);
        view->resize(size);
        view->setInitialProperties(properties);
        view->setSource(source);
        if (!view->rootObject()) {
            qWarning() << view->errors();
            return nullptr;
        }
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            return nullptr;
        return view;
    }

    void check(QQuickView& view, const QString& name)
    {
        QFETCH(bool, dark);
        QTest::qWait(50);
        const QString folder = qEnvironmentVariable("TESSALINE_SCREENSHOT_DIR");
        if (!folder.isEmpty()) {
            QDir().mkpath(folder);
            view.grabWindow().save(
                QStringLiteral("%1/%2-%3.png")
                    .arg(folder, name, dark ? QStringLiteral("dark") : QStringLiteral("light")));
        }
        int checked = 0;
        const QList<Finding> findings = illegibleTexts(
            view.rootObject(), QGuiApplication::palette().color(QPalette::Window), &checked);
        QVERIFY2(checked > 0, "no text was found to check");
        QStringList lines;
        for (const Finding& finding : findings)
            lines << QStringLiteral("\"%1\" %2:1").arg(finding.text).arg(finding.ratio, 0, 'f', 2);
        QVERIFY2(findings.isEmpty(), qPrintable(lines.join(QStringLiteral(", "))));
    }

    std::unique_ptr<QQmlEngine> m_engine;
    ViewFixture m_fixture;

private Q_SLOTS:
    void initTestCase()
    {
        // The application's style, chosen before any control exists.
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImageProvider(QStringLiteral("symbol"), new Tessaline::SymbolImageProvider);
        m_engine->addImageProvider(
            QStringLiteral("appicon"),
            new Tessaline::AppIconProvider([](const QString&) { return QString(); }));
    }

    void init()
    {
        QFETCH(bool, dark);
        QGuiApplication::setPalette(dark ? darkPalette() : lightPalette());
        m_fixture.reset();
    }

    void cleanup() { m_fixture.reset(); }

    void cleanupTestCase() { m_engine.reset(); }

    void cheatSheet_data() { themes(); }
    void cheatSheet()
    {
        auto view = showCheatSheet(
            m_fixture.cheatSheet(QStringLiteral("Editor"), QStringLiteral("org.example.Editor")));
        QVERIFY(view);
        check(*view, QStringLiteral("hud"));
    }

    void cheatSheetWithAButtonReachedByTab_data() { themes(); }
    void cheatSheetWithAButtonReachedByTab()
    {
        auto view = showCheatSheet(
            m_fixture.cheatSheet(QStringLiteral("Editor"), QStringLiteral("org.example.Editor")));
        QVERIFY(view);
        // From the search field: the list, four helpers, "Browse every saved shortcut", then
        // "Settings".
        for (int i = 0; i < 7; ++i)
            QTest::keyClick(view.get(), Qt::Key_Tab);
        QQuickItem* focused = view->activeFocusItem();
        QVERIFY(focused);
        QCOMPARE(focused->property("help").toString(), QStringLiteral("Settings"));
        auto* ring = focused->findChild<QQuickItem*>(QStringLiteral("focusRing"));
        QVERIFY(ring);
        QVERIFY(ring->isVisible());
        // The ring stands out from the window as any control's outline must (3 : 1).
        const QColor window = QGuiApplication::palette().color(QPalette::Window);
        auto* pen = ring->property("border").value<QObject*>();
        QVERIFY(pen);
        const QColor ringColor = pen->property("color").value<QColor>();
        QCOMPARE(ringColor, QGuiApplication::palette().color(QPalette::Highlight));
        QVERIFY2(contrast(ringColor, window) >= 3.0,
                 qPrintable(QString::number(contrast(ringColor, window), 'f', 2)));
        check(*view, QStringLiteral("hud-tab-focus"));
    }

    void cheatSheetForAMissingAppWithScanMessage_data() { themes(); }
    void cheatSheetForAMissingAppWithScanMessage()
    {
        QObject* model =
            m_fixture.cheatSheet(QStringLiteral("Nowhere"), QStringLiteral("org.example.Nowhere"));
        m_fixture.startScan(QStringLiteral("Nowhere"), QStringLiteral("org.example.Nowhere"));
        auto view = showCheatSheet(model);
        QVERIFY(view);
        QTRY_VERIFY(!model->property("scanStatus").toString().isEmpty());
        check(*view, QStringLiteral("hud-missing"));
    }

    void cheatSheetAfterARescanThatFoundChanges_data() { themes(); }
    void cheatSheetAfterARescanThatFoundChanges()
    {
        QObject* model =
            m_fixture.cheatSheet(QStringLiteral("Editor"), QStringLiteral("org.example.Editor"));
        QVERIFY(m_fixture.scanWithDrift(QStringLiteral("Editor"),
                                        QStringLiteral("org.example.Editor")));
        auto view = showCheatSheet(model);
        QVERIFY(view);
        QVERIFY(model->property("scanStatus")
                    .toString()
                    .endsWith(QStringLiteral("2 changed since the last scan.")));
        // The scanned rows only, all filed under "File": the two stale ones muted and tagged,
        // the Cut that moved with its old chord.
        model->setProperty("filter", QStringLiteral("file"));
        QCOMPARE(model->property("flatCount").toInt(), 3);
        check(*view, QStringLiteral("hud-drift"));
    }

    void cheatSheetWithoutMatches_data() { themes(); }
    void cheatSheetWithoutMatches()
    {
        QObject* model =
            m_fixture.cheatSheet(QStringLiteral("Editor"), QStringLiteral("org.example.Editor"));
        auto view = showCheatSheet(model);
        QVERIFY(view);
        // The view empties the search when it appears; the query comes after.
        model->setProperty("filter", QStringLiteral("zzqx"));
        QCOMPARE(model->property("flatCount").toInt(), 0);
        auto* emptySearch =
            view->rootObject()->findChild<QQuickItem*>(QStringLiteral("emptySearch"));
        QVERIFY(emptySearch);
        QTRY_VERIFY(emptySearch->isVisible());
        check(*view, QStringLiteral("hud-empty"));
    }

    void browser_data() { themes(); }
    void browser()
    {
        auto view = show(QStringLiteral("VaultBrowserView"),
                         {{QStringLiteral("model"), QVariant::fromValue(m_fixture.browser())}},
                         QSize(760, 620));
        QVERIFY(view);
        check(*view, QStringLiteral("browser"));
    }

    void settings_data() { themes(); }
    void settings()
    {
        auto view = show(QStringLiteral("SettingsView"),
                         {{QStringLiteral("model"), QVariant::fromValue(m_fixture.settings())}},
                         QSize(560, 520));
        QVERIFY(view);
        check(*view, QStringLiteral("settings"));
    }

    void welcome_data() { themes(); }
    void welcome()
    {
        auto view =
            show(QStringLiteral("OnboardingView"),
                 {{QStringLiteral("accessibility"), QVariant::fromValue(m_fixture.settings())}},
                 QSize(600, 500));
        QVERIFY(view);
        check(*view, QStringLiteral("welcome"));
    }

    void coachTip_data() { themes(); }
    void coachTip()
    {
        // The panel as the application shows it: the presenter builds it with the views' engine.
        Tessaline::CoachTipPanelPresenter presenter(*m_engine);
        const auto panel = presenter.showPanel(
            {QStringLiteral("volume-precision"), QStringLiteral("Tiny volume steps"),
             QStringLiteral("Hold Shift while changing the volume.")},
            QRect(40, 40, 360, 132), [] {}, [] {});
        QQuickView* view = presenter.window(panel);
        QVERIFY(view);
        QVERIFY2(
            view->rootObject(),
            qPrintable(view->errors().isEmpty() ? QString() : view->errors().first().toString()));
        QVERIFY(QTest::qWaitForWindowExposed(view));
        check(*view, QStringLiteral("coach-tip"));
        presenter.hidePanel(panel);
    }

private:
    static void themes()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
};

QTEST_MAIN(TestViewThemes)
#include "tst_ViewThemes.moc"
