// Dialogs that keep the operator from all other windows.
#pragma once

#include <QDialog>

#include "platform/system/main_loop.h"

namespace platform {

// The window that a new modal dialog belongs to: the modal dialog that is open already, so that the
// new one comes to stand above it, or else `window`.
QWidget* ModalParent(QWidget* window);

// Makes the shortcuts that a dialog's parents have for the whole application work in it, too: the
// toolkit ignores those of a window that is blocked or disabled.
void TakeShortcutsOfParents(QDialog& dialog);

// Shows a dialog, with its parents' shortcuts, and returns once it is closed, deleted, or the
// program ends; events are processed meanwhile. The window that was the active one is it again
// then. True when the dialog is still there and was accepted.
bool RunModal(QDialog& dialog, MainLoop& main_loop);

}  // namespace platform
