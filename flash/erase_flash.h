// "Erease": erases the board's flash and waits until the board confirms it.
#pragma once

#include "link/board_operation.h"

namespace pelmora {

inline constexpr char kAbortedText[] = "Operation Aborted!";

// The whole operation, its message box included; the first step of programming. Returns when the
// board has confirmed, when the wait was aborted (the message says so), or, without a message, when
// another erase has taken this one's place. There is no time-out.
[[nodiscard]] BoardOperation::Answer EraseFlash(BoardLink& link);

// The button.
inline void CommandErase_Click(BoardLink& link) {
  (void)EraseFlash(link);
}

}  // namespace pelmora
