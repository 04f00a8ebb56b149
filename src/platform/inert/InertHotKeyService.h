// SPDX-License-Identifier: MIT
#pragma once

#include <hotkey/HotKeyService.h>

namespace Tessaline {

/// The hot-key service of a session that grants no system-wide key grabs: every registration is
/// refused, so no key is taken from other applications and no event ever arrives.
class InertHotKeyService final : public HotKey::HotKeyService
{
public:
    /// Status of every registration: the key cannot be grabbed in this session.
    static constexpr int unavailableStatus = -50;

    Registration registerHotKey(quint32, quint32, HotKey::HotKeyId) override
    {
        return Unexpected(unavailableStatus);
    }
    void unregisterHotKey(Reference) override {}
    void installEventHandler(EventHandler) override {}
    bool grabsKeys() const override { return false; }
};

} // namespace Tessaline
