// SPDX-License-Identifier: MIT
// The tray icon's command menu: its entries, their order and what choosing each one does.
#include "FakeTrayAppearance.h"
#include "MenuBarController.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QMenu>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Tessaline;
using Tessaline::Testing::FakeTrayAppearance;

namespace {

// The distinct colours of an icon's visible pixels, drawn at `side` pixels.
QSet<QRgb> visibleColors(const QIcon& icon, int side = 32)
{
    const QImage image = icon.pixmap(side, side).toImage().convertToFormat(QImage::Format_ARGB32);
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 255)
                colors.insert(qRgb(qRed(pixel), qGreen(pixel), qBlue(pixel)));
        }
    }
    return colors;
}

} // namespace

class TestMenuBarController : public QObject
{
    Q_OBJECT

    QStringList m_calls;
    QList<TextHelperAction> m_helpers;
    FakeTrayAppearance m_tray;

    MenuBarController::Actions recordingActions()
    {
        auto record = [this](const QString& name) { return [this, name] { m_calls << name; }; };
        return MenuBarController::Actions{
            record(QStringLiteral("toggleHUD")),
            record(QStringLiteral("browseAll")),
            record(QStringLiteral("scanCurrentApp")),
            record(QStringLiteral("scanOpenApps")),
            record(QStringLiteral("showSettings")),
            record(QStringLiteral("showOnboarding")),
            [this](TextHelperAction action) { m_helpers << action; },
        };
    }

private Q_SLOTS:
    void init()
    {
        m_calls.clear();
        m_helpers.clear();
        m_tray = FakeTrayAppearance();
    }

