// SPDX-License-Identifier: MIT
#include "CheatSheetModel.h"

#include "commands/ShortcutRunner.h"
#include "scan/AppMenuScanner.h"
#include "settings/KeyNamePreference.h"
#include "vault/VaultStore.h"

namespace Tessaline {

CheatSheetModel::CheatSheetModel(VaultStore& store, AppMenuScanner& scanner, TrackedApp app,
                                 std::function<void(const QString&)> copyText,
                                 QVariantList helperActions, QObject* parent)
    : QObject(parent), m_store(&store), m_scanner(&scanner), m_app(std::move(app)),
      m_copyText(std::move(copyText)), m_helperActions(std::move(helperActions))
{
    connect(&store, &VaultStore::dataChanged, this, &CheatSheetModel::recompute);
    connect(&store, &VaultStore::filterChanged, this, [this] {
        recompute();
        emit filterChanged();
    });
    for (auto signal : {&AppMenuScanner::isScanningChanged, &AppMenuScanner::statusTextChanged,
                        &AppMenuScanner::statusAppBundleIDChanged})
        connect(&scanner, signal, this, &CheatSheetModel::scanStatusChanged);
    recompute();
}

void CheatSheetModel::followKeyNames(const KeyNamePreference& keyNames)
{
    m_rows.setKeyNameStyle(keyNames.style());
    connect(&keyNames, &KeyNamePreference::styleChanged, this,
            [this, &keyNames] { m_rows.setKeyNameStyle(keyNames.style()); });
}

void CheatSheetModel::followRunner(ShortcutRunner& runner,
                                   std::function<void(const ShortcutItem&)> run)
{
    m_runner = &runner;
    m_run = std::move(run);
    connect(&runner, &ShortcutRunner::statusChanged, this, &CheatSheetModel::scanStatusChanged);
    emit scanStatusChanged();
}

QVariant CheatSheetModel::appBundleID() const
{
    return m_app.bundleID ? QVariant(*m_app.bundleID) : QVariant();
}

QString CheatSheetModel::filter() const
{
    return m_store ? m_store->filter() : QString();
}

void CheatSheetModel::setFilter(const QString& filter)
{
    if (m_store)
        m_store->setFilter(filter);
}

bool CheatSheetModel::vaultReady() const
{
    if (!m_store)
        return false;
    const std::optional<AppShortcutPack> pack = m_store->appPack(m_app);
    return pack && !pack->shortcuts.isEmpty();
}

QString CheatSheetModel::scanStatus() const
{
    if (m_runner) {
        if (const std::optional<QString> failure = m_runner->statusText(m_app))
            return *failure;
    }
    return m_scanner ? m_scanner->statusText(m_app).value_or(QString()) : QString();
}

bool CheatSheetModel::isScanning() const
{
    return m_scanner && m_scanner->isScanning();
}

void CheatSheetModel::recompute()
{
    QList<ShortcutListModel::Entry> entries;
    if (m_store) {
        for (const ShortcutSection& section : m_store->sections(m_app)) {
            for (const ShortcutItem& item : section.shortcuts)
                entries.append({section.title, item});
        }
    }
    // A vault change (a star, a reload, a merged scan) updates rows in place so that the list
    // keeps its scroll position and selection; a new search text starts the list afresh.
    m_rows.update(std::move(entries), filter());
    emit sectionsChanged();
}

void CheatSheetModel::toggleFavorite(int index)
{
    if (!m_store || index < 0 || index >= flatCount())
        return;
    m_store->toggleFavorite(m_rows.entries().at(index).item, m_app);
}

void CheatSheetModel::copyChord(const QString& chord)
{
    if (m_copyText)
        m_copyText(chord);
}

void CheatSheetModel::copyChordAt(int index)
{
    if (const std::optional<ShortcutItem> item = itemAt(index))
        copyChord(item->chord);
}

void CheatSheetModel::runAt(int index)
{
    if (!m_run)
        return;
    if (const std::optional<ShortcutItem> item = itemAt(index))
        m_run(*item);
}

std::optional<ShortcutItem> CheatSheetModel::itemAt(int index) const
{
    if (!m_store)
        return std::nullopt;
    // The list as it is at this moment, not as it was drawn.
    qsizetype position = 0;
    for (const ShortcutSection& section : m_store->sections(m_app)) {
        for (const ShortcutItem& item : section.shortcuts) {
            if (position++ == index)
                return item;
        }
    }
    return std::nullopt;
}

void CheatSheetModel::dismissScanStatus()
{
    if (m_runner)
        m_runner->clearStatus();
    if (m_scanner)
        m_scanner->clearStatus();
}

} // namespace Tessaline
