// SPDX-License-Identifier: MIT
#include "VaultTestSupport.h"

#include "settings/DefaultsStore.h"
#include "settings/KeyNamePreference.h"
#include "vault/VaultOrder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <unistd.h>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

} // namespace

// Runs the real tessaline-vault with a private data folder, as a user on a fresh account would.
class TestVaultCli : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.emplace().isValid());
        m_vault = m_dir->filePath(QStringLiteral("data/Tessaline/keybinds.json"));
    }

    void freshHomeGetsTheBundledSeed();
    void pathCreatesNothing();
    void damagedVaultIsReportedAndLeftUntouched_data();
    void damagedVaultIsReportedAndLeftUntouched();
    void resetReplacesADamagedVaultAndKeepsACopy();
    void importRejectsAnInvalidFileAndAcceptsAValidOne();
    void exportWritesTheVault();
    void favoriteTogglesAndIsWritten();
    void readOnlyFolderFailsClearlyAndLosesNothing();
    void sectionsWithAQueryShowScores();
    void textFollowsTheKeyNamesSetting();
    void rowsGroupByApp();
    void helpExplainsEveryCommand();
    void usageErrors_data();
    void usageErrors();
    void usageErrorsSayWhatIsWrong_data();
    void usageErrorsSayWhatIsWrong();
    void optionValueMayFollowAnEqualsSign();
    void doubleDashEndsTheOptions();
    void helpWinsWhereverItStands();
    void desktopCommandsWithoutADisplayEndCleanly();
    void pruneRemovesWhatTheLastScanNoLongerFound();
    void pruneOfAnUnknownAppFails();
    void resetAndImportDropTheScanHistory();

private:
    /// A vault whose "Editor" pack holds three scanned items and one typed by hand, and a scan
    /// history whose last scan of Editor found only Save and Cut under a new chord.
    void writeDriftedEditor()
    {
        const auto scanned = [](const QString& name, const QString& chord) {
            ShortcutItem result = item(name, chord);
            result.menu = QStringLiteral("File");
            result.source = QStringLiteral("scanned-menu");
            return result;
        };
        VaultData data;
        data.apps = {AppShortcutPack{QStringLiteral("Editor"),
                                     QStringLiteral("org.example.Editor"),
                                     {scanned(QStringLiteral("Close"), QStringLiteral("⌃ W")),
                                      scanned(QStringLiteral("Cut"), QStringLiteral("⌃ X")),
                                      scanned(QStringLiteral("Cut"), QStringLiteral("⌃ ⇧ X")),
                                      item(QStringLiteral("Jump"), QStringLiteral("⌃ J")),
                                      scanned(QStringLiteral("Save"), QStringLiteral("⌃ S"))}}};
        QVERIFY(writeFile(m_vault, VaultCodec::encode(data)));
        QVERIFY(writeFile(historyFile(), R"({"apps": {"org.example.Editor": [
            {"name": "Save", "chord": "⌃ S", "menu": "File"},
            {"name": "Cut", "chord": "⌃ ⇧ X", "menu": "File"}]}})"));
    }

    QString historyFile() const
    {
        return m_dir->filePath(QStringLiteral("data/Tessaline/scan-history.json"));
    }

    /// Runs the command; with `unprivileged`, as the user nobody when this test runs as root
    /// (root passes every permission check, so a read-only folder would not stop it).
    Run run(const QStringList& arguments, const QStringList& unset = {}, bool unprivileged = false)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& name : unset)
            environment.remove(name);
        environment.insert(QStringLiteral("HOME"), m_dir->path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"),
                           m_dir->filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                           m_dir->filePath(QStringLiteral("config")));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_dir->path());
        if (unprivileged && geteuid() == 0) {
            process.start(
                QStringLiteral("setpriv"),
                QStringList{QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
                            QStringLiteral("--clear-groups"), QStringLiteral(TESSALINE_VAULT_CLI)} +
                    arguments);
        } else {
            process.start(QStringLiteral(TESSALINE_VAULT_CLI), arguments);
        }
        if (!process.waitForFinished(30000))
            return {};
        return Run{process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                   QString::fromUtf8(process.readAllStandardOutput()),
                   QString::fromUtf8(process.readAllStandardError())};
    }

    static VaultData bundledSeed()
    {
        Expected<VaultData> seed = VaultCodec::decode(
            readFile(QStringLiteral(TESSALINE_SOURCE_DIR "/resources/keybinds.json")));
        VaultOrder::sort(seed->global);
        return *seed;
    }

    std::optional<QTemporaryDir> m_dir;
    QString m_vault;
};

