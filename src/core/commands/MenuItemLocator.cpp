// SPDX-License-Identifier: MIT
#include "commands/MenuItemLocator.h"

#include "scan/MenuReader.h"

namespace Tessaline {

namespace {

// As deep as menus go in practice; a cycle in a broken tree ends here.
constexpr int kMaxDepth = 12;

struct Search
{
    const QStringList& path;
    const QString& name;
    MenuEntryPtr disabledMatch;
};

// Depth-first through the entries, descending only where the path leads.
Expected<MenuEntryPtr> findIn(Search& search, const MenuEntryList& entries, qsizetype matched,
                              const QString& lastTitle, int depth)
{
    if (depth > kMaxDepth)
        return MenuEntryPtr();
    QList<QString> titles;
    titles.reserve(entries.size());
    for (const MenuEntryPtr& entry : entries)
        titles.append(entry ? MenuReader::itemName(entry->title()) : QString());

    if (matched == search.path.size()) {
        for (qsizetype i = 0; i < entries.size(); ++i) {
            if (!entries.at(i) || titles.at(i) != search.name)
                continue;
            if (entries.at(i)->isEnabled())
                return entries.at(i);
            if (!search.disabledMatch)
                search.disabledMatch = entries.at(i);
        }
    }
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const MenuEntryPtr& entry = entries.at(i);
        if (!entry || !entry->hasChildren())
            continue;
        const QString& title = titles.at(i);
        qsizetype next = -1;
        QString nextTitle = lastTitle;
        if (matched < search.path.size() &&
            title == MenuReader::itemName(search.path.at(matched))) {
            next = matched + 1;
            nextTitle = title;
        } else if (title.isEmpty() || title == lastTitle || title == search.name) {
            next = matched;
        }
        if (next < 0)
            continue;
        const Expected<MenuEntryList> children = entry->children();
        if (!children)
            return Unexpected(children.error());
        const Expected<MenuEntryPtr> found = findIn(search, *children, next, nextTitle, depth + 1);
        if (!found || *found)
            return found;
    }
    return MenuEntryPtr();
}

} // namespace

Expected<MenuEntryPtr> MenuItemLocator::find(const MenuEntryList& menuBar, const QStringList& path,
                                             const QString& name)
{
    Search search{path, name, {}};
    const Expected<MenuEntryPtr> found = findIn(search, menuBar, 0, QString(), 0);
    if (!found || *found)
        return found;
    return search.disabledMatch;
}

} // namespace Tessaline
