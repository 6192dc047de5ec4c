// "Erease": erases the board's flash and waits until the board confirms it.
#pragma once

#include "link/board_operation.h"

namespace pelmora {

inline constexpr char kAbortedText[] = "Operation Aborted!";

class EraseFlash {
 public:
  explicit EraseFlash(BoardLink& link) : link_(link) {}

  // The button.
  void CommandErase_Click() { (void)Erase(); }

  // The whole operation, its message box included; the first step of programming. Returns when the
  // board has confirmed, when the wait was aborted (the message says so), or, without a message,
  // when another erase has taken this one's place. There is no time-out.
  [[nodiscard]] BoardOperation::Answer Erase();

 private:
  BoardLink& link_;
};

}  // namespace pelmora