void TestVaultCli::freshHomeGetsTheBundledSeed()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QVERIFY(!QFileInfo::exists(m_vault));
    const Run result = run({QStringLiteral("sections")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
    QCOMPARE(readFile(m_vault), VaultCodec::encode(bundledSeed()));
    QVERIFY(result.out.startsWith(QStringLiteral("Global desktop essentials\n")));
    // Chords are written in words unless the user chose symbols.
    QVERIFY2(result.out.contains(QStringLiteral("  Ctrl+C\tCopy\tediting\n")),
             qPrintable(result.out));
}

void TestVaultCli::pathCreatesNothing()
{
    const Run result = run({QStringLiteral("path")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, m_vault + QLatin1Char('\n'));
    QVERIFY(!QFileInfo::exists(m_vault));
}

void TestVaultCli::damagedVaultIsReportedAndLeftUntouched_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addRow("sections") << QStringList{QStringLiteral("sections"), QStringLiteral("--app"),
                                             QStringLiteral("Kate")};
    QTest::addRow("rows") << QStringList{QStringLiteral("rows"), QStringLiteral("--json")};
    QTest::addRow("favorite") << QStringList{
        QStringLiteral("favorite"), QStringLiteral("Show all apps"), QStringLiteral("⌘ A")};
    QTest::addRow("export") << QStringList{QStringLiteral("export"), QStringLiteral("out.json")};
}

void TestVaultCli::damagedVaultIsReportedAndLeftUntouched()
{
    QFETCH(QStringList, arguments);
    const QByteArray damaged = "{\"global\": [], \"apps\": [ {\"name\": \"Kate\", }";
    QVERIFY(writeFile(m_vault, damaged));
    const Run result = run(arguments);
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.out.isEmpty());
    QVERIFY2(result.err.contains(m_vault), qPrintable(result.err));
    QVERIFY2(result.err.contains(QStringLiteral("syntax error at byte offset")),
             qPrintable(result.err));
    QCOMPARE(readFile(m_vault), damaged);
    QVERIFY(!QFileInfo::exists(m_vault + QStringLiteral(".damaged")));
    QVERIFY(!QFileInfo::exists(m_dir->filePath(QStringLiteral("out.json"))));
}

void TestVaultCli::resetReplacesADamagedVaultAndKeepsACopy()
{
    const QByteArray damaged = R"({"global": [{"name": "mine", "chord": 3}], "apps": []})";
    QVERIFY(writeFile(m_vault, damaged));
    const Run result = run({QStringLiteral("reset")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.err.contains(m_vault + QStringLiteral(".damaged")), qPrintable(result.err));
    QCOMPARE(
        result.out,
        QStringLiteral("Reset %1 to the seed vault, replacing the whole vault\n").arg(m_vault));
    QCOMPARE(readFile(m_vault + QStringLiteral(".damaged")), damaged);
    QCOMPARE(readFile(m_vault), VaultCodec::encode(bundledSeed()));
}

void TestVaultCli::importRejectsAnInvalidFileAndAcceptsAValidOne()
{
    QCOMPARE(run({QStringLiteral("rows")}).exitCode, 0);
    const QByteArray before = readFile(m_vault);
    const QString file = m_dir->filePath(QStringLiteral("import.json"));
    QVERIFY(writeFile(
        file,
        R"({"global": [], "apps": [{"name": "A", "shortcuts": [{"name": "x", "chord": null}]}]})"));
    Run result = run({QStringLiteral("import"), file});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(QStringLiteral("apps[0].shortcuts[0].chord: expected a string")),
             qPrintable(result.err));
    QCOMPARE(readFile(m_vault), before);

    QVERIFY(writeFile(
        file,
        R"({"global": [{"name": "b", "chord": "B"}, {"name": "a", "chord": "A"}], "apps": []})"));
    result = run({QStringLiteral("import"), file});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out,
             QStringLiteral("Imported %1 into %2, replacing the whole vault\n").arg(file, m_vault));
    const VaultData imported = *VaultCodec::decode(readFile(m_vault));
    QCOMPARE(names(imported.global), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    QVERIFY(imported.apps.isEmpty());
}

