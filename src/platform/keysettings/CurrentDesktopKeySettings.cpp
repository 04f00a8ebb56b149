// SPDX-License-Identifier: MIT
#include "platform/keysettings/CurrentDesktopKeySettings.h"

#include <QFileInfo>

namespace Tessaline {

CurrentDesktopKeySettings::CurrentDesktopKeySettings()
    : CurrentDesktopKeySettings(Sources{qEnvironmentVariable("XDG_CURRENT_DESKTOP"), {}, {}, {}})
{}

CurrentDesktopKeySettings::CurrentDesktopKeySettings(const Sources& sources)
    : m_named(familyNamed(sources.currentDesktop)),
      m_gnome(GSettingsKeySettings::Family::Gnome, sources.schemaDirectory),
      m_cinnamon(GSettingsKeySettings::Family::Cinnamon, sources.schemaDirectory),
      m_mate(GSettingsKeySettings::Family::Mate, sources.schemaDirectory), m_kde(sources.kdeFile),
      m_xfce(sources.xfceFiles)
{}

CurrentDesktopKeySettings::Family
CurrentDesktopKeySettings::familyNamed(const QString& currentDesktop)
{
    for (const QString& name : currentDesktop.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        const QString lower = name.trimmed().toLower();
        if (lower == QLatin1String("gnome") || lower == QLatin1String("gnome-classic") ||
            lower == QLatin1String("gnome-flashback"))
            return Family::Gnome;
        if (lower == QLatin1String("x-cinnamon") || lower == QLatin1String("cinnamon"))
            return Family::Cinnamon;
        if (lower == QLatin1String("mate"))
            return Family::Mate;
        if (lower == QLatin1String("kde"))
            return Family::Kde;
        if (lower == QLatin1String("xfce"))
            return Family::Xfce;
    }
    return Family::None;
}

CurrentDesktopKeySettings::Family CurrentDesktopKeySettings::family() const
{
    if (m_named != Family::None)
        return m_named;
    if (QFileInfo::exists(m_kde.file()))
        return Family::Kde;
    // Only the user's own Xfce file says the user runs Xfce; the system's default file is
    // installed with Xfce's libraries wherever they are.
    if (!m_xfce.files().isEmpty() && QFileInfo::exists(m_xfce.files().first()))
        return Family::Xfce;
    if (m_gnome.schemaInstalled())
        return Family::Gnome;
    if (m_cinnamon.schemaInstalled())
        return Family::Cinnamon;
    if (m_mate.schemaInstalled())
        return Family::Mate;
    return Family::None;
}

QList<DesktopKeyBinding> CurrentDesktopKeySettings::bindings(Action action) const
{
    switch (family()) {
    case Family::Gnome:
        return m_gnome.bindings(action);
    case Family::Cinnamon:
        return m_cinnamon.bindings(action);
    case Family::Mate:
        return m_mate.bindings(action);
    case Family::Kde:
        return m_kde.bindings(action);
    case Family::Xfce:
        return m_xfce.bindings(action);
    case Family::None:
        return {};
    }
    return {};
}

QString CurrentDesktopKeySettings::settingsName() const
{
    switch (family()) {
    case Family::Gnome:
        return QStringLiteral("GNOME settings");
    case Family::Cinnamon:
        return QStringLiteral("Cinnamon settings");
    case Family::Mate:
        return QStringLiteral("MATE settings");
    case Family::Kde:
        return QStringLiteral("kglobalshortcutsrc");
    case Family::Xfce:
        return QStringLiteral("xfce4-keyboard-shortcuts");
    case Family::None:
        return {};
    }
    return {};
}

} // namespace Tessaline
