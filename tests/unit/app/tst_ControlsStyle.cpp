// SPDX-License-Identifier: MIT
// The controls style: the user's choice, else KDE's desktop style where installed, else Fusion.
#include "ControlsStyle.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Tessaline;

class TestControlsStyle : public QObject
{
    Q_OBJECT

private slots:
    void fusionWhenNoDesktopStyleIsInstalled()
    {
        QTemporaryDir empty;
        QCOMPARE(ControlsStyle::pick(QString(), {empty.path()}), QStringLiteral("Fusion"));
        QCOMPARE(ControlsStyle::pick(QString(), {}), QStringLiteral("Fusion"));
    }

    void kdeDesktopStyleWhereItIsInstalled()
    {
        QTemporaryDir empty;
        QTemporaryDir imports;
        QVERIFY(QDir(imports.path()).mkpath(QStringLiteral("org/kde/desktop")));
        QFile qmldir(imports.filePath(QStringLiteral("org/kde/desktop/qmldir")));
        QVERIFY(qmldir.open(QIODevice::WriteOnly));
        qmldir.write("module org.kde.desktop\n");
        qmldir.close();
        QCOMPARE(ControlsStyle::pick(QString(), {empty.path(), imports.path()}),
                 QStringLiteral("org.kde.desktop"));
        // A folder without its qmldir is no module.
        QVERIFY(qmldir.remove());
        QCOMPARE(ControlsStyle::pick(QString(), {imports.path()}), QStringLiteral("Fusion"));
    }

    void theUsersChoiceWins()
    {
        QCOMPARE(ControlsStyle::pick(QStringLiteral("Material"), {}), QStringLiteral("Material"));
    }

    void thisDesktopFollowsTheEnvironment()
    {
        qputenv("QT_QUICK_CONTROLS_STYLE", "Basic");
        QCOMPARE(ControlsStyle::forThisDesktop(), QStringLiteral("Basic"));
        qunsetenv("QT_QUICK_CONTROLS_STYLE");
        QTemporaryDir imports;
        QVERIFY(QDir(imports.path()).mkpath(QStringLiteral("org/kde/desktop")));
        QFile qmldir(imports.filePath(QStringLiteral("org/kde/desktop/qmldir")));
        QVERIFY(qmldir.open(QIODevice::WriteOnly));
        qmldir.close();
        qputenv("QML_IMPORT_PATH", imports.path().toLocal8Bit());
        QCOMPARE(ControlsStyle::forThisDesktop(), QStringLiteral("org.kde.desktop"));
        qunsetenv("QML_IMPORT_PATH");
    }
};

QTEST_APPLESS_MAIN(TestControlsStyle)
#include "tst_ControlsStyle.moc"
