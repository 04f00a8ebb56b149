// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "vault/AppShortcutPack.h"
#include "vault/ScanRecord.h"
#include "vault/ShortcutItem.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>

#include <optional>

namespace Tessaline {

/// The last menu scan of each application, kept in its own file beside the vault
/// ("scan-history.json"), so that the vault's items and its file stay exactly what the merge
/// makes of them. A pack is known by its bundle id, else by its lower-cased name.
///
/// A missing, unreadable or damaged history file means "no history": it is logged and the
/// next recorded scan writes a new one. Other programs (the command line) record scans too,
/// so the file is read again whenever it changed on disk, and each record is written under
/// a lock over the newest file.
class ScanHistory : public QObject
{
    Q_OBJECT
public:
    explicit ScanHistory(QString filePath, QObject* parent = nullptr);

    QString filePath() const { return m_filePath; }
    /// The history file that belongs to the vault file `dataFilePath`: in the same folder.
    static QString filePathBeside(const QString& dataFilePath);
    /// The key of `pack` in the history: its bundle id, else its lower-cased name.
    static QString packKey(const AppShortcutPack& pack);

    /// The last scan recorded for the pack known as `key`, if any.
    std::optional<ScanRecord> lastScan(const QString& key) const;
    /// The last scan recorded for `pack`, if any.
    std::optional<ScanRecord> lastScan(const AppShortcutPack& pack) const;
    /// Keeps `scanned` as the last scan of the pack known as `key` and writes the file.
    Expected<void> record(const QString& key, const QList<ShortcutItem>& scanned);
    /// Forgets every scan (the vault they describe was replaced) and removes the file.
    Expected<void> clear();
    /// Reads the file again if another program changed it, and then says so.
    void reloadIfChangedOutside();

signals:
    /// The recorded scans changed: one was recorded, or they were cleared.
    void changed();

private:
    using Records = QHash<QString, ScanRecord>;

    /// Reads the file again when it changed since it was last read or written here; returns
    /// whether it did.
    bool refresh() const;
    static Records decode(const QByteArray& bytes, const QString& filePath);
    static QByteArray encode(const Records& records);
    /// The file's size and time of change, to notice a change by another program.
    QPair<qint64, QDateTime> stamp() const;

    QString m_filePath;
    mutable Records m_records;
    mutable std::optional<QPair<qint64, QDateTime>> m_stamp;
};

} // namespace Tessaline
