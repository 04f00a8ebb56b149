// SPDX-License-Identifier: MIT
// `tessaline-vault which` and `conflicts`, run as a user would, over a vault and desktop
// settings of the test's own: the desktop is KDE Plasma with one screenshot binding, and no
// GSettings schemas are installed.
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <optional>

namespace {

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

const char* const kVault = R"({
  "global": [
    {"name": "Store", "chord": "Ctrl+S"},
    {"name": "Copy", "chord": "⌃ C"}
  ],
  "apps": [
    {"name": "Editor", "bundleID": "org.example.Editor", "shortcuts": [
      {"name": "Save", "chord": "⌃ S"},
      {"name": "Save All", "chord": "⌃S"},
      {"name": "Window shot", "chord": "⌘ Print"},
      {"name": "Quit", "chord": "⌃ Q"}
    ]},
    {"name": "Viewer", "bundleID": "org.example.Viewer", "shortcuts": [
      {"name": "Save copy", "chord": "⌃ S"}
    ]}
  ]
})";

const char* const kPlasmaShortcuts = "[org.kde.spectacle.desktop]\n"
                                     "ActiveWindowScreenShot=Meta+Print,Meta+Print,Capture "
                                     "Active Window\n";

} // namespace

class TestLookupCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.emplace().isValid());
        const QDir root(m_dir->path());
        QVERIFY(root.mkpath(QStringLiteral("data/Tessaline")));
        QVERIFY(root.mkpath(QStringLiteral("config")));
        QVERIFY(root.mkpath(QStringLiteral("no-schemas")));
        write(QStringLiteral("data/Tessaline/keybinds.json"), kVault);
        write(QStringLiteral("config/kglobalshortcutsrc"), kPlasmaShortcuts);
    }

    void whichListsEverySourceInBothWrittenForms()
    {
        const QString expected = QStringLiteral("Editor\tSave\tCtrl+S\n"
                                                "Editor\tSave All\tCtrl+S\n"
                                                "Global\tStore\tCtrl+S\n");
        for (const QString& chord : {QStringLiteral("Ctrl+S"), QStringLiteral("⌃ S")}) {
            const Run result =
                run({u"which"_qs, chord, u"--bundle-id"_qs, u"org.example.Editor"_qs});
            QCOMPARE(result.exitCode, 0);
            QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
            QCOMPARE(result.out, expected);
        }
        // Without a bundle id every pack is asked.
        const Run all = run({u"which"_qs, u"ctrl+s"_qs});
        QCOMPARE(all.out, expected.left(expected.indexOf(u"Global"_qs)) +
                              u"Viewer\tSave copy\tCtrl+S\nGlobal\tStore\tCtrl+S\n"_qs);
    }

    void whichNamesTheDesktopSetting()
    {
        const Run result =
            run({u"which"_qs, u"Super+Print"_qs, u"--bundle-id"_qs, u"org.example.Editor"_qs});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QStringLiteral("Editor\tWindow shot\tSuper+Print\n"
                                            "Desktop: kglobalshortcutsrc\tScreenshot of a "
                                            "window\tSuper+Print\n"));
    }

    void whichAsJson()
    {
        const Run result = run({u"--json"_qs, u"which"_qs, u"⌃ ⇧ S"_qs});
        QCOMPARE(result.exitCode, 0);
        const QJsonObject object = QJsonDocument::fromJson(result.out.toUtf8()).object();
        QCOMPARE(object.value(u"chord"_qs).toString(), u"⌃ ⇧ S"_qs);
        QVERIFY(object.value(u"bundleID"_qs).isNull());
        QVERIFY(object.value(u"shortcuts"_qs).toArray().isEmpty());

        const Run found = run({u"--json"_qs, u"which"_qs, u"Super+Print"_qs});
        const QJsonArray shortcuts =
            QJsonDocument::fromJson(found.out.toUtf8()).object().value(u"shortcuts"_qs).toArray();
        QCOMPARE(shortcuts.size(), 2);
        QCOMPARE(shortcuts.at(0).toObject().value(u"origin"_qs).toString(), u"app"_qs);
        QCOMPARE(shortcuts.at(0).toObject().value(u"chord"_qs).toString(), u"⌘ Print"_qs);
        QCOMPARE(shortcuts.at(1).toObject().value(u"origin"_qs).toString(), u"desktop"_qs);
        QCOMPARE(shortcuts.at(1).toObject().value(u"source"_qs).toString(),
                 u"Desktop: kglobalshortcutsrc"_qs);
    }

    void whichSaysWhenNothingIsBound()
    {
        const Run result = run({u"which"_qs, u"Ctrl+Alt+Z"_qs});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, u"Nothing is bound to Ctrl+Alt+Z.\n"_qs);
    }

    void whichRefusesAChordWithoutAKey()
    {
        const Run result = run({u"which"_qs, u"Ctrl+Shift"_qs});
        QCOMPARE(result.exitCode, 2);
        QVERIFY2(result.err.contains(u"names no key"_qs), qPrintable(result.err));
        QCOMPARE(result.out, QString());
    }

    void conflictsGiveTheirReasons()
    {
        const Run result = run({u"conflicts"_qs, u"--bundle-id"_qs, u"org.example.Editor"_qs});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out,
                 QStringLiteral("Editor\tCtrl+S\tSave\tAlso bound to “Save All” in this app\n"
                                "Editor\tCtrl+S\tSave All\tAlso bound to “Save” in this app\n"
                                "Editor\tSuper+Print\tWindow shot\tThe desktop takes this key: "
                                "Screenshot of a window\n"));
        // The same chord in two apps is no conflict.
        QCOMPARE(run({u"conflicts"_qs}).out, result.out);
        const Run viewer = run({u"conflicts"_qs, u"--bundle-id"_qs, u"org.example.Viewer"_qs});
        QCOMPARE(viewer.out, QString());
        QCOMPARE(viewer.err, u"No conflicts found.\n"_qs);
    }

    void conflictsAsJson()
    {
        const Run result = run({u"--json"_qs, u"conflicts"_qs});
        const QJsonArray list =
            QJsonDocument::fromJson(result.out.toUtf8()).object().value(u"conflicts"_qs).toArray();
        QCOMPARE(list.size(), 3);
        const QJsonObject desktop = list.at(2).toObject();
        QCOMPARE(desktop.value(u"kind"_qs).toString(), u"desktop"_qs);
        QCOMPARE(desktop.value(u"app"_qs).toString(), u"Editor"_qs);
        QCOMPARE(desktop.value(u"bundleID"_qs).toString(), u"org.example.Editor"_qs);
        QCOMPARE(desktop.value(u"chord"_qs).toString(), u"⌘ Print"_qs);
        QCOMPARE(desktop.value(u"otherSource"_qs).toString(), u"Desktop: kglobalshortcutsrc"_qs);
        QCOMPARE(list.at(0).toObject().value(u"kind"_qs).toString(), u"app"_qs);
        QVERIFY(list.at(0).toObject().value(u"otherSource"_qs).isNull());
    }

private:
    void write(const QString& relative, const char* text)
    {
        QFile file(m_dir->filePath(relative));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    Run run(const QStringList& arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_qs, m_dir->path());
        environment.insert(u"XDG_DATA_HOME"_qs, m_dir->filePath(u"data"_qs));
        environment.insert(u"XDG_CONFIG_HOME"_qs, m_dir->filePath(u"config"_qs));
        environment.insert(u"XDG_CURRENT_DESKTOP"_qs, u"KDE"_qs);
        // No GSettings schemas: the desktop's bindings are the Plasma file's alone.
        environment.insert(u"XDG_DATA_DIRS"_qs, m_dir->filePath(u"no-schemas"_qs));
        environment.remove(u"GSETTINGS_SCHEMA_DIR"_qs);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(TESSALINE_VAULT_CLI), arguments);
        if (!process.waitForFinished(30000))
            return {};
        return Run{process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                   QString::fromUtf8(process.readAllStandardOutput()),
                   QString::fromUtf8(process.readAllStandardError())};
    }

    std::optional<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestLookupCommands)
#include "tst_LookupCommands.moc"
