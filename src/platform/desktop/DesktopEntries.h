// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/DesktopEntryLookup.h"

#include <QHash>

#include <memory>

namespace Tessaline {

/// The installed desktop entries, read through GIO. Lookups are cached; the cache is dropped
/// when GIO reports that the installed applications changed (this needs the GLib main context
/// to run, which Qt's event loop does).
class DesktopEntries final : public DesktopEntryLookup
{
public:
    DesktopEntries();
    ~DesktopEntries() override;
    DesktopEntries(const DesktopEntries&) = delete;
    DesktopEntries& operator=(const DesktopEntries&) = delete;

    std::optional<DesktopEntryInfo> entry(const QString& id) const override;
    std::optional<QString> idForWindowClass(const QString& instance,
                                            const QString& windowClass) const override;
    std::optional<QString> idForExecutable(const QString& programName) const override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Tessaline
