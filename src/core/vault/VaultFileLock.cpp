// SPDX-License-Identifier: MIT
#include "vault/VaultFileLock.h"

#include <QDir>
#include <QFileInfo>

namespace Tessaline {

namespace {

// A lock file whose process is gone is taken over at once; one older than this is taken over
// too when its owner cannot be checked (a process on another host sharing the folder). Writers
// hold the lock for milliseconds.
constexpr std::chrono::seconds kStaleAfter{10};

} // namespace

VaultFileLock::VaultFileLock(const QString& dataFilePath)
    : m_dataFilePath(dataFilePath), m_lockFilePath(lockFilePathFor(dataFilePath)),
      m_lock(m_lockFilePath)
{
    m_lock.setStaleLockTime(kStaleAfter);
}

VaultFileLock::~VaultFileLock()
{
    release();
}

QString VaultFileLock::lockFilePathFor(const QString& dataFilePath)
{
    return dataFilePath + QStringLiteral(".lock");
}

Expected<void> VaultFileLock::acquire(std::chrono::milliseconds timeout)
{
    if (m_lock.isLocked())
        return {};
    if (m_lock.tryLock(timeout))
        return {};

    const QString file = QDir::toNativeSeparators(m_dataFilePath);
    const QString folder = QDir::toNativeSeparators(QFileInfo(m_dataFilePath).absolutePath());
    const QString lockFile = QDir::toNativeSeparators(m_lockFilePath);
    switch (m_lock.error()) {
    case QLockFile::LockFailedError:
        return Unexpected(
            QStringLiteral("Cannot write %1: another program kept %2 locked for %3 seconds; "
                           "try again")
                .arg(file, lockFile)
                .arg(static_cast<double>(timeout.count()) / 1000.0));
    case QLockFile::PermissionError:
        return Unexpected(
            QStringLiteral("Cannot write %1: the folder %2 is not writable").arg(file, folder));
    case QLockFile::NoError:
    case QLockFile::UnknownError:
        break;
    }
    if (!QFileInfo(folder).isDir()) {
        return Unexpected(
            QStringLiteral("Cannot write %1: the folder %2 does not exist").arg(file, folder));
    }
    return Unexpected(
        QStringLiteral("Cannot write %1: cannot create the lock file %2").arg(file, lockFile));
}

void VaultFileLock::release()
{
    if (m_lock.isLocked())
        m_lock.unlock();
}

} // namespace Tessaline
