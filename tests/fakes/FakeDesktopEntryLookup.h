// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/DesktopEntryLookup.h"

#include <QHash>

namespace Tessaline::Testing {

/// Desktop entries from tables: names by id, ids by the window class their StartupWMClass
/// claims and by the program their Exec runs.
class FakeDesktopEntryLookup final : public DesktopEntryLookup
{
public:
    QHash<QString, QString> names;
    QHash<QString, QString> startupClasses; // WM_CLASS class -> id
    QHash<QString, QString> programs;       // program file name -> id

    std::optional<DesktopEntryInfo> entry(const QString& id) const override
    {
        if (!names.contains(id))
            return std::nullopt;
        return DesktopEntryInfo{id, names.value(id), QString()};
    }
    std::optional<QString> idForWindowClass(const QString& instance,
                                            const QString& windowClass) const override
    {
        for (const QString& name : {windowClass, instance}) {
            if (startupClasses.contains(name))
                return startupClasses.value(name);
        }
        return std::nullopt;
    }
    std::optional<QString> idForExecutable(const QString& programName) const override
    {
        if (!programs.contains(programName))
            return std::nullopt;
        return programs.value(programName);
    }
};

} // namespace Tessaline::Testing
