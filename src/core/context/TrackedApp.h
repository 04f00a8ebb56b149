// SPDX-License-Identifier: MIT
#pragma once

#include <QHashFunctions>
#include <QMetaType>
#include <QObject>
#include <QString>

#include <optional>

namespace Tessaline {

/// The application the user was last working in: its display name and, when it has one, its
/// bundle id (on Linux the desktop-file id, e.g. "org.xfce.mousepad").
struct TrackedApp
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    /// The bundle id for views; empty when the app has none.
    Q_PROPERTY(QString bundleID READ bundleIDOrEmpty)

public:
    QString name;
    std::optional<QString> bundleID;

    /// The stand-in used when no application is known: "Desktop" with no bundle id.
    static TrackedApp placeholder();

    QString bundleIDOrEmpty() const { return bundleID.value_or(QString()); }

    friend bool operator==(const TrackedApp&, const TrackedApp&) = default;
};

size_t qHash(const TrackedApp& app, size_t seed = 0) noexcept;

} // namespace Tessaline
