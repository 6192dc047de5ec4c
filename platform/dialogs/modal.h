// Dialogs that keep the operator from all other windows.
#pragma once

#include <QDialog>

#include "platform/system/events.h"

namespace platform {

// The window that a new dialog belongs to: the dialog that is open already (the innermost), or the
// main window; null before there is a window.
QWidget* DialogParent();

// Shows a dialog and returns once it is closed, deleted, or the program ends; events are processed
// meanwhile. True when it is still there and was accepted.
//
// Pointer and keyboard reach no window but the dialog and those opened from it. The toolkit's own
// modality would also keep the operator from closing the main window; here that stays possible, and
// so do the shortcuts of actions that are meant for the whole application. A key that was held when
// the dialog came up does nothing in it.
bool RunModal(QDialog& dialog, Events& events);

}  // namespace platform
