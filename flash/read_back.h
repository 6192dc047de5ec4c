// "Read Seq.": fetches the 16 sequences from the board's flash and makes them the program's.
#pragma once

#include "edit/edited_sequence.h"
#include "link/board_link.h"
#include "link/debug_panel.h"

namespace pelmora {

class ReadBack {
 public:
  ReadBack(BoardLink& link, DebugPanel& debug_panel, EditedSequence& edited)
      : link_(link), debug_panel_(debug_panel), edited_(edited) {}

  // Clears all sequences (before the port is looked at), asks the board for its flash and waits
  // while the reply comes; then rebuilds the table and shows sequence 0. Returns when the read has
  // ended; the window is live meanwhile. A read that fails leaves the steps decoded before the
  // failure.
  void CommandRead_Click();

 private:
  struct Outcome {
    const char* text;
    bool replaced = false;  // the sequences are the board's
  };

  Outcome Transfer();

  BoardLink& link_;
  DebugPanel& debug_panel_;
  EditedSequence& edited_;
};

}  // namespace pelmora
