// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

#include <functional>

namespace Tessaline::Testing {

/// Counts paste chords; `onPost` lets a test look at the world at the moment of the keystroke.
class FakeKeyInjector final : public KeyInjector
{
public:
    int posts = 0;
    bool succeeds = true;
    std::function<void()> onPost;

    bool postPasteChord() override
    {
        ++posts;
        if (onPost)
            onPost();
        return succeeds;
    }
};

} // namespace Tessaline::Testing
