// SPDX-License-Identifier: MIT
#pragma once

#include "common/Expected.h"
#include "vault/VaultData.h"

#include <QByteArray>

namespace Tessaline::VaultCodec {

/// Reads a vault document. Required keys must be present with the right JSON type; optional
/// keys may be missing or null (both read as absent) but any other wrong type fails the whole
/// document; unknown keys are ignored. Lists keep the order of the file. A failure says what
/// is wrong and where (the key path such as "apps[2].shortcuts[0].chord", or the byte offset
/// of a syntax error).
Expected<VaultData> decode(const QByteArray& json);

/// Writes a vault document: pretty-printed, keys in ascending byte order, "/" escaped as "\/",
/// absent optional fields omitted (never null), lists in memory order.
QByteArray encode(const VaultData& data);

} // namespace Tessaline::VaultCodec
