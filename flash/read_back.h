// "Read Seq.": fetches the 16 sequences from the board's flash and makes them the program's.
#pragma once

#include "edit/edited_sequence.h"
#include "link/board_link.h"
#include "link/debug_panel.h"

namespace pelmora {

// Clears all sequences (before the port is looked at), asks the board for its flash and waits
// while the reply comes; then rebuilds the table and shows sequence 0. Returns when the read has
// ended; the window is live meanwhile. A read that fails leaves the steps decoded before the
// failure.
void CommandRead_Click(BoardLink& link, DebugPanel& debug_panel, EditedSequence& edited);

}  // namespace pelmora
