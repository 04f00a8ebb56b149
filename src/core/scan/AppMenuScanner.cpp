// SPDX-License-Identifier: MIT
#include "scan/AppMenuScanner.h"

#include "platform/AccessibilityElementFactory.h"
#include "platform/AccessibilityTrust.h"
#include "platform/AlertPresenter.h"
#include "platform/Workspace.h"
#include "vault/VaultOrder.h"
#include "vault/VaultStore.h"

#include <QPointer>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <limits>

namespace Tessaline {

namespace {

const QString kDiscoveredMenu = QStringLiteral("Discovered from the app menu");

// Adds with a trap instead of wrapping: a counter that overflows is a programming error.
int checkedAdd(int a, int b)
{
    int sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        qFatal("AppMenuScanner: counter overflow");
    return sum;
}

int toCount(qsizetype value)
{
    if (value < 0 || value > std::numeric_limits<int>::max())
        qFatal("AppMenuScanner: count out of range");
    return static_cast<int>(value);
}

QString number(int value)
{
    return QString::number(value);
}

std::optional<QString> stringAttribute(const QString& name, const AccessibilityElementPtr& element)
{
    const QVariant value = element->attributeValue(name);
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

// Integers may come as any integral type, or as a floating-point number taken at its
// integer value.
std::optional<qint64> intAttribute(const QString& name, const AccessibilityElementPtr& element)
{
    const QVariant value = element->attributeValue(name);
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return value.toLongLong();
    case QMetaType::Double:
    case QMetaType::Float:
        return static_cast<qint64>(value.toDouble());
    default:
        return std::nullopt;
    }
}

AccessibilityElementList childElements(const AccessibilityElementPtr& element)
{
    const QVariant value = element->attributeValue(AccessibilityAttribute::children);
    if (value.metaType() != QMetaType::fromType<AccessibilityElementList>())
        return {};
    AccessibilityElementList list = value.value<AccessibilityElementList>();
    list.removeAll(nullptr);
    return list;
}

} // namespace

struct AppMenuScanner::OpenAppsRun
{
    QPointer<VaultStore> store;
    QList<TrackedApp> apps;
    int next = 0;
    int scanned = 0;
    int added = 0;
    int found = 0;
    int withShortcuts = 0;
};

AppMenuScanner::AppMenuScanner(Workspace& workspace, AccessibilityTrust& trust,
                               AccessibilityElementFactory& elements, AlertPresenter& alerts,
                               QObject* parent)
    : QObject(parent), m_workspace(workspace), m_trust(trust), m_elements(elements),
      m_alerts(alerts)
{}

AppMenuScanner::~AppMenuScanner() = default;

std::optional<QString> AppMenuScanner::statusText(const TrackedApp& app) const
{
    if (!m_statusAppBundleID)
        return m_statusText;
    if (app.bundleID && *app.bundleID == *m_statusAppBundleID)
        return m_statusText;
    return std::nullopt;
}

void AppMenuScanner::setScanning(bool scanning)
{
    m_isScanning = scanning;
    emit isScanningChanged();
}

void AppMenuScanner::setStatusText(const std::optional<QString>& text)
{
    m_statusText = text;
    emit statusTextChanged();
}

void AppMenuScanner::setStatusAppBundleID(const std::optional<QString>& bundleID)
{
    m_statusAppBundleID = bundleID;
    emit statusAppBundleIDChanged();
}

void AppMenuScanner::finishScan()
{
    setScanning(false);
    emit scanFinished();
}

void AppMenuScanner::scanAndMergeCurrentApp(const TrackedApp& app, VaultStore& store)
{
    if (m_isScanning)
        return;
    setScanning(true);
    setStatusAppBundleID(app.bundleID);
    setStatusText(QStringLiteral("Scanning ") + app.name + QStringLiteral(" menus..."));
    // The reading blocks while the other application answers; let the message paint first.
    QTimer::singleShot(0, this, [this, app, store = QPointer<VaultStore>(&store)] {
        runCurrentAppScan(app, store.data());
    });
}

void AppMenuScanner::runCurrentAppScan(const TrackedApp& app, VaultStore* store)
{
    const ScanOutcome outcome = scan(app);
    if (const auto* error = std::get_if<MenuScanError>(&outcome)) {
        if (error->kind == MenuScanError::Kind::accessibilityNotGranted) {
            setStatusText(QStringLiteral("Accessibility permission is needed to scan app menus."));
            promptForAccessibility();
        } else {
            setStatusText(error->errorDescription());
        }
        finishScan();
        return;
    }
    const ScanResult& result = std::get<ScanResult>(outcome);
    const int n = static_cast<int>(result.shortcuts.size());
    const int added =
        store ? toCount(store->mergeScannedShortcuts(result.shortcuts, result.app)) : 0;
    const QString& name = result.app.name;
    if (n == 0) {
        setStatusText(QStringLiteral("No menu shortcuts found for ") + name + QStringLiteral("."));
    } else if (added == 0) {
        setStatusText(QStringLiteral("Found ") + number(n) + QStringLiteral(" shortcuts for ") +
                      name + QStringLiteral("; they were already in the vault."));
    } else {
        setStatusText(QStringLiteral("Added ") + number(added) + QStringLiteral(" of ") +
                      number(n) + QStringLiteral(" discovered shortcuts for ") + name +
                      QStringLiteral("."));
    }
    finishScan();
}

void AppMenuScanner::scanAndMergeOpenApps(VaultStore& store)
{
    if (m_isScanning)
        return;
    setScanning(true);
    setStatusAppBundleID(std::nullopt);
    setStatusText(QStringLiteral("Preparing to scan open apps..."));
    if (!m_trust.isTrusted()) {
        setStatusText(QStringLiteral("Accessibility permission is needed to scan open apps."));
        promptForAccessibility();
        finishScan();
        return;
    }
    auto run = std::make_shared<OpenAppsRun>();
    run->store = &store;
    run->apps = scannableRunningApps();
    if (run->apps.isEmpty()) {
        setStatusText(QStringLiteral("No open apps with menu bars were found."));
        finishScan();
        return;
    }
    scanNextOpenApp(run);
}

void AppMenuScanner::scanNextOpenApp(std::shared_ptr<OpenAppsRun> run)
{
    const int total = static_cast<int>(run->apps.size());
    if (run->next >= total) {
        setStatusText(QStringLiteral("Scanned ") + number(run->scanned) +
                      QStringLiteral(" open apps. Added ") + number(run->added) +
                      QStringLiteral(" new shortcuts from ") + number(run->found) +
                      QStringLiteral(" found across ") + number(run->withShortcuts) +
                      QStringLiteral(" apps."));
        finishScan();
        return;
    }
    const TrackedApp app = run->apps.at(run->next);
    run->next = checkedAdd(run->next, 1);
    setStatusText(QStringLiteral("Scanning ") + app.name + QStringLiteral(" (") +
                  number(run->next) + QStringLiteral(" of ") + number(total) +
                  QStringLiteral(")..."));
    // One application per turn of the event loop, so the progress message can paint.
    QTimer::singleShot(0, this, [this, run, app] {
        const ScanOutcome outcome = scan(app);
        if (const auto* result = std::get_if<ScanResult>(&outcome)) {
            const int count = static_cast<int>(result->shortcuts.size());
            const int added =
                run->store
                    ? toCount(run->store->mergeScannedShortcuts(result->shortcuts, result->app))
                    : 0;
            run->scanned = checkedAdd(run->scanned, 1);
            run->found = checkedAdd(run->found, count);
            run->added = checkedAdd(run->added, added);
            if (count > 0)
                run->withShortcuts = checkedAdd(run->withShortcuts, 1);
        }
        scanNextOpenApp(run);
    });
}

ScanOutcome AppMenuScanner::scan(const TrackedApp& app)
{
    if (!app.bundleID)
        return MenuScanError::missingBundleID();
    if (!m_trust.isTrusted())
        return MenuScanError::accessibilityNotGranted();
    const QList<RunningApplication> running = m_workspace.runningApplications(*app.bundleID);
    if (running.isEmpty())
        return MenuScanError::appNotRunning(app.name);
    const AccessibilityElementPtr application =
        m_elements.applicationElement(running.first().processId);
    if (!application)
        return MenuScanError::menuUnavailable(app.name);
    const QVariant menuBarValue = application->attributeValue(AccessibilityAttribute::menuBar);
    if (menuBarValue.metaType() != QMetaType::fromType<AccessibilityElementPtr>())
        return MenuScanError::menuUnavailable(app.name);
    const auto menuBar = menuBarValue.value<AccessibilityElementPtr>();
    if (!menuBar)
        return MenuScanError::menuUnavailable(app.name);

    QList<ShortcutItem> items;
    for (const AccessibilityElementPtr& menu : childElements(menuBar)) {
        QStringList path;
        if (const auto title = stringAttribute(AccessibilityAttribute::title, menu))
            path.append(*title);
        items.append(scanMenuElement(menu, path));
    }
    items = dedupe(items);
    const QCollator collator = VaultOrder::nameCollator();
    std::stable_sort(items.begin(), items.end(),
                     [&collator](const ShortcutItem& a, const ShortcutItem& b) {
                         return collator.compare(a.name, b.name) < 0;
                     });
    return ScanResult{app, items};
}

QList<ShortcutItem> AppMenuScanner::scanMenuElement(const AccessibilityElementPtr& element,
                                                    const QStringList& path) const
{
    QList<ShortcutItem> items;
    if (auto item = shortcutItem(element, path))
        items.append(std::move(*item));
    for (const AccessibilityElementPtr& child : childElements(element)) {
        QStringList childPath = path;
        const auto title = stringAttribute(AccessibilityAttribute::title, child);
        if (title && !title->isEmpty())
            childPath.append(*title);
        items.append(scanMenuElement(child, childPath));
    }
    return items;
}

std::optional<ShortcutItem> AppMenuScanner::shortcutItem(const AccessibilityElementPtr& element,
                                                         const QStringList& path) const
{
    const auto title = stringAttribute(AccessibilityAttribute::title, element);
    if (!title || title->isEmpty() || *title == QString(QChar(0x2014)))
        return std::nullopt;

    QString key;
    const auto character = stringAttribute(AccessibilityAttribute::menuItemCmdChar, element);
    if (character && !character->isEmpty()) {
        key = normalizedKey(*character);
    } else {
        const auto code = intAttribute(AccessibilityAttribute::menuItemCmdVirtualKey, element);
        if (!code)
            return std::nullopt;
        if (*code < std::numeric_limits<int>::min() || *code > std::numeric_limits<int>::max())
            return std::nullopt;
        const auto symbol = virtualKeySymbol(static_cast<int>(*code));
        if (!symbol)
            return std::nullopt;
        key = *symbol;
    }
    const qint64 modifiers =
        intAttribute(AccessibilityAttribute::menuItemCmdModifiers, element).value_or(0);
    const QString chord = displayChord(key, static_cast<int>(modifiers & 0xff));
    if (chord.isEmpty())
        return std::nullopt;

    QStringList menuPath;
    for (const QString& component : path) {
        if (!component.isEmpty() && component != *title)
            menuPath.append(component);
    }
    const QString menu =
        menuPath.isEmpty() ? kDiscoveredMenu : menuPath.join(QStringLiteral(" > "));

    ShortcutItem item;
    item.name = QString(*title).replace(QChar(0x2026), QStringLiteral("..."));
    item.chord = chord;
    item.favorite = false;
    item.menu = menu;
    item.tags = QStringList{QStringLiteral("scanned"), QStringLiteral("menu")};
    item.note = std::nullopt;
    item.source = QStringLiteral("scanned-menu");
    return item;
}

QList<TrackedApp> AppMenuScanner::scannableRunningApps() const
{
    const std::optional<QString> own = m_workspace.ownBundleIdentifier();
    QList<TrackedApp> apps;
    QSet<QString> seen;
    for (const RunningApplication& running : m_workspace.runningApplications()) {
        if (!running.isRegular || !running.bundleIdentifier)
            continue;
        const QString& bundleID = *running.bundleIdentifier;
        if (own && bundleID == *own)
            continue;
        if (seen.contains(bundleID))
            continue;
        seen.insert(bundleID);
        apps.append(TrackedApp{running.localizedName.value_or(bundleID), bundleID});
    }
    const QCollator collator = VaultOrder::nameCollator();
    std::stable_sort(apps.begin(), apps.end(),
                     [&collator](const TrackedApp& a, const TrackedApp& b) {
                         return collator.compare(a.name, b.name) < 0;
                     });
    return apps;
}

void AppMenuScanner::promptForAccessibility()
{
    const int response = m_alerts.runModal(
        QStringLiteral("Accessibility permission needed"),
        QStringLiteral("Tessaline needs Accessibility permission to read app menus and discover "
                       "shortcuts. After enabling it, reopen the app you want to scan and try "
                       "again."),
        {QStringLiteral("Turn On Accessibility"), QStringLiteral("Cancel")});
    if (response == AlertPresenter::kFirstButton)
        m_trust.requestTrust();
}

QString AppMenuScanner::normalizedKey(const QString& character)
{
    if (character.size() != 1)
        return character;
    switch (character.at(0).unicode()) {
    case 0x000D:
        return QStringLiteral("Return");
    case 0x0009:
        return QStringLiteral("Tab");
    case 0x001B:
        return QStringLiteral("Esc");
    case 0x0020:
        return QStringLiteral("Space");
    case 0x0008:
    case 0x007F:
        return QStringLiteral("Delete");
    case 0x001C:
    case 0xF702:
        return QStringLiteral("←");
    case 0x001D:
    case 0xF703:
        return QStringLiteral("→");
    case 0x001E:
    case 0xF700:
        return QStringLiteral("↑");
    case 0x001F:
    case 0xF701:
        return QStringLiteral("↓");
    case 0xF72C:
        return QStringLiteral("Page Up");
    case 0xF72D:
        return QStringLiteral("Page Down");
    case 0xF729:
        return QStringLiteral("Home");
    case 0xF72B:
        return QStringLiteral("End");
    default:
        return character.toUpper();
    }
}

std::optional<QString> AppMenuScanner::virtualKeySymbol(int code)
{
    if (code < 36 || code > 126)
        return std::nullopt;
    switch (code) {
    case 36:
    case 76:
        return QStringLiteral("Return");
    case 48:
        return QStringLiteral("Tab");
    case 49:
        return QStringLiteral("Space");
    case 51:
    case 117:
        return QStringLiteral("Delete");
    case 53:
        return QStringLiteral("Esc");
    case 96:
        return QStringLiteral("F5");
    case 97:
        return QStringLiteral("F6");
    case 98:
        return QStringLiteral("F7");
    case 99:
        return QStringLiteral("F3");
    case 100:
        return QStringLiteral("F8");
    case 101:
        return QStringLiteral("F9");
    case 103:
        return QStringLiteral("F11");
    case 109:
        return QStringLiteral("F10");
    case 111:
        return QStringLiteral("F12");
    case 115:
        return QStringLiteral("Home");
    case 116:
        return QStringLiteral("Page Up");
    case 118:
        return QStringLiteral("F4");
    case 119:
        return QStringLiteral("End");
    case 120:
        return QStringLiteral("F2");
    case 121:
        return QStringLiteral("Page Down");
    case 122:
        return QStringLiteral("F1");
    case 123:
        return QStringLiteral("←");
    case 124:
        return QStringLiteral("→");
    case 125:
        return QStringLiteral("↓");
    case 126:
        return QStringLiteral("↑");
    default:
        return std::nullopt;
    }
}

QString AppMenuScanner::displayChord(const QString& keySymbol, int modifiers)
{
    QStringList parts;
    if (modifiers & 4)
        parts.append(QStringLiteral("⌃"));
    if (modifiers & 2)
        parts.append(QStringLiteral("⌥"));
    if (modifiers & 1)
        parts.append(QStringLiteral("⇧"));
    if (!(modifiers & 8))
        parts.append(QStringLiteral("⌘"));
    parts.append(keySymbol);
    return parts.join(QLatin1Char(' '));
}

QList<ShortcutItem> AppMenuScanner::dedupe(const QList<ShortcutItem>& items)
{
    QList<ShortcutItem> kept;
    QSet<QString> keys;
    for (const ShortcutItem& item : items) {
        const QString key = item.name.toLower() + QLatin1Char('|') + item.chord.toLower();
        if (keys.contains(key))
            continue;
        keys.insert(key);
        kept.append(item);
    }
    return kept;
}

} // namespace Tessaline

namespace Tessaline {

void AppMenuScanner::clearStatus()
{
    setStatusText(std::nullopt);
    setStatusAppBundleID(std::nullopt);
}

} // namespace Tessaline
