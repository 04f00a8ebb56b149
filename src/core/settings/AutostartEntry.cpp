// SPDX-License-Identifier: MIT
#include "settings/AutostartEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace Tessaline {

namespace {

// Characters that make an Exec argument need double quotes.
const QString kReservedInExec = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");

} // namespace

AutostartEntry::AutostartEntry(const QString& configHome, const QString& executable)
    : m_executable(executable)
{
    const QString home =
        configHome.isEmpty()
            ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            : configHome;
    m_filePath = QDir(home).filePath(QStringLiteral("autostart/") + QLatin1String(kFileName));
    if (m_executable.isEmpty())
        m_executable = QCoreApplication::instance() ? QCoreApplication::applicationFilePath()
                                                    : QStringLiteral("tessaline");
}

bool AutostartEntry::isEnabled() const
{
    return QFileInfo::exists(m_filePath);
}

Expected<void> AutostartEntry::setEnabled(bool enabled)
{
    if (!enabled) {
        QFile file(m_filePath);
        if (file.exists() && !file.remove())
            return Unexpected(
                QStringLiteral("Could not remove %1: %2").arg(m_filePath, file.errorString()));
        return {};
    }
    const QString folder = QFileInfo(m_filePath).path();
    if (!QDir().mkpath(folder))
        return Unexpected(QStringLiteral("Could not create the folder %1").arg(folder));
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents()) < 0 || !file.commit())
        return Unexpected(
            QStringLiteral("Could not write %1: %2").arg(m_filePath, file.errorString()));
    return {};
}

QByteArray AutostartEntry::contents() const
{
    const QString exec =
        execArgument(m_executable) + QLatin1Char(' ') + QLatin1String(kAutostartOption);
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Tessaline\n"
                          "Comment=Keyboard shortcuts for the app you were just using\n"
                          "Exec=%1\n"
                          "Icon=org.tessaline.Tessaline\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(exec)
        .toUtf8();
}

QString AutostartEntry::execArgument(const QString& program)
{
    QString argument = program;
    // A literal percent sign is written twice: a single one starts a field code.
    argument.replace(QLatin1Char('%'), QStringLiteral("%%"));
    const bool needsQuotes = std::any_of(argument.cbegin(), argument.cend(),
                                         [](QChar c) { return kReservedInExec.contains(c); });
    if (needsQuotes) {
        QString quoted;
        for (const QChar c : argument) {
            if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') ||
                c == QLatin1Char('\\'))
                quoted += QLatin1Char('\\');
            quoted += c;
        }
        argument = QLatin1Char('"') + quoted + QLatin1Char('"');
    }
    // The key's value is a string, whose own escape rules double every backslash once more.
    argument.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    return argument;
}

} // namespace Tessaline
