// SPDX-License-Identifier: MIT
#include "platform/Clock.h"

#include <QDateTime>

namespace Tessaline {

double SystemClock::now() const
{
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
}

} // namespace Tessaline
