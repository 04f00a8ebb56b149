// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Tessaline {

/// Why a menu scan stopped before reading any menu.
struct MenuScanError
{
    enum class Kind
    {
        appNotRunning,
        menuUnavailable,
        missingBundleID,
        accessibilityNotGranted,
    };

    Kind kind;
    /// The application's display name (appNotRunning and menuUnavailable only).
    QString appName;

    static MenuScanError appNotRunning(const QString& name) { return {Kind::appNotRunning, name}; }
    static MenuScanError menuUnavailable(const QString& name)
    {
        return {Kind::menuUnavailable, name};
    }
    static MenuScanError missingBundleID() { return {Kind::missingBundleID, {}}; }
    static MenuScanError accessibilityNotGranted() { return {Kind::accessibilityNotGranted, {}}; }

    /// The sentence shown to the user.
    QString errorDescription() const;

    friend bool operator==(const MenuScanError&, const MenuScanError&) = default;
};

} // namespace Tessaline
