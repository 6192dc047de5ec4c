// "Read Seq.": fetches the 16 sequences from the board's flash and makes them the program's.
#pragma once

#include <QString>

#include "edit/edited_sequence.h"
#include "link/board_operation.h"

namespace pelmora {

class ReadBack {
 public:
  ReadBack(BoardLink& link, EditedSequence& edited);

  // Clears all sequences (before the port is looked at), asks the board for its flash and waits
  // while the receive handler takes the reply; then rebuilds the table and shows sequence 0.
  // Returns when the read has ended; the window is live meanwhile. A read that fails leaves the
  // steps decoded before the failure.
  void CommandRead_Click();

 private:
  QString Transfer();

  BoardLink& link_;
  EditedSequence& edited_;
};

}  // namespace pelmora
