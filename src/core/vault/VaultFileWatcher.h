// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>

namespace Tessaline {

/// Tells when the vault file may have been changed by another program. It watches the file and
/// its folder: an atomic replace (how the store, the command line and most editors save) puts a
/// new file in place of the watched one, which only the folder reports. A burst of events is
/// reported once, after the folder has been quiet for settleTime(), and a burst that goes on is
/// still reported every longestWait().
class VaultFileWatcher : public QObject
{
    Q_OBJECT

public:
    explicit VaultFileWatcher(const QString& filePath, QObject* parent = nullptr);

    static std::chrono::milliseconds settleTime() { return std::chrono::milliseconds(100); }
    static std::chrono::milliseconds longestWait() { return std::chrono::milliseconds(400); }

signals:
    /// The file or its folder changed and has been quiet since.
    void changed();

private:
    /// Watches the file again after a replace dropped it, and the folder once it exists.
    void watchPaths();
    void noteEvent();

    QString m_filePath;
    QString m_folderPath;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
    QElapsedTimer m_burst;
};

} // namespace Tessaline
