// SPDX-License-Identifier: MIT
#include "vault/ScanHistory.h"

#include "LogCategories.h"
#include "vault/VaultFileLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace Tessaline {

namespace {

const QString kApps = QStringLiteral("apps");
const QString kName = QStringLiteral("name");
const QString kChord = QStringLiteral("chord");
const QString kMenu = QStringLiteral("menu");

} // namespace

ScanHistory::ScanHistory(QString filePath, QObject* parent)
    : QObject(parent), m_filePath(std::move(filePath))
{}

QString ScanHistory::filePathBeside(const QString& dataFilePath)
{
    return QFileInfo(dataFilePath).dir().filePath(QStringLiteral("scan-history.json"));
}

QString ScanHistory::packKey(const AppShortcutPack& pack)
{
    return pack.bundleID ? *pack.bundleID : pack.name.toLower();
}

QPair<qint64, QDateTime> ScanHistory::stamp() const
{
    const QFileInfo info(m_filePath);
    if (!info.exists())
        return {-1, QDateTime()};
    return {info.size(), info.lastModified()};
}

bool ScanHistory::refresh() const
{
    const QPair<qint64, QDateTime> now = stamp();
    if (m_stamp && *m_stamp == now)
        return false;
    m_stamp = now;
    m_records.clear();
    if (now.first < 0) {
        qCDebug(lcVault) << "no scan history at" << m_filePath;
        return true;
    }
    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcVault) << "cannot read the scan history" << m_filePath << file.errorString();
        return true;
    }
    m_records = decode(file.readAll(), m_filePath);
    return true;
}

void ScanHistory::reloadIfChangedOutside()
{
    // Never read yet: nobody has asked, so nobody needs to hear of it.
    if (!m_stamp)
        return;
    if (refresh())
        emit changed();
}

ScanHistory::Records ScanHistory::decode(const QByteArray& bytes, const QString& filePath)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject() ||
        !document.object().value(kApps).isObject()) {
        qCWarning(lcVault) << "the scan history" << filePath
                           << "is damaged and is ignored:" << error.errorString();
        return {};
    }
    Records records;
    const QJsonObject apps = document.object().value(kApps).toObject();
    for (auto app = apps.begin(); app != apps.end(); ++app) {
        QList<ShortcutItem> items;
        for (const QJsonValue& value : app.value().toArray()) {
            const QJsonObject object = value.toObject();
            if (!object.value(kName).isString() || !object.value(kChord).isString())
                continue;
            ShortcutItem item;
            item.name = object.value(kName).toString();
            item.chord = object.value(kChord).toString();
            if (object.value(kMenu).isString())
                item.menu = object.value(kMenu).toString();
            items.append(std::move(item));
        }
        records.insert(app.key(), ScanRecord::of(items));
    }
    return records;
}

QByteArray ScanHistory::encode(const Records& records)
{
    QJsonObject apps;
    for (auto record = records.cbegin(); record != records.cend(); ++record) {
        QJsonArray items;
        for (const ShortcutItem& item : record->items) {
            QJsonObject object{{kName, item.name}, {kChord, item.chord}};
            if (item.menu)
                object.insert(kMenu, *item.menu);
            items.append(object);
        }
        apps.insert(record.key(), items);
    }
    return QJsonDocument(QJsonObject{{kApps, apps}}).toJson(QJsonDocument::Indented);
}

std::optional<ScanRecord> ScanHistory::lastScan(const QString& key) const
{
    refresh();
    const auto found = m_records.constFind(key);
    if (found == m_records.cend())
        return std::nullopt;
    return *found;
}

std::optional<ScanRecord> ScanHistory::lastScan(const AppShortcutPack& pack) const
{
    return lastScan(packKey(pack));
}

Expected<void> ScanHistory::record(const QString& key, const QList<ShortcutItem>& scanned)
{
    VaultFileLock lock(m_filePath);
    if (Expected<void> locked = lock.acquire(); !locked)
        return locked;
    // Another program may have recorded a scan of another app meanwhile: keep it.
    m_stamp.reset();
    refresh();
    m_records.insert(key, ScanRecord::of(scanned));

    QSaveFile file(m_filePath);
    const QByteArray bytes = encode(m_records);
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    m_stamp = stamp();
    emit changed();
    if (!written) {
        return Unexpected(QStringLiteral("Cannot write the scan history %1: %2")
                              .arg(QDir::toNativeSeparators(m_filePath), file.errorString()));
    }
    return {};
}

Expected<void> ScanHistory::clear()
{
    VaultFileLock lock(m_filePath);
    if (Expected<void> locked = lock.acquire(); !locked)
        return locked;
    const bool removed = !QFileInfo::exists(m_filePath) || QFile::remove(m_filePath);
    m_records.clear();
    m_stamp = stamp();
    emit changed();
    if (!removed) {
        return Unexpected(QStringLiteral("Cannot remove the scan history %1")
                              .arg(QDir::toNativeSeparators(m_filePath)));
    }
    return {};
}

} // namespace Tessaline
