// SPDX-License-Identifier: MIT
// Application icons for the views: the file or theme icon a desktop entry names, drawn at the
// requested size, and a blank pixel (which the view takes for "no icon") for apps without one.
#include "AppIconProvider.h"

#include <QTest>

using Tessaline::AppIconProvider;

class TestAppIconProvider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void iconFileIsDrawnAtTheRequestedSize()
    {
        const QString logo = QStringLiteral(TESSALINE_SOURCE_DIR "/resources/TessalineLogo.png");
        QVERIFY(QFile::exists(logo));
        AppIconProvider provider([&](const QString& bundleID) -> std::optional<QString> {
            if (bundleID == QStringLiteral("org.example.Logo"))
                return logo;
            return std::nullopt;
        });
        QSize size;
        const QImage image =
            provider.requestImage(QStringLiteral("org.example.Logo"), &size, QSize(64, 64));
        QCOMPARE(image.size(), QSize(64, 64));
        QCOMPARE(size, image.size());
        QVERIFY(image.pixelColor(32, 32).alpha() > 0);
    }

    void appWithoutIconGetsABlankPixel_data()
    {
        QTest::addColumn<QString>("iconName");
        QTest::addRow("no Icon key") << QString();
        QTest::addRow("theme has no such icon") << QStringLiteral("no-such-icon-anywhere");
        QTest::addRow("missing file") << QStringLiteral("/nonexistent/icon.png");
    }

    void appWithoutIconGetsABlankPixel()
    {
        QFETCH(QString, iconName);
        AppIconProvider provider([&](const QString&) -> std::optional<QString> {
            if (iconName.isEmpty())
                return std::nullopt;
            return iconName;
        });
        QSize size;
        const QImage image =
            provider.requestImage(QStringLiteral("org.example.Plain"), &size, QSize(64, 64));
        QCOMPARE(image.size(), QSize(1, 1));
        QCOMPARE(size, QSize(1, 1));
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    }

    void anIconInstalledLaterIsFound()
    {
        std::optional<QString> installed;
        AppIconProvider provider([&](const QString&) { return installed; });
        QSize size;
        QCOMPARE(
            provider.requestImage(QStringLiteral("org.example.Late"), &size, QSize(32, 32)).size(),
            QSize(1, 1));
        installed = QStringLiteral(TESSALINE_SOURCE_DIR "/resources/TessalineLogo.png");
        QCOMPARE(
            provider.requestImage(QStringLiteral("org.example.Late"), &size, QSize(32, 32)).size(),
            QSize(32, 32));
    }
};

QTEST_MAIN(TestAppIconProvider)
#include "tst_AppIconProvider.moc"
