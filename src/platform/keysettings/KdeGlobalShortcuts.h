// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeySettings.h"

#include <QString>

namespace Tessaline {

/// The bindings of KDE Plasma, read from its global shortcuts file (kglobalshortcutsrc in the
/// user's config folder) each time they are asked for. Entries read ("group" key):
/// - "kmix" increase_volume_small, decrease_volume_small (smaller volume steps)
/// - "org_kde_powerdevil" "Increase Screen Brightness Small", "Decrease Screen Brightness Small"
/// - "org.kde.spectacle.desktop" RectangularRegionScreenShot, ActiveWindowScreenShot
/// - "mediacontrol" playpausemedia, nextmedia, previousmedia
/// Each value is "active shortcuts,default shortcuts,name"; only the active ones count. A Plasma
/// that lacks an action has no entry for it, which reads as no binding.
class KdeGlobalShortcuts final : public DesktopKeySettings
{
public:
    /// Reads `file`, or the user's kglobalshortcutsrc when it is empty.
    explicit KdeGlobalShortcuts(QString file = QString());

    QList<DesktopKeyBinding> bindings(Action action) const override;

    QString file() const { return m_file; }
    /// The binding a shortcut written the Qt way names ("Meta+Shift+Print"); absent for "none",
    /// multi-key sequences and modifiers alone.
    static std::optional<DesktopKeyBinding> parseShortcut(const QString& shortcut);

private:
    QString m_file;
};

} // namespace Tessaline
