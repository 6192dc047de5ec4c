// "Program  Seq.": writes all 16 sequences of the table into the board's flash. Owns "Abort".
#pragma once

#include <QString>

#include "flash/erase_flash.h"
#include "flash/flash_parts.h"

namespace pelmora {

class ProgramSequences {
 public:
  ProgramSequences(const FlashParts& parts, EraseFlash& erase_flash);

  // Erases, sends command and header, waits for the acknowledgement, and streams the step data in
  // blocks of 256 bytes, each acknowledged. Returns when the transfer has ended; the window is live
  // meanwhile. An image that the header can't hold is refused before anything is sent.
  void CommandFlash_Click();

  // "Abort": ends the wait that is running. The board is not told.
  void Command1_Click();

 private:
  enum class Transfer { kDone, kCut };

  bool RefuseOversize();
  Transfer SendHeader(BoardWait& wait);
  Transfer SendStepData(BoardWait& wait, int total, int& last_sent);
  void End(const QString& text);

  const FlashParts parts_;
  EraseFlash& erase_flash_;
};

}  // namespace pelmora
