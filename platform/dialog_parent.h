// The window that a modal dialog belongs to.
#pragma once

#include <QWidget>

namespace platform {

// The dialog that is open already, the active window, or the main window when the program is not
// the active one; null before there is a window.
QWidget* DialogParent();

}  // namespace platform
