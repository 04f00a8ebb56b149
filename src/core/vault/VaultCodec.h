// SPDX-License-Identifier: MIT
#pragma once

#include "vault/VaultData.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Tessaline::VaultCodec {

/// The outcome of reading a vault document: the data, or a message saying what is wrong and
/// where (the key path such as "apps[2].shortcuts[0].chord", or the byte offset of a syntax
/// error).
struct DecodeResult
{
    std::optional<VaultData> data;
    QString error;

    explicit operator bool() const { return data.has_value(); }
};

/// Reads a vault document. Required keys must be present with the right JSON type; optional
/// keys may be missing or null (both read as absent) but any other wrong type fails the whole
/// document; unknown keys are ignored. Lists keep the order of the file.
DecodeResult decode(const QByteArray& json);

/// Writes a vault document: pretty-printed, keys in ascending byte order, "/" escaped as "\/",
/// absent optional fields omitted (never null), lists in memory order.
QByteArray encode(const VaultData& data);

} // namespace Tessaline::VaultCodec
