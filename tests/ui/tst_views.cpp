// SPDX-License-Identifier: MIT
// Runs the Qt Quick view tests (tst_*.qml in this folder) on the real views, with the models
// built by ViewFixture.
#include "AppIconProvider.h"
#include "SymbolImageProvider.h"
#include "ViewFixture.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest>

Q_IMPORT_QML_PLUGIN(TessalinePlugin)

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        engine->addImageProvider(QStringLiteral("symbol"), new Tessaline::SymbolImageProvider);
        // No app of the fixture has an icon: the views fall back to their symbols.
        engine->addImageProvider(
            QStringLiteral("appicon"),
            new Tessaline::AppIconProvider([](const QString&) { return QString(); }));
        engine->rootContext()->setContextProperty(QStringLiteral("fixture"), &m_fixture);
    }

    void cleanupTestCase() { m_fixture.reset(); }

private:
    ViewFixture m_fixture;
};

QUICK_TEST_MAIN_WITH_SETUP(views, Setup)

#include "tst_views.moc"
