// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeySettings.h"

#include <QStringList>

namespace Tessaline {

/// The bindings of Xfce, read from the xfce4-keyboard-shortcuts channel of its settings store
/// (the channel's XML file, the user's own before the system's) each time they are asked for.
/// Under /commands, the "custom" list is the one in force when it holds any command, else the
/// "default" one; each entry is an accelerator bound to a command line:
/// - xfce4-screenshooter with -r (or --region): region capture; with -w (or --window): window.
/// - any command on XF86AudioPlay or XF86AudioPause, XF86AudioNext, XF86AudioPrev: the media
///   keys.
/// Xfce has no smaller volume or brightness step.
class XfconfKeySettings final : public DesktopKeySettings
{
public:
    /// Reads the first of `files` that exists, or the user's and then the system's channel
    /// file when the list is empty.
    explicit XfconfKeySettings(QStringList files = QStringList());

    QList<DesktopKeyBinding> bindings(Action action) const override;

    QStringList files() const { return m_files; }
    /// The channel's file name under each config folder.
    static QString channelPath();

private:
    QStringList m_files;
};

} // namespace Tessaline
