// SPDX-License-Identifier: MIT
#include "BrowserModel.h"

#include "scan/AppMenuScanner.h"
#include "settings/KeyNamePreference.h"
#include "vault/VaultStore.h"

namespace Tessaline {

BrowserModel::BrowserModel(VaultStore& store, AppMenuScanner& scanner,
                           std::function<void(const QString&)> copyText, QObject* parent)
    : QObject(parent), m_store(&store), m_scanner(&scanner), m_copyText(std::move(copyText))
{
    connect(&store, &VaultStore::dataChanged, this, &BrowserModel::rebuildIndex);
    for (auto signal : {&AppMenuScanner::isScanningChanged, &AppMenuScanner::statusTextChanged,
                        &AppMenuScanner::driftTextChanged})
        connect(&scanner, signal, this, &BrowserModel::scannerChanged);
    rebuildIndex();
}

void BrowserModel::followKeyNames(const KeyNamePreference& keyNames)
{
    m_rows.setKeyNameStyle(keyNames.style());
    connect(&keyNames, &KeyNamePreference::styleChanged, this,
            [this, &keyNames] { m_rows.setKeyNameStyle(keyNames.style()); });
}

void BrowserModel::setQuery(const QString& query)
{
    if (m_query == query)
        return;
    m_query = query;
    emit queryChanged();
    refilter(false);
}

int BrowserModel::appPackCount() const
{
    return m_store ? static_cast<int>(m_store->data().apps.size()) : 0;
}

QString BrowserModel::statusText() const
{
    if (!m_scanner || !m_scanner->statusText())
        return QString();
    // The note of shortcuts gone stale reads as part of the line.
    const std::optional<QString> drift = m_scanner->driftText();
    return drift ? AppMenuScanner::joinedWithDrift(*m_scanner->statusText(), *drift)
                 : *m_scanner->statusText();
}

bool BrowserModel::isScanning() const
{
    return m_scanner && m_scanner->isScanning();
}

QVariant BrowserModel::bundleIDForGroup(const QString& group) const
{
    const auto found = m_groupBundleIDs.constFind(group);
    return found == m_groupBundleIDs.constEnd() ? QVariant() : QVariant(*found);
}

void BrowserModel::copyChord(const QString& chord)
{
    if (m_copyText)
        m_copyText(chord);
}

void BrowserModel::rebuildIndex()
{
    // The list reads the index in place: the old index lives until the list has moved over.
    std::unique_ptr<const VaultBrowserIndex> previous = std::move(m_index);
    m_index = std::make_unique<const VaultBrowserIndex>(m_store ? m_store->allShortcutRows()
                                                                : QList<VaultShortcutRow>());
    m_groupBundleIDs.clear();
    for (const VaultShortcutRow& row : m_index->allRows()) {
        if (row.bundleID && !m_groupBundleIDs.contains(row.appName))
            m_groupBundleIDs.insert(row.appName, *row.bundleID);
    }
    emit countsChanged();
    refilter(previous != nullptr);
}

void BrowserModel::refilter(bool keepRows)
{
    const QList<VaultBrowserIndex::RowGroup> groups = m_index->groupedRowPositions(m_query);
    m_groupCounts.clear();
    for (const VaultBrowserIndex::RowGroup& group : groups)
        m_groupCounts.insert(group.name, static_cast<int>(group.rows.size()));
    if (keepRows)
        m_rows.update(*m_index, groups, m_query.trimmed());
    else
        m_rows.reset(*m_index, groups, m_query.trimmed());
    emit rowsChanged();
}

} // namespace Tessaline
