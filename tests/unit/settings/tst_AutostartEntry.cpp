// SPDX-License-Identifier: MIT
#include "settings/AutostartEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

using Tessaline::AutostartEntry;

class TestAutostartEntry : public QObject
{
    Q_OBJECT

private slots:
    void offUntilWritten();
    void enablingWritesAnEntryThatStartsTheTrayOnly();
    void disablingRemovesTheEntry();
    void removingTheFileByHandReadsAsOff();
    void disablingWhenAbsentSucceeds();
    void defaultFolderIsTheUsersConfigFolder();
    void unwritableFolderIsReported();
    void execArgumentQuoting_data();
    void execArgumentQuoting();

private:
    QTemporaryDir m_dir;
};

void TestAutostartEntry::offUntilWritten()
{
    const AutostartEntry entry(m_dir.filePath(QStringLiteral("off")));
    QVERIFY(!entry.isEnabled());
    QCOMPARE(entry.filePath(),
             m_dir.filePath(QStringLiteral("off/autostart/org.tessaline.Tessaline.desktop")));
}

void TestAutostartEntry::enablingWritesAnEntryThatStartsTheTrayOnly()
{
    AutostartEntry entry(m_dir.filePath(QStringLiteral("on")),
                         QStringLiteral("/usr/bin/tessaline"));
    const Tessaline::Expected<void> written = entry.setEnabled(true);
    QVERIFY2(written, written ? "" : qPrintable(written.error()));
    QVERIFY(entry.isEnabled());
    QFile file(entry.filePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.first(), QByteArray("[Desktop Entry]"));
    QVERIFY(lines.contains("Type=Application"));
    QVERIFY(lines.contains("Name=Tessaline"));
    QVERIFY(lines.contains("Exec=/usr/bin/tessaline --autostart"));
    QVERIFY(lines.contains("Icon=org.tessaline.Tessaline"));
    // Writing again keeps one entry with the same text.
    QVERIFY(entry.setEnabled(true));
    QCOMPARE(QDir(QFileInfo(entry.filePath()).path()).entryList(QDir::Files).size(), 1);
}

void TestAutostartEntry::disablingRemovesTheEntry()
{
    AutostartEntry entry(m_dir.filePath(QStringLiteral("toggle")));
    QVERIFY(entry.setEnabled(true));
    QVERIFY(QFileInfo::exists(entry.filePath()));
    QVERIFY(entry.setEnabled(false));
    QVERIFY(!QFileInfo::exists(entry.filePath()));
    QVERIFY(!entry.isEnabled());
    // The folder stays: other programs keep their entries there.
    QVERIFY(QFileInfo(QFileInfo(entry.filePath()).path()).isDir());
}

void TestAutostartEntry::removingTheFileByHandReadsAsOff()
{
    AutostartEntry entry(m_dir.filePath(QStringLiteral("by-hand")));
    QVERIFY(entry.setEnabled(true));
    QVERIFY(QFile::remove(entry.filePath()));
    QVERIFY(!entry.isEnabled());
    // A file put there by hand reads as on.
    QFile file(entry.filePath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(AutostartEntry(m_dir.filePath(QStringLiteral("by-hand"))).isEnabled());
}

void TestAutostartEntry::disablingWhenAbsentSucceeds()
{
    AutostartEntry entry(m_dir.filePath(QStringLiteral("absent")));
    QVERIFY(entry.setEnabled(false));
    QVERIFY(!entry.isEnabled());
    QVERIFY(!QFileInfo::exists(QFileInfo(entry.filePath()).path()));
}

void TestAutostartEntry::defaultFolderIsTheUsersConfigFolder()
{
    // The test runs with XDG_CONFIG_HOME set to its private home.
    const QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    QVERIFY(!configHome.isEmpty());
    QCOMPARE(
        AutostartEntry().filePath(),
        QDir(configHome).filePath(QStringLiteral("autostart/org.tessaline.Tessaline.desktop")));
}

void TestAutostartEntry::unwritableFolderIsReported()
{
    // "autostart" is a plain file here, so no entry can be written inside it.
    const QString home = m_dir.filePath(QStringLiteral("blocked"));
    QVERIFY(QDir().mkpath(home));
    QFile blocker(home + QStringLiteral("/autostart"));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    AutostartEntry entry(home);
    const Tessaline::Expected<void> written = entry.setEnabled(true);
    QVERIFY(!written);
    QVERIFY(written.error().contains(home + QStringLiteral("/autostart")));
    QVERIFY(!entry.isEnabled());
    QVERIFY(QFileInfo(blocker.fileName()).isFile());
}

void TestAutostartEntry::execArgumentQuoting_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("argument");
    QTest::addRow("plain") << "/usr/bin/tessaline"
                           << "/usr/bin/tessaline";
    QTest::addRow("space") << "/opt/my apps/tessaline"
                           << "\"/opt/my apps/tessaline\"";
    QTest::addRow("dollar and quote") << "/opt/$x\"y/tessaline"
                                      << "\"/opt/\\\\$x\\\\\"y/tessaline\"";
    QTest::addRow("percent") << "/opt/100%/tessaline"
                             << "/opt/100%%/tessaline";
}

void TestAutostartEntry::execArgumentQuoting()
{
    QFETCH(QString, program);
    QFETCH(QString, argument);
    QCOMPARE(AutostartEntry::execArgument(program), argument);
}

QTEST_GUILESS_MAIN(TestAutostartEntry)
#include "tst_AutostartEntry.moc"
