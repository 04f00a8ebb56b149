// SPDX-License-Identifier: MIT
#include "platform/keysettings/XdgConfigDirs.h"

#include <QDir>

namespace Tessaline {

QString XdgConfigDirs::home()
{
    const QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (QDir::isAbsolutePath(configHome))
        return configHome;
    return QDir::homePath() + QLatin1String("/.config");
}

QStringList XdgConfigDirs::system()
{
    QStringList dirs;
    for (const QString& dir :
         qEnvironmentVariable("XDG_CONFIG_DIRS").split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        if (QDir::isAbsolutePath(dir))
            dirs.append(dir);
    }
    if (dirs.isEmpty())
        dirs.append(QStringLiteral("/etc/xdg"));
    return dirs;
}

} // namespace Tessaline
