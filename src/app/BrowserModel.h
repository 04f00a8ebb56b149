// SPDX-License-Identifier: MIT
#pragma once

#include "BrowserListModel.h"
#include "vault/VaultBrowserIndex.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace Tessaline {

class AppMenuScanner;
class KeyNamePreference;
class VaultStore;

/// What the browser window shows: every row of the vault filtered by the query and grouped by
/// app, the counts, and the scanner's state. The index is rebuilt when the vault changes; the
/// query only filters it.
class BrowserModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("BrowserModel is created with the browser window")
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    /// How many rows each group shows now, by group name; a binding on it follows the query.
    Q_PROPERTY(QVariantMap groupCounts READ groupCounts NOTIFY rowsChanged)
    Q_PROPERTY(int appPackCount READ appPackCount NOTIFY countsChanged)
    Q_PROPERTY(int shortcutCount READ shortcutCount NOTIFY countsChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY scannerChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY scannerChanged)

public:
    BrowserModel(VaultStore& store, AppMenuScanner& scanner,
                 std::function<void(const QString&)> copyText, QObject* parent = nullptr);

    /// Draws the rows' chords as `keyNames` says, now and whenever the user changes it.
    void followKeyNames(const KeyNamePreference& keyNames);

    QString query() const { return m_query; }
    void setQuery(const QString& query);
    QAbstractItemModel* rows() { return &m_rows; }
    int rowCount() const { return m_rows.rowCount(); }
    int appPackCount() const;
    int shortcutCount() const { return static_cast<int>(m_index->allRows().size()); }
    QString statusText() const;
    bool isScanning() const;

    /// The bundle id of a group's app, or undefined for the global group and name-only packs.
    Q_INVOKABLE
    QVariant bundleIDForGroup(const QString& group) const;
    QVariantMap groupCounts() const { return m_groupCounts; }
    Q_INVOKABLE
    void copyChord(const QString& chord);

    // The window's commands, which the application carries out: each emits its request.
    Q_INVOKABLE
    void requestScanOpenApps() { emit scanOpenAppsRequested(); }
    Q_INVOKABLE
    void requestShowJson() { emit showJsonRequested(); }

signals:
    void queryChanged();
    void rowsChanged();
    void countsChanged();
    void scannerChanged();
    void scanOpenAppsRequested();
    void showJsonRequested();

private:
    void rebuildIndex();
    /// Filters the index by the query: groups, counts and the list (reset or updated in place).
    void refilter(bool keepRows);

    QPointer<VaultStore> m_store;
    QPointer<AppMenuScanner> m_scanner;
    std::function<void(const QString&)> m_copyText;
    QString m_query;
    /// Held by pointer so that the list can read the old index while it moves to a new one.
    std::unique_ptr<const VaultBrowserIndex> m_index;
    BrowserListModel m_rows;
    QVariantMap m_groupCounts;
    QHash<QString, QString> m_groupBundleIDs;
};

} // namespace Tessaline
