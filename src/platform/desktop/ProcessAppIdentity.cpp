// SPDX-License-Identifier: MIT
#include "platform/desktop/ProcessAppIdentity.h"

#include "platform/desktop/DesktopEntryLookup.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace Tessaline {

namespace {

QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.read(64 * 1024));
}

// systemd writes a "-" inside a name as "\x2d".
QString unescapeUnitName(QString name)
{
    return name.replace(QLatin1String("\\x2d"), QLatin1String("-"));
}

} // namespace

ProcessAppIdentity::ProcessAppIdentity(const DesktopEntryLookup& entries, QString procRoot)
    : m_entries(entries), m_procRoot(std::move(procRoot))
{}

QString ProcessAppIdentity::procFile(qint64 pid, const QString& name) const
{
    return m_procRoot + QLatin1Char('/') + QString::number(pid) + QLatin1Char('/') + name;
}

QStringList ProcessAppIdentity::unitCandidates(const QString& cgroupText)
{
    // "app[-LAUNCHER]-ID-RANDOM.scope", "app[-LAUNCHER]-ID[@RANDOM].service",
    // "snap.NAME.APP-UUID.scope" (whose desktop entry is NAME_APP).
    static const QRegularExpression appScope(QStringLiteral("^app-(.+)-[^-]+\\.scope$"));
    static const QRegularExpression appService(QStringLiteral("^app-(.+?)(@[^.]*)?\\.service$"));
    static const QRegularExpression snapScope(
        QStringLiteral("^snap\\.([^.]+)\\.([^.]+?)-[0-9a-f-]+\\.scope$"));

    QStringList candidates;
    const QStringList lines = cgroupText.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        // "HIERARCHY:CONTROLLERS:PATH"; the unit is the deepest path part that names one.
        const QStringList parts = line.section(QLatin1Char(':'), 2).split(QLatin1Char('/'));
        for (auto part = parts.crbegin(); part != parts.crend(); ++part) {
            QString inner;
            if (const QRegularExpressionMatch match = appScope.match(*part); match.hasMatch())
                inner = match.captured(1);
            else if (const QRegularExpressionMatch service = appService.match(*part);
                     service.hasMatch())
                inner = service.captured(1);
            else if (const QRegularExpressionMatch snap = snapScope.match(*part); snap.hasMatch()) {
                candidates.append(snap.captured(1) + QLatin1Char('_') + snap.captured(2));
                break;
            } else {
                continue;
            }
            // The id may follow a launcher word ("gnome", "flatpak", "kde"): the whole text
            // first, then without the first word.
            const QString whole = unescapeUnitName(inner);
            candidates.append(whole);
            const qsizetype dash = inner.indexOf(QLatin1Char('-'));
            if (dash > 0)
                candidates.append(unescapeUnitName(inner.mid(dash + 1)));
            break;
        }
    }
    candidates.removeDuplicates();
    return candidates;
}

std::optional<QString> ProcessAppIdentity::flatpakApplication(const QString& flatpakInfoText)
{
    bool inApplication = false;
    const QStringList lines = flatpakInfoText.split(QLatin1Char('\n'));
    for (const QString& raw : lines) {
        const QString line = raw.trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inApplication = line == QLatin1String("[Application]");
            continue;
        }
        if (inApplication && line.startsWith(QLatin1String("name="))) {
            const QString name = line.mid(5).trimmed();
            if (!name.isEmpty())
                return name;
        }
    }
    return std::nullopt;
}

std::optional<QString> ProcessAppIdentity::bundleIdentifier(qint64 pid,
                                                            const QString& accessibleName) const
{
    if (pid > 0) {
        const QStringList units = unitCandidates(readText(procFile(pid, QStringLiteral("cgroup"))));
        for (const QString& candidate : units) {
            if (m_entries.entry(candidate))
                return candidate;
        }
        if (const std::optional<QString> flatpak =
                flatpakApplication(readText(procFile(pid, QStringLiteral("root/.flatpak-info")))))
            return flatpak;
        const QString program =
            QFileInfo(QFileInfo(procFile(pid, QStringLiteral("exe"))).symLinkTarget()).fileName();
        if (const std::optional<QString> byProgram = m_entries.idForExecutable(program))
            return byProgram;
    }
    if (accessibleName.isEmpty())
        return std::nullopt;
    // Last, the entry named after the application; failing that the name itself stands in for
    // an id, lower-cased as X11 window classes are, so that its pack is found again next time.
    return m_entries.idForWindowClass(accessibleName, accessibleName)
        .value_or(accessibleName.toLower());
}

} // namespace Tessaline
