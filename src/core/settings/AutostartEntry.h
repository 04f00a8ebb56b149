// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"

#include <QByteArray>
#include <QString>

namespace Tessaline {

/// Tessaline's entry in the user's autostart folder,
/// $XDG_CONFIG_HOME/autostart/org.tessaline.Tessaline.desktop. The file's presence is the
/// "Start Tessaline at login" setting, so removing the file by hand turns the setting off.
class AutostartEntry
{
public:
    static constexpr auto kFileName = "org.tessaline.Tessaline.desktop";
    /// The option the entry starts Tessaline with: only the tray, no window.
    static constexpr auto kAutostartOption = "--autostart";

    /// The entry in `configHome`/autostart (the user's config folder when empty); it starts
    /// `executable` (this process's own executable when empty).
    explicit AutostartEntry(const QString& configHome = {}, const QString& executable = {});

    QString filePath() const { return m_filePath; }
    /// Whether the entry exists now.
    bool isEnabled() const;
    /// Writes the entry (creating the autostart folder) or removes it.
    Expected<void> setEnabled(bool enabled);
    /// The text of the entry.
    QByteArray contents() const;

    /// `program` as one argument of a desktop entry's Exec key, quoted where the key's rules
    /// need it.
    static QString execArgument(const QString& program);

private:
    QString m_filePath;
    QString m_executable;
};

} // namespace Tessaline