void TestVaultCli::exportWritesTheVault()
{
    const QString file = m_dir->filePath(QStringLiteral("export.json"));
    const Run result = run({QStringLiteral("export"), file});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(readFile(file), readFile(m_vault));
    const Run failed =
        run({QStringLiteral("export"), m_dir->filePath(QStringLiteral("missing/dir/x.json"))});
    QCOMPARE(failed.exitCode, 1);
    QVERIFY2(failed.err.contains(QStringLiteral("Cannot write ")), qPrintable(failed.err));
}

void TestVaultCli::favoriteTogglesAndIsWritten()
{
    const QStringList arguments{QStringLiteral("favorite"), QStringLiteral("Save"),
                                QStringLiteral("⌃ S"), QStringLiteral("--bundle-id"),
                                QStringLiteral("org.kde.kate")};
    Run result = run(arguments);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QStringLiteral("Save (Ctrl+S) is now a favorite\n"));
    const auto kateSave = [this] {
        const VaultData data = *VaultCodec::decode(readFile(m_vault));
        for (const AppShortcutPack& pack : data.apps) {
            if (pack.bundleID == QStringLiteral("org.kde.kate")) {
                for (const ShortcutItem& entry : pack.shortcuts) {
                    if (entry.name == QStringLiteral("Save"))
                        return entry.favorite;
                }
            }
        }
        return std::optional<bool>();
    };
    QCOMPARE(kateSave(), std::optional<bool>(true));
    result = run(arguments + QStringList{QStringLiteral("--json")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QJsonDocument::fromJson(result.out.toUtf8())
                 .object()
                 .value(QStringLiteral("favorite"))
                 .toBool(true),
             false);
    QCOMPARE(kateSave(), std::optional<bool>(false));

    // The chord may be typed in words, as the text output writes it.
    result = run({QStringLiteral("favorite"), QStringLiteral("Save"), QStringLiteral("Ctrl+S"),
                  QStringLiteral("--bundle-id"), QStringLiteral("org.kde.kate")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QStringLiteral("Save (Ctrl+S) is now a favorite\n"));
    QCOMPARE(kateSave(), std::optional<bool>(true));

    const QByteArray before = readFile(m_vault);
    result = run({QStringLiteral("favorite"), QStringLiteral("Save"), QStringLiteral("⌃ Q")});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.err.contains(QStringLiteral("no shortcut named \"Save\"")));
    QCOMPARE(readFile(m_vault), before);
}

void TestVaultCli::readOnlyFolderFailsClearlyAndLosesNothing()
{
    QCOMPARE(run({QStringLiteral("rows")}).exitCode, 0);
    const QByteArray before = readFile(m_vault);
    const ShortcutItem target = bundledSeed().global.at(0);
    const QStringList arguments{QStringLiteral("favorite"), target.name, target.chord};
    const QString folder = QFileInfo(m_vault).absolutePath();
    const auto readable = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                          QFile::ReadOther | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(m_dir->path(), readable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(QFileInfo(folder).absolutePath(), readable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(folder, readable));

    Run result = run(arguments, {}, true);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(m_vault) && result.err.contains(QStringLiteral("is not writable")),
             qPrintable(result.err));
    QCOMPARE(readFile(m_vault), before);

    QVERIFY(QFile::setPermissions(folder, readable | QFile::WriteOwner));
    result = run(arguments);
    QCOMPARE(result.exitCode, 0);
    const VaultData after = *VaultCodec::decode(readFile(m_vault));
    QCOMPARE(after.global.at(0).name, target.name);
    QCOMPARE(after.global.at(0).isFavorite(), !target.isFavorite());
}

