// "Program  Seq.": writes all 16 sequences of the table into the board's flash.
#pragma once

#include "edit/edited_sequence.h"
#include "link/board_link.h"
#include "link/debug_panel.h"

namespace pelmora {

// Erases, sends command and header, waits for the acknowledgement, and streams the step data in
// blocks of 256 bytes, each acknowledged. Returns when the transfer has ended; the window is live
// meanwhile. An image that the header can't hold is refused before anything is sent.
void CommandFlash_Click(BoardLink& link, DebugPanel& debug_panel, const EditedSequence& edited);

}  // namespace pelmora
