// SPDX-License-Identifier: MIT
#pragma once

namespace Tessaline {

/// Whether the session bus has a StatusNotifierItem host, which Qt's tray icon then talks to
/// instead of embedding a window in an XEmbed tray.
class StatusNotifierHost
{
public:
    StatusNotifierHost() = delete;

    /// True when a watcher is on the session bus and says a host is registered with it.
    static bool isRegistered();
};

} // namespace Tessaline