void TestVaultCli::sectionsWithAQueryShowScores()
{
    const Run result =
        run({QStringLiteral("--json"), QStringLiteral("sections"), QStringLiteral("--app"),
             QStringLiteral("kate"), QStringLiteral("save")});
    QCOMPARE(result.exitCode, 0);
    const QJsonObject root = QJsonDocument::fromJson(result.out.toUtf8()).object();
    QCOMPARE(root.value(QStringLiteral("query")).toString(), QStringLiteral("save"));
    const QJsonArray sections = root.value(QStringLiteral("sections")).toArray();
    QVERIFY(!sections.isEmpty());
    const QJsonObject first = sections.at(0).toObject();
    QCOMPARE(first.value(QStringLiteral("title")).toString(), QStringLiteral("Kate shortcuts"));
    const QJsonObject top = first.value(QStringLiteral("shortcuts")).toArray().at(0).toObject();
    QCOMPARE(top.value(QStringLiteral("name")).toString(), QStringLiteral("Save"));
    // "save" against "Save": 1+8, then three consecutive +6 each = 27, plus the name bonus 12.
    QCOMPARE(top.value(QStringLiteral("score")).toInteger(), 39);

    const Run text = run({QStringLiteral("sections"), QStringLiteral("--app"),
                          QStringLiteral("kate"), QStringLiteral("save")});
    QVERIFY2(text.out.contains(QStringLiteral("  Ctrl+S\tSave\tfile\tscore 39\n")),
             qPrintable(text.out));
    // JSON keeps the chord as the vault stores it.
    QCOMPARE(top.value(QStringLiteral("chord")).toString(), QStringLiteral("⌃ S"));
}

void TestVaultCli::textFollowsTheKeyNamesSetting()
{
    const QString settings = m_dir->filePath(QStringLiteral("config/Tessaline/defaults.json"));
    DefaultsStore(settings).setString(QString::fromLatin1(KeyNamePreference::defaultsKey),
                                      QStringLiteral("symbols"));
    const Run text = run({QStringLiteral("sections"), QStringLiteral("--app"),
                          QStringLiteral("kate"), QStringLiteral("save")});
    QCOMPARE(text.exitCode, 0);
    QVERIFY2(text.out.contains(QStringLiteral("  ⌃ S\tSave\tfile\tscore 39\n")),
             qPrintable(text.out));
    QVERIFY2(text.out.contains(QStringLiteral("  ⌃ ⇧ S\tSave as\tfile\tscore 39\n")),
             qPrintable(text.out));

    // No Linux keyboard has a ⌘ key: the symbols name it Super. Reading the setting writes
    // nothing back.
    const QByteArray before = readFile(settings);
    const Run rows = run({QStringLiteral("rows"), QStringLiteral("lock screen")});
    QVERIFY2(rows.out.contains(QStringLiteral("  Super L\tLock screen\t")), qPrintable(rows.out));
    QCOMPARE(readFile(settings), before);
}

void TestVaultCli::rowsGroupByApp()
{
    const Run result = run({QStringLiteral("rows"), QStringLiteral("mousepad")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.out.contains(QStringLiteral("\nMousepad (11)\n")), qPrintable(result.out));
    QVERIFY(!result.out.contains(QStringLiteral("Kate (")));
    const Run none =
        run({QStringLiteral("--json"), QStringLiteral("rows"), QStringLiteral("qqqqqq")});
    QCOMPARE(none.exitCode, 0);
    QVERIFY(QJsonDocument::fromJson(none.out.toUtf8())
                .object()
                .value(QStringLiteral("groups"))
                .toArray()
                .isEmpty());
}

void TestVaultCli::helpExplainsEveryCommand()
{
    const Run result = run({QStringLiteral("--help")});
    QCOMPARE(result.exitCode, 0);
    for (const char* command :
         {"path", "sections [--app NAME] [--bundle-id ID] [QUERY]", "rows [QUERY]",
          "favorite NAME CHORD", "import FILE", "export FILE", "reset", "--json"})
        QVERIFY2(result.out.contains(QLatin1StringView(command)), command);
    QVERIFY(!QFileInfo::exists(m_vault));
}

void TestVaultCli::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addRow("no command") << QStringList{};
    QTest::addRow("unknown command") << QStringList{QStringLiteral("frobnicate")};
    QTest::addRow("unknown option")
        << QStringList{QStringLiteral("rows"), QStringLiteral("--app"), QStringLiteral("x")};
    QTest::addRow("missing value")
        << QStringList{QStringLiteral("sections"), QStringLiteral("--app")};
    QTest::addRow("too many") << QStringList{QStringLiteral("rows"), QStringLiteral("a"),
                                             QStringLiteral("b")};
    QTest::addRow("too few") << QStringList{QStringLiteral("favorite"), QStringLiteral("Save")};
    QTest::addRow("json without data")
        << QStringList{QStringLiteral("--json"), QStringLiteral("reset")};
}

void TestVaultCli::usageErrors()
{
    QFETCH(QStringList, arguments);
    const Run result = run(arguments);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(!result.err.isEmpty());
    QVERIFY(!QFileInfo::exists(m_vault));
}

