// Which chords belong to a text field while it has the keyboard, and which to its window. Ctrl+C,
// Ctrl+X, Ctrl+V and Ctrl+Shift+C are the field's own, though it does nothing by the last. Ctrl+Z,
// Ctrl+Shift+Z and Ctrl+Y are its own while its entry is being edited, its window's otherwise: the
// toolkit's fields always keep the first two for themselves and don't know the third.
#pragma once

#include <QEvent>
#include <QLineEdit>

namespace platform {

// Called by a field with each of its events, before it does anything else. True when that settles
// the event. `entry` is the field, or the part of it in which one types.
bool TakeEntryKeys(QLineEdit& entry, QEvent& event);

}  // namespace platform
