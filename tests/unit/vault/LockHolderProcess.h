// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>

/// The helper process (vault_lock_holder) that takes the vault's write lock and keeps it until
/// it is killed: a writer that dies in the middle of a write. The test that includes this
/// defines VAULT_LOCK_HOLDER as the helper's path.
class LockHolderProcess
{
public:
    LockHolderProcess() = default;
    ~LockHolderProcess() { killNow(); }
    LockHolderProcess(const LockHolderProcess&) = delete;
    LockHolderProcess& operator=(const LockHolderProcess&) = delete;

    /// Starts the helper on `dataFilePath`; true once it says it holds the lock.
    bool start(const QString& dataFilePath)
    {
        m_process.start(QStringLiteral(VAULT_LOCK_HOLDER), {dataFilePath});
        if (!m_process.waitForStarted(10000))
            return false;
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(20000))
                return false;
        }
        return m_process.readLine() == "locked\n";
    }

    /// SIGKILL: the lock file stays behind as a dead writer leaves it. True once it is gone.
    bool killNow()
    {
        if (m_process.state() == QProcess::NotRunning)
            return true;
        m_process.kill();
        return m_process.waitForFinished(10000);
    }

    bool isRunning() const { return m_process.state() == QProcess::Running; }

private:
    QProcess m_process;
};