void TestVaultCli::usageErrorsSayWhatIsWrong_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::addRow("unknown command") << QStringList{QStringLiteral("frobnicate")}
                                     << QStringLiteral("unknown command 'frobnicate' (see --help)");
    QTest::addRow("option of another command")
        << QStringList{QStringLiteral("rows"), QStringLiteral("--app"), QStringLiteral("x")}
        << QStringLiteral("unknown option --app (see --help)");
    QTest::addRow("command option before the command")
        << QStringList{QStringLiteral("--app"), QStringLiteral("x"), QStringLiteral("sections")}
        << QStringLiteral("unknown option --app (see --help)");
    QTest::addRow("missing value")
        << QStringList{QStringLiteral("sections"), QStringLiteral("--bundle-id")}
        << QStringLiteral("--bundle-id needs a value");
    QTest::addRow("single dash before the command")
        << QStringList{QStringLiteral("-x"), QStringLiteral("rows")}
        << QStringLiteral("unknown option -x (see --help)");
    QTest::addRow("single dash after the command")
        << QStringList{QStringLiteral("rows"), QStringLiteral("-abc")}
        << QStringLiteral("unknown option -abc (see --help)");
    QTest::addRow("unknown option with a value")
        << QStringList{QStringLiteral("rows"), QStringLiteral("--all=1")}
        << QStringLiteral("unknown option --all=1 (see --help)");
    QTest::addRow("value on a flag")
        << QStringList{QStringLiteral("--json=yes"), QStringLiteral("rows")}
        << QStringLiteral("--json takes no value (see --help)");
    QTest::addRow("json without data")
        << QStringList{QStringLiteral("reset"), QStringLiteral("--json")}
        << QStringLiteral("reset prints no data; --json does not apply");
    QTest::addRow("too many") << QStringList{QStringLiteral("rows"), QStringLiteral("a"),
                                             QStringLiteral("b")}
                              << QStringLiteral("usage: tessaline-vault rows [QUERY]");
}

void TestVaultCli::usageErrorsSayWhatIsWrong()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Run result = run(arguments);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err, QStringLiteral("tessaline-vault: ") + message + QLatin1Char('\n'));
    QVERIFY(!QFileInfo::exists(m_vault));
}

void TestVaultCli::optionValueMayFollowAnEqualsSign()
{
    const Run spaced = run({QStringLiteral("sections"), QStringLiteral("--app"),
                            QStringLiteral("kate"), QStringLiteral("save")});
    const Run joined =
        run({QStringLiteral("sections"), QStringLiteral("--app=kate"), QStringLiteral("save")});
    QCOMPARE(joined.exitCode, 0);
    QVERIFY2(joined.out.contains(QStringLiteral("  Ctrl+S\tSave\tfile\tscore 39\n")),
             qPrintable(joined.out));
    QCOMPARE(joined.out, spaced.out);
}

void TestVaultCli::doubleDashEndsTheOptions()
{
    // After "--" a word starting with a dash is a shortcut's name, not an option.
    const Run result = run({QStringLiteral("favorite"), QStringLiteral("--"), QStringLiteral("-x"),
                            QStringLiteral("y")});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err, QStringLiteral("tessaline-vault: no shortcut named \"-x\" with chord "
                                        "\"y\" in the pack of Desktop or the global list\n"));
}

void TestVaultCli::helpWinsWhereverItStands()
{
    const Run help = run({QStringLiteral("--help")});
    QVERIFY(help.out.startsWith(QStringLiteral("Usage: tessaline-vault")));
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("rows"), QStringLiteral("--bogus"), QStringLiteral("--help")},
          QStringList{QStringLiteral("--bogus"), QStringLiteral("-h")},
          QStringList{QStringLiteral("sections"), QStringLiteral("--help"),
                      QStringLiteral("--app")}}) {
        const Run result = run(arguments);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, help.out);
        QCOMPARE(result.err, QString());
    }
    QVERIFY(!QFileInfo::exists(m_vault));
}

