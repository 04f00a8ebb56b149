// SPDX-License-Identifier: MIT
#include "vault/FallbackData.h"

namespace Tessaline {

namespace {

// Every built-in item carries its sentence under `menu` (shown through the detail-text rule),
// exactly one tag and an explicit favorite flag.
ShortcutItem builtIn(const char* name, const char* chord, bool favorite, const char* sentence,
                     const char* tag)
{
    ShortcutItem item;
    item.name = QString::fromUtf8(name);
    item.chord = QString::fromUtf8(chord);
    item.favorite = favorite;
    item.menu = QString::fromUtf8(sentence);
    item.tags = QStringList{QString::fromUtf8(tag)};
    return item;
}

VaultData build()
{
    VaultData data;
    data.comment = QStringLiteral("Bundled fallback seed used when keybinds.json is unavailable.");
    data.global = {
        builtIn("Spotlight search", "⌘ Space", true,
                "Find apps, files, settings, and quick answers.", "search"),
        builtIn("Screenshot toolbar", "⌘ ⇧ 5", true,
                "Open the screenshot and screen recording controls.", "screenshot"),
        builtIn("Emoji and symbols", "⌃ ⌘ Space", false, "Open the character picker.", "typing"),
        builtIn("Force quit", "⌥ ⌘ Esc", false, "Use when an app is stuck.", "recovery"),
    };
    data.apps = {
        AppShortcutPack{
            QStringLiteral("Finder"),
            QStringLiteral("com.apple.finder"),
            {
                builtIn("Quick Look selected file", "Space", true,
                        "Preview without opening the file.", "files"),
                builtIn("Go to folder", "⌘ ⇧ G", true, "Jump straight to a path.", "navigation"),
                builtIn("Show hidden files", "⌘ ⇧ .", true, "Toggle invisible files.", "files"),
            },
        },
        AppShortcutPack{
            QStringLiteral("Notes"),
            QStringLiteral("com.apple.Notes"),
            {
                builtIn("Checklist item", "⌘ ⇧ L", true, "Add a checkbox line.", "notes"),
                builtIn("Insert table", "⌥ ⌘ T", false, "Create a small table.", "notes"),
            },
        },
    };
    return data;
}

} // namespace

const VaultData& fallbackData()
{
    static const VaultData data = build();
    return data;
}

} // namespace Tessaline
