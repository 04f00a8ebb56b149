// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

#include <QSet>

#include <functional>

namespace Tessaline::Testing {

/// Counts paste chords and records typed chords; `onPost` lets a test look at the world at
/// the moment of the keystroke. Keys in `missingKeys` are not on its layout.
class FakeKeyInjector final : public KeyInjector
{
public:
    int posts = 0;
    bool succeeds = true;
    std::function<void()> onPost;
    QList<QList<KeyStroke>> typed;
    QSet<QString> missingKeys;

    bool postPasteChord() override
    {
        ++posts;
        if (onPost)
            onPost();
        return succeeds;
    }

    KeyPostResult postKeys(const QList<KeyStroke>& strokes) override
    {
        for (const KeyStroke& stroke : strokes) {
            if (missingKeys.contains(stroke.key))
                return {KeyPostResult::KeyNotOnLayout, stroke.key};
        }
        if (!succeeds)
            return {KeyPostResult::NotPosted, {}};
        typed.append(strokes);
        if (onPost)
            onPost();
        return {};
    }
};

} // namespace Tessaline::Testing
