// Whose Ctrl+Z, Ctrl+Shift+Z and Ctrl+Y are while a text field has the keyboard: its own while its
// entry is being edited, its window's otherwise. The toolkit's fields always keep the first two for
// themselves and don't know the third.
#pragma once

#include <QEvent>
#include <QLineEdit>

namespace platform {

// Called by a field with each of its events, before it does anything else. True when that settles
// the event. `entry` is the field, or the part of it in which one types.
bool TakeUndoKeys(QLineEdit& entry, QEvent& event);

}  // namespace platform
