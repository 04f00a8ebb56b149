// SPDX-License-Identifier: MIT
// Real tessaline-vault processes writing one vault at the same time: no edit is lost, and a
// writer killed while it holds the lock does not stop the next one.
#include "LockHolderProcess.h"
#include "VaultTestSupport.h"

#include <QProcess>
#include <QtTest>

#include <functional>
#include <memory>

using namespace Tessaline;
using namespace VaultTestSupport;

namespace {

constexpr int kPerWriter = 200;

QString itemName(int index)
{
    return QStringLiteral("Item %1").arg(index, 3, 10, QLatin1Char('0'));
}

const QString kChord = QStringLiteral("⌃ ⌥ K");

} // namespace

class TestVaultWriterProcesses : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.emplace().isValid());
        m_vault = m_dir->filePath(QStringLiteral("data/Tessaline/keybinds.json"));
    }

    void twoWritersAtOnceLoseNoFavorite();
    void writerKilledWhileHoldingTheLockDoesNotBlockTheNext();

private:
    QProcessEnvironment environment() const
    {
        QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
        result.insert(QStringLiteral("HOME"), m_dir->path());
        result.insert(QStringLiteral("XDG_DATA_HOME"), m_dir->filePath(QStringLiteral("data")));
        return result;
    }

    std::unique_ptr<QProcess> favorite(const QString& name) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment());
        process->setWorkingDirectory(m_dir->path());
        process->start(QStringLiteral(TESSALINE_VAULT_CLI),
                       {QStringLiteral("favorite"), name, kChord});
        return process;
    }

    std::optional<QTemporaryDir> m_dir;
    QString m_vault;
};

void TestVaultWriterProcesses::twoWritersAtOnceLoseNoFavorite()
{
    VaultData start;
    for (int i = 0; i < 2 * kPerWriter; ++i)
        start.global.append(item(itemName(i), kChord, false));
    QVERIFY(writeFile(m_vault, VaultCodec::encode(start)));

    // Two lanes run side by side, each one process after another: lane 0 stars items 0-199,
    // lane 1 items 200-399.
    int finished = 0;
    QStringList failures;
    std::array<std::unique_ptr<QProcess>, 2> running;
    std::array<int, 2> next{0, 0};
    std::function<void(int)> startNext = [&](int lane) {
        if (next[lane] == kPerWriter) {
            ++finished;
            return;
        }
        const QString name = itemName(lane * kPerWriter + next[lane]++);
        running[lane] = favorite(name);
        QProcess* process = running[lane].get();
        connect(process, &QProcess::finished, this,
                [&, lane, name, process](int exitCode, QProcess::ExitStatus status) {
                    if (status != QProcess::NormalExit || exitCode != 0) {
                        failures << name + QStringLiteral(": ") +
                                        QString::fromUtf8(process->readAllStandardError());
                    }
                    // Started from the event loop, not inside the old process's signal.
                    QTimer::singleShot(0, this, [&startNext, lane] { startNext(lane); });
                });
    };
    startNext(0);
    startNext(1);
    QTRY_VERIFY_WITH_TIMEOUT(finished == 2, 600000);
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));

    const Expected<VaultData> end = VaultCodec::decode(readFile(m_vault));
    QVERIFY2(end, qPrintable(errorText(end)));
    QCOMPARE(end->global.size(), 2 * kPerWriter);
    QStringList notFavorite;
    for (const ShortcutItem& entry : end->global) {
        if (!entry.isFavorite())
            notFavorite << entry.name;
    }
    QVERIFY2(notFavorite.isEmpty(), qPrintable(notFavorite.join(QStringLiteral(", "))));
}

void TestVaultWriterProcesses::writerKilledWhileHoldingTheLockDoesNotBlockTheNext()
{
    VaultData start;
    start.global.append(item(itemName(0), kChord, false));
    QVERIFY(writeFile(m_vault, VaultCodec::encode(start)));

    LockHolderProcess holder;
    QVERIFY(holder.start(m_vault));
    QVERIFY(holder.killNow());
    QVERIFY(QFileInfo::exists(m_vault + QStringLiteral(".lock")));

    // The command gives up on a lock it cannot get after a few seconds and exits with 1, so
    // success here means the dead writer's lock was taken over.
    const std::unique_ptr<QProcess> next = favorite(itemName(0));
    QVERIFY(next->waitForFinished(60000));
    QVERIFY2(next->exitCode() == 0, next->readAllStandardError().constData());
    const Expected<VaultData> end = VaultCodec::decode(readFile(m_vault));
    QVERIFY(end);
    QVERIFY(end->global.at(0).isFavorite());
    QVERIFY(!QFileInfo::exists(m_vault + QStringLiteral(".lock")));
}

QTEST_GUILESS_MAIN(TestVaultWriterProcesses)
#include "tst_VaultWriterProcesses.moc"
