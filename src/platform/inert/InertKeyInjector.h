// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

namespace Tessaline {

/// A key injector for a session that accepts no synthetic key presses: nothing is posted.
class InertKeyInjector final : public KeyInjector
{
public:
    bool postPasteChord() override { return false; }
    KeyPostResult postKeys(const QList<KeyStroke>&) override
    {
        return {KeyPostResult::NotPosted, {}};
    }
};

} // namespace Tessaline
