// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopKeySettings.h"

#include <QHash>
#include <QStringList>

namespace Tessaline::Testing {

/// Key settings a test fills by hand; counts every read. The named constructors hold what each
/// desktop family binds out of the box.
class FakeDesktopKeySettings final : public DesktopKeySettings
{
public:
    QHash<Action, QList<DesktopKeyBinding>> bound;
    mutable int reads = 0;
    /// What settingsName() answers.
    QString name;

    QList<DesktopKeyBinding> bindings(Action action) const override
    {
        ++reads;
        return bound.value(action);
    }
    QString settingsName() const override { return name; }

    /// The bindings as the desktop writes them, for comparing in one line.
    static QStringList texts(const QList<DesktopKeyBinding>& bindings)
    {
        QStringList result;
        for (const DesktopKeyBinding& binding : bindings)
            result.append(binding.text());
        return result;
    }

    void bind(Action action, unsigned modifiers, const QString& key)
    {
        bound[action].append(DesktopKeyBinding{modifiers, key});
    }

    /// GNOME 43: Shift (and Ctrl+Shift) on the volume keys, the screenshot tool on Print, the
    /// window on Alt+Print, the media keys with and without Ctrl; no smaller brightness step.
    static FakeDesktopKeySettings gnome()
    {
        FakeDesktopKeySettings keys;
        keys.bind(Action::VolumeUpPrecise, DesktopKeyBinding::Shift, QStringLiteral("Volume Up"));
        keys.bind(Action::VolumeUpPrecise, DesktopKeyBinding::Ctrl | DesktopKeyBinding::Shift,
                  QStringLiteral("Volume Up"));
        keys.bind(Action::VolumeDownPrecise, DesktopKeyBinding::Shift,
                  QStringLiteral("Volume Down"));
        keys.bind(Action::VolumeDownPrecise, DesktopKeyBinding::Ctrl | DesktopKeyBinding::Shift,
                  QStringLiteral("Volume Down"));
        keys.bind(Action::ScreenshotRegion, 0, QStringLiteral("Print"));
        keys.bind(Action::ScreenshotWindow, DesktopKeyBinding::Alt, QStringLiteral("Print"));
        keys.bindMediaKeys();
        keys.bind(Action::MediaPlay, DesktopKeyBinding::Ctrl, QStringLiteral("Play"));
        return keys;
    }

    /// Cinnamon 5.6: region on Shift+Print, window on Alt+Print, the media keys; no smaller
    /// steps.
    static FakeDesktopKeySettings cinnamon()
    {
        FakeDesktopKeySettings keys;
        keys.bind(Action::ScreenshotRegion, DesktopKeyBinding::Shift, QStringLiteral("Print"));
        keys.bind(Action::ScreenshotWindow, DesktopKeyBinding::Alt, QStringLiteral("Print"));
        keys.bindMediaKeys();
        return keys;
    }

    /// MATE 1.26: the window on Alt+Print, the media keys; no region capture, no smaller steps.
    static FakeDesktopKeySettings mate()
    {
        FakeDesktopKeySettings keys;
        keys.bind(Action::ScreenshotWindow, DesktopKeyBinding::Alt, QStringLiteral("Print"));
        keys.bindMediaKeys();
        return keys;
    }

    /// Plasma 6: Shift on the volume and brightness keys, region on Super+Shift+Print, the
    /// window on Super+Print, the media keys.
    static FakeDesktopKeySettings kde()
    {
        FakeDesktopKeySettings keys;
        keys.bind(Action::VolumeUpPrecise, DesktopKeyBinding::Shift, QStringLiteral("Volume Up"));
        keys.bind(Action::VolumeDownPrecise, DesktopKeyBinding::Shift,
                  QStringLiteral("Volume Down"));
        keys.bind(Action::BrightnessUpPrecise, DesktopKeyBinding::Shift,
                  QStringLiteral("Brightness Up"));
        keys.bind(Action::BrightnessDownPrecise, DesktopKeyBinding::Shift,
                  QStringLiteral("Brightness Down"));
        keys.bind(Action::ScreenshotRegion, DesktopKeyBinding::Super | DesktopKeyBinding::Shift,
                  QStringLiteral("Print"));
        keys.bind(Action::ScreenshotWindow, DesktopKeyBinding::Super, QStringLiteral("Print"));
        keys.bindMediaKeys();
        return keys;
    }

    /// Xfce 4.18: region on Shift+Print, the window on Alt+Print; the media keys and volume are
    /// left to panel plugins, not bound as shortcuts.
    static FakeDesktopKeySettings xfce()
    {
        FakeDesktopKeySettings keys;
        keys.bind(Action::ScreenshotRegion, DesktopKeyBinding::Shift, QStringLiteral("Print"));
        keys.bind(Action::ScreenshotWindow, DesktopKeyBinding::Alt, QStringLiteral("Print"));
        return keys;
    }

private:
    void bindMediaKeys()
    {
        bind(Action::MediaPlay, 0, QStringLiteral("Play"));
        bind(Action::MediaNext, 0, QStringLiteral("Next"));
        bind(Action::MediaPrevious, 0, QStringLiteral("Previous"));
    }
};

} // namespace Tessaline::Testing
