// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeySettings.h"
#include "platform/keysettings/GSettingsKeySettings.h"
#include "platform/keysettings/KdeGlobalShortcuts.h"
#include "platform/keysettings/XfconfKeySettings.h"

#include <QStringList>

namespace Tessaline {

/// The key settings of the desktop the user runs: the one XDG_CURRENT_DESKTOP names, else the
/// first whose settings are there (a kglobalshortcutsrc, the user's Xfce shortcuts file, then
/// the GNOME, Cinnamon and MATE schemas). Other desktops have no bindings to read.
class CurrentDesktopKeySettings final : public DesktopKeySettings
{
public:
    enum class Family
    {
        None,
        Gnome,
        Cinnamon,
        Mate,
        Kde,
        Xfce,
    };

    /// Where each desktop's settings are; empty values mean the user's and system's own.
    struct Sources
    {
        QString currentDesktop;
        QString kdeFile;
        QStringList xfceFiles;
        QString schemaDirectory;
    };

    /// The running session's desktop and settings.
    CurrentDesktopKeySettings();
    explicit CurrentDesktopKeySettings(const Sources& sources);

    QList<DesktopKeyBinding> bindings(Action action) const override;
    QString settingsName() const override;

    /// The desktop whose settings are read; decided anew at each call, so that settings that
    /// appear later are found.
    Family family() const;
    /// The desktop an XDG_CURRENT_DESKTOP value names (a colon-separated list, most specific
    /// first, such as "ubuntu:GNOME"); None when it names none of them.
    static Family familyNamed(const QString& currentDesktop);

private:
    Family m_named;
    GSettingsKeySettings m_gnome;
    GSettingsKeySettings m_cinnamon;
    GSettingsKeySettings m_mate;
    KdeGlobalShortcuts m_kde;
    XfconfKeySettings m_xfce;
};

} // namespace Tessaline
