// "Program  Seq.": writes all 16 sequences of the table into the board's flash.
#pragma once

#include <QString>
#include <optional>

#include "edit/edited_sequence.h"
#include "flash/erase_flash.h"
#include "link/board_operation.h"
#include "link/debug_panel.h"

namespace pelmora {

class ProgramSequences {
 public:
  ProgramSequences(BoardLink& link, DebugPanel& debug_panel, EraseFlash& erase_flash,
                   const EditedSequence& edited)
      : link_(link), debug_panel_(debug_panel), erase_flash_(erase_flash), edited_(edited) {}

  // Erases, sends command and header, waits for the acknowledgement, and streams the step data in
  // blocks of 256 bytes, each acknowledged. Returns when the transfer has ended; the window is live
  // meanwhile. An image that the header can't hold is refused before anything is sent.
  void CommandFlash_Click();

 private:
  struct Outcome {
    QString text;  // empty when everything has been said
    bool disturbed = false;
  };

  Outcome Transfer();
  std::optional<int> SendStepData(BoardOperation& operation, int total);
  bool RefuseOversize();

  BoardLink& link_;
  DebugPanel& debug_panel_;
  EraseFlash& erase_flash_;
  const EditedSequence& edited_;
};

}  // namespace pelmora
