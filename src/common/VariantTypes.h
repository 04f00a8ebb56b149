// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QVariant>

namespace Tessaline::VariantTypes {

/// True when `value` holds an integer of any width or signedness (what desktop services and
/// settings files hand over as "a number" varies).
inline bool holdsInteger(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return true;
    default:
        return false;
    }
}

} // namespace Tessaline::VariantTypes
