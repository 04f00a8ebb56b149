// SPDX-License-Identifier: MIT
// A small Qt Widgets window with a menu bar, for scanning a Qt application's menus. With
// "--items N" a "Library" menu adds N more items in submenus of 500, one in a hundred with a
// shortcut: a menu bar far larger than any reader should walk whole. Each menu item that runs
// prints "triggered <title>" on standard output, so that a test can tell which ones ran. With
// SCAN_SAMPLE_MENU_CHANGED=1 in the environment the menus are those of a later version: Save
// moved to Ctrl+Alt+S and Quit is gone, for tests of what a rescan finds changed.
#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype itemsOption = arguments.indexOf(QStringLiteral("--items"));
    const int extraItems = itemsOption >= 0 ? arguments.value(itemsOption + 1).toInt() : 0;
    const bool changed = qEnvironmentVariableIntValue("SCAN_SAMPLE_MENU_CHANGED") == 1;
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Scan Menu Sample"));
    window.setCentralWidget(new QPlainTextEdit(&window));

    QMenu* file = window.menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&New"))->setShortcut(QKeySequence(QStringLiteral("Ctrl+N")));
    file->addAction(QStringLiteral("&Open…"))->setShortcut(QKeySequence(QStringLiteral("Ctrl+O")));
    file->addAction(QStringLiteral("&Save"))
        ->setShortcut(
            QKeySequence(changed ? QStringLiteral("Ctrl+Alt+S") : QStringLiteral("Ctrl+S")));
    file->addAction(QStringLiteral("Save &As..."))
        ->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    file->addSeparator();
    if (!changed)
        file->addAction(QStringLiteral("&Quit"))
            ->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));

    QMenu* edit = window.menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->addAction(QStringLiteral("&Undo"))->setShortcut(QKeySequence(QStringLiteral("Ctrl+Z")));
    edit->addAction(QStringLiteral("&Delete"))->setShortcut(QKeySequence(QStringLiteral("Del")));
    edit->addAction(QStringLiteral("&Comment"))
        ->setShortcut(QKeySequence(QStringLiteral("Ctrl+K, Ctrl+C")));
    QAction* disabled = edit->addAction(QStringLiteral("&Redo"));
    disabled->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+Z")));
    disabled->setEnabled(false);
    QMenu* move = edit->addMenu(QStringLiteral("&Move"));
    move->addAction(QStringLiteral("Line &Up"))
        ->setShortcut(QKeySequence(QStringLiteral("Alt+Up")));
    move->addAction(QStringLiteral("Line D&own"))
        ->setShortcut(QKeySequence(QStringLiteral("Alt+Down")));

    QMenu* view = window.menuBar()->addMenu(QStringLiteral("&View"));
    view->addAction(QStringLiteral("&Full Screen"))
        ->setShortcut(QKeySequence(QStringLiteral("F11")));
    view->addAction(QStringLiteral("&Reload"))
        ->setShortcut(QKeySequence(QStringLiteral("Meta+Shift+F5")));
    view->addAction(QStringLiteral("Zoom &In"))
        ->setShortcut(QKeySequence(QStringLiteral("Ctrl++")));

    QMenu* help = window.menuBar()->addMenu(QStringLiteral("&Help"));
    help->addAction(QStringLiteral("&About"));

    if (extraItems > 0) {
        constexpr int kPerSubmenu = 500;
        QMenu* library = window.menuBar()->addMenu(QStringLiteral("&Library"));
        QMenu* shelf = nullptr;
        for (int i = 0; i < extraItems; ++i) {
            if (i % kPerSubmenu == 0)
                shelf = library->addMenu(QStringLiteral("Shelf %1").arg(i / kPerSubmenu + 1));
            QAction* item = shelf->addAction(QStringLiteral("Volume %1").arg(i + 1));
            if (i % 100 == 0)
                item->setShortcut(
                    QKeySequence(QStringLiteral("Ctrl+Alt+F%1").arg(i / 100 % 12 + 1)));
        }
    }

    QObject::connect(window.menuBar(), &QMenuBar::triggered, &window, [](QAction* action) {
        std::printf("triggered %s\n", qPrintable(action->text().remove(QLatin1Char('&'))));
        std::fflush(stdout);
    });

    window.resize(480, 320);
    window.show();
    return application.exec();
}
