// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeySettings.h"

#include <QString>

namespace Tessaline {

/// The bindings of a GTK desktop, read through GSettings each time they are asked for:
/// - GNOME: org.gnome.settings-daemon.plugins.media-keys (volume-{up,down}-precise and their
///   -static keys; play, next, previous and their -static keys) and org.gnome.shell.keybindings
///   (show-screenshot-ui for a region, screenshot-window). GNOME has no smaller brightness step.
/// - Cinnamon: org.cinnamon.desktop.keybindings.media-keys (area-screenshot,
///   window-screenshot, play, next, previous). No smaller volume or brightness step.
/// - MATE: org.mate.SettingsDaemon.plugins.media-keys (play, next, previous) and
///   org.mate.Marco.global-keybindings (run-command-window-screenshot). No region capture and
///   no smaller steps.
/// A schema that is not installed reads as no binding.
class GSettingsKeySettings final : public DesktopKeySettings
{
public:
    enum class Family
    {
        Gnome,
        Cinnamon,
        Mate,
    };

    /// Reads the schemas installed on the system, or only those compiled into
    /// `schemaDirectory` when it is given.
    explicit GSettingsKeySettings(Family family, QString schemaDirectory = QString());

    QList<DesktopKeyBinding> bindings(Action action) const override;

    /// Whether the family's main schema is installed (the media-keys one).
    bool schemaInstalled() const;

private:
    Family m_family;
    QString m_schemaDirectory;
};

} // namespace Tessaline
