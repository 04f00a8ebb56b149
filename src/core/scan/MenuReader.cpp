// SPDX-License-Identifier: MIT
#include "scan/MenuReader.h"

#include "common/VariantTypes.h"
#include "hotkey/Key.h"
#include "vault/VaultOrder.h"

#include <QSet>

#include <limits>

namespace Tessaline {

namespace {

const QString kDiscoveredMenu = QStringLiteral("Discovered from the app menu");
const QString kMenuPathSeparator = QStringLiteral(" > ");

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
    if (VariantTypes::holdsInteger(value))
        return value.toLongLong();
    if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float)
        return static_cast<qint64>(value.toDouble());
    return std::nullopt;
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

QList<ShortcutItem> MenuReader::readMenuBar(const AccessibilityElementPtr& menuBar)
{
    QList<ShortcutItem> items;
    for (const AccessibilityElementPtr& menu : childElements(menuBar)) {
        QStringList path;
        if (const auto title = stringAttribute(AccessibilityAttribute::title, menu))
            path.append(*title);
        items.append(readMenuElement(menu, path));
    }
    items = dedupe(items);
    VaultOrder::sortByName(items,
                           [](const ShortcutItem& item) -> const QString& { return item.name; });
    return items;
}

QList<ShortcutItem> MenuReader::readMenuElement(const AccessibilityElementPtr& element,
                                                const QStringList& path)
{
    QList<ShortcutItem> items;
    if (auto item = shortcutItem(element, path))
        items.append(std::move(*item));
    for (const AccessibilityElementPtr& child : childElements(element)) {
        QStringList childPath = path;
        const auto title = stringAttribute(AccessibilityAttribute::title, child);
        if (title && !title->isEmpty())
            childPath.append(*title);
        items.append(readMenuElement(child, childPath));
    }
    return items;
}

std::optional<ShortcutItem> MenuReader::shortcutItem(const AccessibilityElementPtr& element,
                                                     const QStringList& path)
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
    const QString menu = menuPath.isEmpty() ? kDiscoveredMenu : menuPath.join(kMenuPathSeparator);

    ShortcutItem item;
    item.name = itemName(*title);
    item.chord = chord;
    item.favorite = false;
    item.menu = menu;
    item.tags = QStringList{QStringLiteral("scanned"), QStringLiteral("menu")};
    item.note = std::nullopt;
    item.source = QStringLiteral("scanned-menu");
    return item;
}

QString MenuReader::normalizedKey(const QString& character)
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

std::optional<QString> MenuReader::virtualKeySymbol(int code)
{
    if (code < 0)
        return std::nullopt;
    const std::optional<HotKey::Key> key = HotKey::keyFromCarbonKeyCode(static_cast<quint32>(code));
    if (!key)
        return std::nullopt;
    return HotKey::menuKeyName(*key);
}

QString MenuReader::displayChord(const QString& keySymbol, int modifiers)
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

QStringList MenuReader::menuPath(const QString& menu)
{
    if (menu == kDiscoveredMenu)
        return {};
    return menu.split(kMenuPathSeparator, Qt::SkipEmptyParts);
}

QString MenuReader::itemName(const QString& title)
{
    return QString(title).replace(QChar(0x2026), QStringLiteral("..."));
}

QList<ShortcutItem> MenuReader::dedupe(const QList<ShortcutItem>& items)
{
    QList<ShortcutItem> kept;
    QSet<QString> keys;
    for (const ShortcutItem& item : items) {
        const QString key = item.dedupeKey();
        if (keys.contains(key))
            continue;
        keys.insert(key);
        kept.append(item);
    }
    return kept;
}

} // namespace Tessaline
