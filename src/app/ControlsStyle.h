// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace Tessaline {

/// Which Qt Quick Controls style draws Tessaline's settings, welcome and browser windows, so
/// that their buttons, check boxes and fields look like the user's other applications.
namespace ControlsStyle {

/// The style chosen by the user (`QT_QUICK_CONTROLS_STYLE`) when one is set; else KDE's
/// desktop style when it is installed in one of `importPaths`; else Fusion, which draws with
/// the desktop's palette.
QString pick(const QString& chosenByUser, const QStringList& importPaths);

/// pick() for this process: its environment and Qt's QML import folders.
QString forThisDesktop();

} // namespace ControlsStyle

} // namespace Tessaline
