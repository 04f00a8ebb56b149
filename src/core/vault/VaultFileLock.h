// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"

#include <QLockFile>
#include <QString>

#include <chrono>

namespace Tessaline {

/// The advisory lock beside the vault file ("keybinds.json.lock") that every writer holds while
/// it reads the newest file, changes it and writes it back, so that the application and any
/// number of command-line runs never write over one another's edits. A lock left behind by a
/// process that died is taken over.
class VaultFileLock
{
public:
    explicit VaultFileLock(const QString& dataFilePath);
    ~VaultFileLock();
    VaultFileLock(const VaultFileLock&) = delete;
    VaultFileLock& operator=(const VaultFileLock&) = delete;

    /// Waits up to `timeout` for the lock. The error names the vault file and why it cannot
    /// be written (no permission in its folder, a missing folder, another writer that holds on).
    Expected<void> acquire(std::chrono::milliseconds timeout = defaultTimeout());
    /// Gives the lock back; harmless when it is not held.
    void release();
    bool isHeld() const { return m_lock.isLocked(); }

    QString lockFilePath() const { return m_lockFilePath; }
    static QString lockFilePathFor(const QString& dataFilePath);

    /// How long a writer waits for another one before it gives up: writers hold the lock for
    /// a few milliseconds, so this is only reached when the holder hangs.
    static std::chrono::milliseconds defaultTimeout() { return std::chrono::seconds(5); }

private:
    QString m_dataFilePath;
    QString m_lockFilePath;
    QLockFile m_lock;
};

} // namespace Tessaline
