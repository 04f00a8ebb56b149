// SPDX-License-Identifier: MIT
#include "ControlsStyle.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>

namespace Tessaline::ControlsStyle {

namespace {

const QString kDesktopStyle = QStringLiteral("org.kde.desktop");

} // namespace

QString pick(const QString& chosenByUser, const QStringList& importPaths)
{
    if (!chosenByUser.isEmpty())
        return chosenByUser;
    // A style module is a folder of its dotted name under an import path, with its qmldir.
    const QString module = QString(kDesktopStyle).replace(QLatin1Char('.'), QLatin1Char('/'));
    for (const QString& path : importPaths) {
        if (QFileInfo::exists(QDir(path).filePath(module + QStringLiteral("/qmldir"))))
            return kDesktopStyle;
    }
    return QStringLiteral("Fusion");
}

QString forThisDesktop()
{
    // Qt 6's own import folders only: a Qt 5 style module would not load here.
    QStringList paths =
        qEnvironmentVariable("QML_IMPORT_PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    paths.append(QLibraryInfo::path(QLibraryInfo::QmlImportsPath));
    return pick(qEnvironmentVariable("QT_QUICK_CONTROLS_STYLE"), paths);
}

} // namespace Tessaline::ControlsStyle
