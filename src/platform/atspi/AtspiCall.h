// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

typedef struct _GError GError;

namespace Tessaline {

struct AtspiWalkState;

/// Helpers around libatspi calls that report through a GError.
namespace AtspiCall {

/// True when `error` says the application did not answer in time.
bool isTimeout(const GError* error);
/// Frees `error` (if any); marks the walk failed when it was a timeout. True when there was an
/// error.
bool check(GError*& error, AtspiWalkState& state);
/// Copies and frees a string libatspi handed out; an empty string for null.
QString takeString(char* text);

} // namespace AtspiCall

} // namespace Tessaline
