// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <optional>

namespace Tessaline {

/// Finds Tessaline's logo: the installed resource "TessalineLogo.png", else the development
/// image "image.png" at the top of the source tree.
class Branding
{
public:
    Branding() = delete;

    /// The logo, scaled to `size` × `size` when a size is given; nothing when no candidate
    /// exists or the first one that exists is not a readable image.
    static std::optional<QImage> image(std::optional<double> size = std::nullopt);
    /// The installed logo's path, or empty when it is not installed next to the executable.
    static QString resourceImagePath();
    /// The development image's path, or empty when no such file exists.
    static QString developmentImagePath();
};

} // namespace Tessaline
