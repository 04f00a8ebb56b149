// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Tessaline {

class DesktopEntryLookup;

/// Finds which installed application a running process is, as a desktop-file id, from what the
/// system tells about the process rather than about its windows (which a Wayland compositor
/// keeps to itself). In this order: the systemd unit the desktop launched it in
/// ("app-gnome-org.gnome.TextEditor-4242.scope", "app-flatpak-org.example.App-7.scope",
/// "snap.NAME.APP-UUID.scope"), its Flatpak sandbox's application id, the desktop entry that
/// runs its executable, and last the name it gives the accessibility bus (the entry named after
/// it, else the name itself, lower-cased).
class ProcessAppIdentity
{
public:
    /// `procRoot` is where the processes' folders are ("/proc"; a folder of fixtures in tests).
    explicit ProcessAppIdentity(const DesktopEntryLookup& entries,
                                QString procRoot = QStringLiteral("/proc"));

    /// The desktop-file id of process `pid`, whose accessible application is called
    /// `accessibleName`; nothing only when there is neither a process nor a name to go by.
    std::optional<QString> bundleIdentifier(qint64 pid, const QString& accessibleName) const;

    /// The application ids that the unit names in a /proc/PID/cgroup text suggest, most likely
    /// first: with and without a launcher word before the id, systemd's "\x2d" escapes undone.
    static QStringList unitCandidates(const QString& cgroupText);
    /// The application id of a Flatpak sandbox's .flatpak-info text.
    static std::optional<QString> flatpakApplication(const QString& flatpakInfoText);

private:
    QString procFile(qint64 pid, const QString& name) const;

    const DesktopEntryLookup& m_entries;
    QString m_procRoot;
};

} // namespace Tessaline
