// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyInjector.h"

#include <QList>
#include <QString>

#include <optional>

namespace Tessaline {

/// Turns a stored chord into the key strokes that type it.
namespace ChordKeystrokes {

/// The strokes of `chord` in the stored symbol form ("⌃ ⇧ N", "⌃ Page Up", "⌃ K, ⌃ C"): ⌃
/// Control, ⌥ Alt, ⇧ Shift, ⌘ Super, then the key, named by the character it types (letters in
/// lower case) or by its keysym name ("Return", "Page_Up", "Left", "F5"). Absent when a chord
/// has no key.
std::optional<QList<KeyStroke>> fromChord(const QString& chord);

} // namespace ChordKeystrokes

} // namespace Tessaline
