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
    // A small Linux desktop pack: what the desktop itself offers, then two everyday apps.
    data.global = {
        builtIn("Show all apps", "⌘ A", true,
                "Open the desktop's grid of apps; type to search apps and files.", "search"),
        builtIn("Screenshot", "Print", true,
                "Open the desktop's screenshot and screen recording tool.", "screenshot"),
        builtIn("Emoji and symbols", "⌃ .", false, "Open the emoji picker in a text field.",
                "typing"),
        builtIn("Close window", "⌥ F4", false, "Use when an app is stuck.", "recovery"),
    };
    data.apps = {
        AppShortcutPack{
            QStringLiteral("Files"),
            QStringLiteral("org.gnome.Nautilus"),
            {
                builtIn("Preview selected file", "Space", true, "Preview without opening the file.",
                        "files"),
                builtIn("Type a location", "⌃ L", true, "Jump straight to a path.", "navigation"),
                builtIn("Show hidden files", "⌃ H", true, "Toggle hidden files.", "files"),
            },
        },
        AppShortcutPack{
            QStringLiteral("Text Editor"),
            QStringLiteral("org.gnome.TextEditor"),
            {
                builtIn("New document", "⌃ N", true, "Start a blank document.", "notes"),
                builtIn("Go to line", "⌃ I", false, "Jump to a line number.", "notes"),
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
