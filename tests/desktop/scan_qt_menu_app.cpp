// SPDX-License-Identifier: MIT
// A small Qt Widgets window with a menu bar, for scanning a Qt application's menus.
#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Scan Menu Sample"));
    window.setCentralWidget(new QPlainTextEdit(&window));

    QMenu* file = window.menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&New"))->setShortcut(QKeySequence(QStringLiteral("Ctrl+N")));
    file->addAction(QStringLiteral("&Open…"))->setShortcut(QKeySequence(QStringLiteral("Ctrl+O")));
    file->addAction(QStringLiteral("&Save"))->setShortcut(QKeySequence(QStringLiteral("Ctrl+S")));
    file->addAction(QStringLiteral("Save &As..."))
        ->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    file->addSeparator();
    file->addAction(QStringLiteral("&Quit"))->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));

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

    window.resize(480, 320);
    window.show();
    return application.exec();
}
