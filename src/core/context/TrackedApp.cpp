// SPDX-License-Identifier: MIT
#include "context/TrackedApp.h"

namespace Tessaline {

TrackedApp TrackedApp::placeholder()
{
    return TrackedApp{QStringLiteral("Desktop"), std::nullopt};
}

size_t qHash(const TrackedApp& app, size_t seed) noexcept
{
    QtPrivate::QHashCombine combine;
    seed = combine(seed, app.name);
    seed = combine(seed, app.bundleID.has_value());
    if (app.bundleID)
        seed = combine(seed, *app.bundleID);
    return seed;
}

} // namespace Tessaline