    void menuHasTenEntriesInOrder()
    {
        MenuBarController controller(recordingActions(), m_tray);
        std::unique_ptr<QMenu> menu(controller.buildMenu());
        const QList<QAction*> entries = menu->actions();
        QCOMPARE(entries.size(), 10);
        const QStringList titles = {QStringLiteral("Open Cheat Sheet"),
                                    QStringLiteral("Browse All Shortcuts"),
                                    QStringLiteral("Scan Current App Menus"),
                                    QStringLiteral("Scan Open Apps"),
                                    QStringLiteral("Helper Actions"),
                                    QString(),
                                    QStringLiteral("Settings"),
                                    QStringLiteral("First-Run Guide"),
                                    QString(),
                                    QStringLiteral("Quit Tessaline")};
        for (int i = 0; i < entries.size(); ++i) {
            // Separators are the sixth and the ninth entries.
            QCOMPARE(entries.at(i)->isSeparator(), i == 5 || i == 8);
            QCOMPARE(entries.at(i)->text(), titles.at(i));
        }
        QCOMPARE(entries.at(6)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Comma));
        QCOMPARE(entries.at(9)->shortcut(), QKeySequence(QKeySequence::Quit));
        for (int i : {0, 1, 2, 3, 4, 7})
            QVERIFY(entries.at(i)->shortcut().isEmpty());
    }

    void helperSubmenuHoldsTheFourHelpersWithTheirRawValues()
    {
        MenuBarController controller(recordingActions(), m_tray);
        std::unique_ptr<QMenu> menu(controller.buildMenu());
        QMenu* helpers = menu->actions().at(4)->menu();
        QVERIFY(helpers);
        const QList<QAction*> items = helpers->actions();
        QCOMPARE(items.size(), 4);
        const QList<std::pair<QString, QString>> expected = {
            {QStringLiteral("Insert Bullet"), QStringLiteral("bullet")},
            {QStringLiteral("Insert Checklist"), QStringLiteral("checklist")},
            {QStringLiteral("Insert Divider"), QStringLiteral("divider")},
            {QStringLiteral("Paste Plain Text"), QStringLiteral("pastePlainText")}};
        for (int i = 0; i < items.size(); ++i) {
            QCOMPARE(items.at(i)->text(), expected.at(i).first);
            QCOMPARE(items.at(i)->data().toString(), expected.at(i).second);
            QVERIFY(items.at(i)->shortcut().isEmpty());
        }
        items.at(3)->trigger();
        items.at(0)->trigger();
        QCOMPARE(m_helpers, (QList<TextHelperAction>{TextHelperAction::PastePlainText,
                                                     TextHelperAction::Bullet}));
        QVERIFY(m_calls.isEmpty());
    }

    void entriesCallTheirActions()
    {
        MenuBarController controller(recordingActions(), m_tray);
        std::unique_ptr<QMenu> menu(controller.buildMenu());
        const QList<QAction*> entries = menu->actions();
        for (int i : {0, 1, 2, 3, 6, 7})
            entries.at(i)->trigger();
        QCOMPARE(m_calls,
                 (QStringList{QStringLiteral("toggleHUD"), QStringLiteral("browseAll"),
                              QStringLiteral("scanCurrentApp"), QStringLiteral("scanOpenApps"),
                              QStringLiteral("showSettings"), QStringLiteral("showOnboarding")}));
    }

    void eachMenuIsBuiltAnew()
    {
        MenuBarController controller(recordingActions(), m_tray);
        std::unique_ptr<QMenu> first(controller.buildMenu());
        std::unique_ptr<QMenu> second(controller.buildMenu());
        QVERIFY(first.get() != second.get());
        QCOMPARE(second->actions().size(), 10);
    }

    void helperSelectedRunsKnownHelpersAndIgnoresUnknownValues()
    {
        MenuBarController controller(recordingActions(), m_tray);
        controller.helperSelected(QStringLiteral("divider"));
        QCOMPARE(m_helpers, QList<TextHelperAction>{TextHelperAction::Divider});
        controller.helperSelected(QStringLiteral("sparkles"));
        controller.helperSelected(QString());
        controller.helperSelected(QStringLiteral("Divider"));
        QCOMPARE(m_helpers, QList<TextHelperAction>{TextHelperAction::Divider});
        QVERIFY(m_calls.isEmpty());
    }

    void leftClickTogglesTheHUD()
    {
        MenuBarController controller(recordingActions(), m_tray);
        controller.statusItemClicked(QSystemTrayIcon::Trigger);
        controller.statusItemClicked(QSystemTrayIcon::Trigger);
        QCOMPARE(m_calls, (QStringList{QStringLiteral("toggleHUD"), QStringLiteral("toggleHUD")}));
        QCOMPARE(controller.statusItem().toolTip(), QStringLiteral("Tessaline"));
        QVERIFY(!controller.statusItem().icon().isNull());
    }

    // The icon is the keyboard glyph in one colour: the tray's own when it names one.
    void trayIconIsTheGlyphInTheTraysColour()
    {
        m_tray.foreground = TrayAppearance::Rgb{200, 10, 20};
        MenuBarController controller(recordingActions(), m_tray);
        QCOMPARE(visibleColors(controller.statusItem().icon()), QSet<QRgb>{qRgb(200, 10, 20)});
        QVERIFY(controller.statusItem().icon().name().isEmpty());
    }

    // Without a place on screen the panel cannot be read: a grey that reads on light and dark.
    void anUnplacedIconIsNeutral()
    {
        m_tray.panel = TrayAppearance::Rgb{0, 0, 0};
        MenuBarController controller(recordingActions(), m_tray);
        const TrayAppearance::Rgb grey = TrayAppearance::kNeutralGlyph;
        QCOMPARE(visibleColors(controller.statusItem().icon()),
                 QSet<QRgb>{qRgb(grey.red, grey.green, grey.blue)});
    }

    // A host that takes icons by name gets the theme's symbolic icon, which it may recolour.
    void aHostTakingNamesGetsTheThemedIcon()
    {
        QTemporaryDir themes;
        QVERIFY(themes.isValid());
        const QString theme = themes.filePath(QStringLiteral("hicolor"));
        QVERIFY(QDir().mkpath(theme + QStringLiteral("/symbolic/apps")));
        QFile index(theme + QStringLiteral("/index.theme"));
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=Hicolor\nDirectories=symbolic/apps\n\n"
                    "[symbolic/apps]\nSize=16\nMinSize=8\nMaxSize=512\nType=Scalable\n");
        index.close();
        QVERIFY(QFile::copy(QStringLiteral(TESSALINE_SOURCE_DIR
                                           "/resources/icons/org.tessaline.Tessaline-symbolic.svg"),
                            theme + QStringLiteral("/symbolic/apps/"
                                                   "org.tessaline.Tessaline-symbolic.svg")));
        const QStringList searchPaths = QIcon::themeSearchPaths();
        const QString themeName = QIcon::themeName();
        QIcon::setThemeSearchPaths({themes.path()});
        QIcon::setThemeName(QStringLiteral("hicolor"));

        m_tray.takesIconNames = true;
        MenuBarController controller(recordingActions(), m_tray);
        const QString name = controller.statusItem().icon().name();
        QIcon::setThemeSearchPaths(searchPaths);
        QIcon::setThemeName(themeName);
        QCOMPARE(name, QString::fromLatin1(MenuBarController::kTrayIconName));
    }
};

QTEST_MAIN(TestMenuBarController)
#include "tst_MenuBarController.moc"
