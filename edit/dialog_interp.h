// The dialog "Interpolation": replaces one step by a run of steps that approach its neighbour.
#pragma once

#include <QWidget>
#include <vector>

#include "edit/edited_sequence.h"
#include "platform/system/main_loop.h"
#include "platform/system/message_box.h"

namespace pelmora {

// Opens the dialog when the list has at least two lines and one is selected. It is not modal: it
// disables `locked`, the first of which is the main window, itself while it is open. Everything
// given outlives it.
void CommandInterpolate_Click(EditedSequence& edited, platform::MessageBox& message_box,
                              platform::MainLoop& main_loop, const std::vector<QWidget*>& locked);

}  // namespace pelmora
