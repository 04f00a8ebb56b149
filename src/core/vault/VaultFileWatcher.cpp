// SPDX-License-Identifier: MIT
#include "vault/VaultFileWatcher.h"

#include <QFileInfo>

namespace Tessaline {

VaultFileWatcher::VaultFileWatcher(const QString& filePath, QObject* parent)
    : QObject(parent), m_filePath(QFileInfo(filePath).absoluteFilePath()),
      m_folderPath(QFileInfo(filePath).absolutePath())
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleTime());
    connect(&m_settle, &QTimer::timeout, this, [this] {
        watchPaths();
        emit changed();
    });
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &VaultFileWatcher::noteEvent);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &VaultFileWatcher::noteEvent);
    watchPaths();
}

void VaultFileWatcher::watchPaths()
{
    if (!m_watcher.directories().contains(m_folderPath) && QFileInfo(m_folderPath).isDir())
        m_watcher.addPath(m_folderPath);
    if (!m_watcher.files().contains(m_filePath) && QFileInfo(m_filePath).isFile())
        m_watcher.addPath(m_filePath);
}

void VaultFileWatcher::noteEvent()
{
    watchPaths();
    if (!m_settle.isActive()) {
        m_burst.start();
        m_settle.start();
        return;
    }
    // Each event restarts the wait, so that a save in several steps is read once, whole; a
    // writer that never stops is still followed.
    if (!m_burst.hasExpired(longestWait().count()))
        m_settle.start();
}

} // namespace Tessaline
