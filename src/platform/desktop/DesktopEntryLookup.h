// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace Tessaline {

/// What Tessaline reads from an application's desktop entry.
struct DesktopEntryInfo
{
    /// The desktop-file id without ".desktop", e.g. "org.xfce.mousepad".
    QString id;
    /// The entry's Name in the user's language.
    QString name;
    /// The entry's Icon: a themed icon name or an absolute file path; empty when none.
    QString icon;
};

/// Finds desktop entries by id, by a window's WM_CLASS and by the program they run.
class DesktopEntryLookup
{
public:
    virtual ~DesktopEntryLookup() = default;
    /// The entry with this id (without ".desktop"), if installed.
    virtual std::optional<DesktopEntryInfo> entry(const QString& id) const = 0;
    /// The id of the entry that claims a window with this WM_CLASS instance and class, through
    /// its StartupWMClass or its own id.
    virtual std::optional<QString> idForWindowClass(const QString& instance,
                                                    const QString& windowClass) const = 0;
    /// The id of the entry whose Exec runs the program with this file name ("mousepad" for
    /// /usr/bin/mousepad); entries shown in menus first.
    virtual std::optional<QString> idForExecutable(const QString& programName) const = 0;
};

} // namespace Tessaline
