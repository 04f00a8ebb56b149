// SPDX-License-Identifier: MIT
#include "CheatSheetModel.h"

#include "commands/ShortcutRunner.h"
#include "helpers/TextHelperService.h"
#include "lookup/ChordConflicts.h"
#include "scan/AppMenuScanner.h"
#include "settings/KeyNamePreference.h"
#include "vault/ScanHistory.h"
#include "vault/VaultStore.h"

namespace Tessaline {

CheatSheetModel::CheatSheetModel(VaultStore& store, AppMenuScanner& scanner, TrackedApp app,
                                 std::function<void(const QString&)> copyText,
                                 QVariantList helperActions, QObject* parent)
    : QObject(parent), m_store(&store), m_scanner(&scanner), m_app(std::move(app)),
      m_copyText(std::move(copyText)), m_helperActions(std::move(helperActions))
{
    connect(&store, &VaultStore::dataChanged, this, [this] {
        m_lookup.reset();
        findConflicts();
        findDrift();
        recompute();
    });
    // A scan records itself after its merge has changed the vault.
    connect(&store.scanHistory(), &ScanHistory::changed, this, [this] {
        findDrift();
        recompute();
    });
    connect(&store, &VaultStore::filterChanged, this, [this] {
        recompute();
        emit filterChanged();
    });
    for (auto signal :
         {&AppMenuScanner::isScanningChanged, &AppMenuScanner::statusTextChanged,
          &AppMenuScanner::statusAppBundleIDChanged, &AppMenuScanner::driftTextChanged})
        connect(&scanner, signal, this, &CheatSheetModel::scanStatusChanged);
    findConflicts();
    findDrift();
    recompute();
}

void CheatSheetModel::followKeyNames(const KeyNamePreference& keyNames)
{
    const auto follow = [this, &keyNames] {
        m_keyNames = keyNames.style();
        m_rows.setKeyNameStyle(m_keyNames);
        if (m_lookupActive)
            emit lookupChanged();
    };
    follow();
    connect(&keyNames, &KeyNamePreference::styleChanged, this, follow);
}

void CheatSheetModel::setDesktopShortcuts(QList<DesktopShortcut> shortcuts)
{
    m_desktop = std::move(shortcuts);
    m_lookup.reset();
    findConflicts();
    recompute();
}

QString CheatSheetModel::lookupChordText() const
{
    return m_lookupChord.isEmpty() ? QString() : ChordText::display(m_lookupChord, m_keyNames);
}

void CheatSheetModel::startLookup()
{
    if (m_lookupActive)
        return;
    // The index is made now, while the user reaches for the chord, so the answer is at hand.
    lookup();
    m_lookupActive = true;
    m_lookupChord.clear();
    recompute();
    emit lookupChanged();
}

void CheatSheetModel::lookUp(const QString& chord)
{
    if (!m_lookupActive)
        return;
    m_lookupChord = ChordText::normalized(chord).value_or(QString());
    recompute();
    emit lookupChanged();
}

void CheatSheetModel::stopLookup()
{
    if (!m_lookupActive)
        return;
    m_lookupActive = false;
    m_lookupChord.clear();
    recompute();
    emit lookupChanged();
}

const ShortcutLookup& CheatSheetModel::lookup()
{
    if (!m_lookup) {
        const std::optional<AppShortcutPack> pack =
            m_store ? m_store->appPack(m_app) : std::nullopt;
        m_lookup.emplace(pack ? QList<AppShortcutPack>{*pack} : QList<AppShortcutPack>{},
                         m_store ? m_store->data().global : QList<ShortcutItem>{}, m_desktop);
    }
    return *m_lookup;
}

QList<ShortcutListModel::Entry> CheatSheetModel::lookupEntries()
{
    if (!m_store || m_lookupChord.isEmpty())
        return {};
    QList<ShortcutListModel::Entry> entries;
    for (const BoundShortcut& bound : lookup().which(m_lookupChord))
        entries.append({bound.source, bound.item});
    return entries;
}

void CheatSheetModel::findConflicts()
{
    m_conflicts.clear();
    if (!m_store)
        return;
    const std::optional<AppShortcutPack> pack = m_store->appPack(m_app);
    if (!pack)
        return;
    const QHash<QString, QStringList> reasons =
        ChordConflicts::reasonsByItem(ChordConflicts::inPack(*pack, m_desktop));
    for (auto it = reasons.cbegin(); it != reasons.cend(); ++it)
        m_conflicts.insert(it.key(), it->join(QLatin1Char('\n')));
}

void CheatSheetModel::findDrift()
{
    m_drift.clear();
    if (!m_store)
        return;
    const std::optional<AppShortcutPack> pack = m_store->appPack(m_app);
    if (!pack)
        return;
    if (const std::optional<ScanRecord> lastScan = m_store->scanHistory().lastScan(*pack))
        m_drift = ShortcutDrift::marks(pack->shortcuts, *lastScan);
}

void CheatSheetModel::followRunner(ShortcutRunner& runner,
                                   std::function<void(const ShortcutItem&)> run)
{
    m_runner = &runner;
    m_run = std::move(run);
    connect(&runner, &ShortcutRunner::statusChanged, this, &CheatSheetModel::scanStatusChanged);
    emit scanStatusChanged();
}

void CheatSheetModel::followTextHelpers(TextHelperService& helpers)
{
    m_helpers = &helpers;
    connect(&helpers, &TextHelperService::statusChanged, this, &CheatSheetModel::scanStatusChanged);
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
    if (m_helpers) {
        if (const std::optional<QString> notTyped = m_helpers->statusText())
            return *notTyped;
    }
    if (m_runner) {
        if (const std::optional<QString> failure = m_runner->statusText(m_app))
            return *failure;
    }
    // The scan's message, with the note of shortcuts it found stale after it.
    return m_scanner ? m_scanner->statusLine(m_app).value_or(QString()) : QString();
}

bool CheatSheetModel::isScanning() const
{
    return m_scanner && m_scanner->isScanning();
}

void CheatSheetModel::recompute()
{
    QList<ShortcutListModel::Entry> entries;
    if (m_lookupActive) {
        entries = lookupEntries();
    } else if (m_store) {
        const QString global = VaultStore::globalSectionTitle();
        for (const ShortcutSection& section : m_store->sections(m_app)) {
            for (const ShortcutItem& item : section.shortcuts) {
                // Only the app's own rows clash or drift; the global list is not the app's.
                if (section.title == global) {
                    entries.append({section.title, item});
                    continue;
                }
                const ShortcutDrift::Mark drift = m_drift.value(item.id());
                entries.append(
                    {section.title, item, m_conflicts.value(item.id()), drift.stale, drift.was});
            }
        }
    }
    // A vault change (a star, a reload, a merged scan) updates rows in place so that the list
    // keeps its scroll position and selection; a new search text starts the list afresh.
    // Lookup rows are not a search: nothing in them is emphasised.
    m_rows.update(std::move(entries), m_lookupActive ? QString() : filter());
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
    // Key lookup's rows are made from the chord pressed, not from the sections.
    if (m_lookupActive) {
        if (index < 0 || index >= m_rows.entries().size())
            return std::nullopt;
        return m_rows.entries().at(index).item;
    }
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
    if (m_helpers)
        m_helpers->clearStatus();
    if (m_runner)
        m_runner->clearStatus();
    if (m_scanner)
        m_scanner->clearStatus();
}

} // namespace Tessaline
