// SPDX-License-Identifier: MIT
#include "LockHolderProcess.h"
#include "VaultTestSupport.h"

#include "vault/VaultFileLock.h"

#include <QtTest>

#include <chrono>

using namespace Tessaline;
using namespace VaultTestSupport;
using namespace std::chrono_literals;

class TestVaultFileLock : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.emplace().isValid());
        m_vault = m_dir->filePath(QStringLiteral("keybinds.json"));
    }
    void cleanup() { m_holder.reset(); }

    void lockFileSitsBesideTheVault();
    void secondWriterWaitsForTheFirst();
    void releaseLetsTheNextWriterIn();
    void writerInAnotherProcessHoldsItOff();
    void lockOfAKilledWriterIsTakenOver();
    void missingFolderIsNamed();

private:
    bool startHolder() { return m_holder.emplace().start(m_vault); }

    std::optional<QTemporaryDir> m_dir;
    QString m_vault;
    std::optional<LockHolderProcess> m_holder;
};

void TestVaultFileLock::lockFileSitsBesideTheVault()
{
    VaultFileLock lock(m_vault);
    QCOMPARE(lock.lockFilePath(), m_vault + QStringLiteral(".lock"));
    QVERIFY(!QFileInfo::exists(lock.lockFilePath()));
    const Expected<void> locked = lock.acquire();
    QVERIFY2(locked, qPrintable(errorText(locked)));
    QVERIFY(lock.isHeld());
    QVERIFY(QFileInfo::exists(lock.lockFilePath()));
    lock.release();
    QVERIFY(!lock.isHeld());
    QVERIFY(!QFileInfo::exists(lock.lockFilePath()));
}

void TestVaultFileLock::secondWriterWaitsForTheFirst()
{
    VaultFileLock first(m_vault);
    QVERIFY(first.acquire());
    VaultFileLock second(m_vault);
    const Expected<void> locked = second.acquire(200ms);
    QVERIFY(!locked);
    QVERIFY(!second.isHeld());
    QVERIFY2(locked.error().startsWith(QStringLiteral("Cannot write ") + m_vault),
             qPrintable(locked.error()));
    QVERIFY2(locked.error().contains(QStringLiteral("another program")) &&
                 locked.error().contains(QStringLiteral("for 0.2 seconds")),
             qPrintable(locked.error()));
}

void TestVaultFileLock::releaseLetsTheNextWriterIn()
{
    VaultFileLock second(m_vault);
    {
        VaultFileLock first(m_vault);
        QVERIFY(first.acquire());
        QVERIFY(!second.acquire(100ms));
    } // the first writer is done
    const Expected<void> locked = second.acquire(100ms);
    QVERIFY2(locked, qPrintable(errorText(locked)));
}

void TestVaultFileLock::writerInAnotherProcessHoldsItOff()
{
    QVERIFY(startHolder());
    // A live holder in another process keeps the lock.
    VaultFileLock lock(m_vault);
    const Expected<void> locked = lock.acquire(300ms);
    QVERIFY(!locked);
    QVERIFY2(locked.error().contains(QStringLiteral("another program")),
             qPrintable(locked.error()));
    QVERIFY(m_holder->isRunning());
}

void TestVaultFileLock::lockOfAKilledWriterIsTakenOver()
{
    QVERIFY(startHolder());
    QVERIFY(m_holder->killNow());
    QVERIFY(QFileInfo::exists(VaultFileLock::lockFilePathFor(m_vault)));

    // Its process is gone, so the next writer takes the lock over at once; the default wait is
    // only the upper bound of how long that may take.
    VaultFileLock lock(m_vault);
    const Expected<void> locked = lock.acquire();
    QVERIFY2(locked, qPrintable(errorText(locked)));
}

void TestVaultFileLock::missingFolderIsNamed()
{
    const QString vault = m_dir->filePath(QStringLiteral("gone/keybinds.json"));
    VaultFileLock lock(vault);
    const Expected<void> locked = lock.acquire(100ms);
    QVERIFY(!locked);
    QVERIFY2(locked.error().contains(QStringLiteral("does not exist")), qPrintable(locked.error()));
    QVERIFY2(locked.error().contains(vault), qPrintable(locked.error()));
}

QTEST_GUILESS_MAIN(TestVaultFileLock)
#include "tst_VaultFileLock.moc"