// Without a display the companion runs as a plain core application; the commands that look at
// the desktop's windows find none and end normally instead of tripping over the missing X
// connection.
void TestVaultCli::pruneRemovesWhatTheLastScanNoLongerFound()
{
    writeDriftedEditor();
    const Run json = run({QStringLiteral("prune"), QStringLiteral("--bundle-id"),
                          QStringLiteral("org.example.Editor"), QStringLiteral("--json")});
    QCOMPARE(json.exitCode, 0);
    QVERIFY2(json.err.isEmpty(), qPrintable(json.err));
    const QJsonObject object = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(object.value(QStringLiteral("bundleID")).toString(),
             QStringLiteral("org.example.Editor"));
    const QJsonArray removed = object.value(QStringLiteral("removed")).toArray();
    QCOMPARE(removed.size(), 2);
    QCOMPARE(removed.at(0).toObject().value(QStringLiteral("name")).toString(),
             QStringLiteral("Close"));
    QCOMPARE(removed.at(1).toObject().value(QStringLiteral("chord")).toString(),
             QStringLiteral("⌃ X"));
    // The hand-made item stays, though the scan never found it; the order is kept.
    const Expected<VaultData> after = VaultCodec::decode(readFile(m_vault));
    QVERIFY(after);
    QCOMPARE(names(after->apps.at(0).shortcuts),
             (QStringList{QStringLiteral("Cut"), QStringLiteral("Jump"), QStringLiteral("Save")}));

    const Run again = run({QStringLiteral("prune"), QStringLiteral("--bundle-id"),
                           QStringLiteral("org.example.Editor")});
    QCOMPARE(again.exitCode, 0);
    QCOMPARE(again.out, QString());
    QCOMPARE(again.err, QStringLiteral("Nothing to prune.\n"));

    // Text lines: name, then the chord in the chosen key names.
    writeDriftedEditor();
    const Run text = run({QStringLiteral("prune"), QStringLiteral("--bundle-id"),
                          QStringLiteral("org.example.Editor")});
    QCOMPARE(text.exitCode, 0);
    QCOMPARE(text.out, QStringLiteral("Close\tCtrl+W\nCut\tCtrl+X\n"));
}

void TestVaultCli::pruneOfAnUnknownAppFails()
{
    writeDriftedEditor();
    const QByteArray before = readFile(m_vault);
    const Run result = run({QStringLiteral("prune"), QStringLiteral("--bundle-id"),
                            QStringLiteral("org.example.Nowhere")});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err, QStringLiteral("tessaline-vault: no app with bundle id "
                                        "\"org.example.Nowhere\" in the vault\n"));
    QCOMPARE(readFile(m_vault), before);
    // Without a scan on record nothing is stale.
    QVERIFY(QFile::remove(historyFile()));
    const Run unscanned = run({QStringLiteral("prune"), QStringLiteral("--bundle-id"),
                               QStringLiteral("org.example.Editor")});
    QCOMPARE(unscanned.exitCode, 0);
    QCOMPARE(unscanned.err, QStringLiteral("Nothing to prune.\n"));
    QCOMPARE(readFile(m_vault), before);
    const Run missing = run({QStringLiteral("prune")});
    QCOMPARE(missing.exitCode, 2);
}

void TestVaultCli::resetAndImportDropTheScanHistory()
{
    writeDriftedEditor();
    const QString copy = m_dir->filePath(QStringLiteral("copy.json"));
    QCOMPARE(run({QStringLiteral("export"), copy}).exitCode, 0);
    QVERIFY(QFileInfo::exists(historyFile()));
    QCOMPARE(run({QStringLiteral("import"), copy}).exitCode, 0);
    QVERIFY(!QFileInfo::exists(historyFile()));
    writeDriftedEditor();
    QCOMPARE(run({QStringLiteral("reset")}).exitCode, 0);
    QVERIFY(!QFileInfo::exists(historyFile()));
}

void TestVaultCli::desktopCommandsWithoutADisplayEndCleanly()
{
    const Run apps = run({QStringLiteral("apps")}, {QStringLiteral("DISPLAY")});
    QCOMPARE(apps.exitCode, 0);
    QVERIFY2(!apps.err.contains(QStringLiteral("runtime error")), qPrintable(apps.err));
    const Run scan = run({QStringLiteral("scan"), QStringLiteral("--all")},
                         {QStringLiteral("DISPLAY"), QStringLiteral("DBUS_SESSION_BUS_ADDRESS")});
    QVERIFY2(scan.exitCode == 0 || scan.exitCode == 1, qPrintable(scan.err));
    QVERIFY2(!scan.err.contains(QStringLiteral("runtime error")), qPrintable(scan.err));
}

QTEST_GUILESS_MAIN(TestVaultCli)
#include "tst_VaultCli.moc"
