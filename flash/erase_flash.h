// "Erease": erases the board's flash and waits until the board confirms it.
#pragma once

#include "flash/flash_parts.h"

namespace pelmora {

class EraseFlash {
 public:
  explicit EraseFlash(const FlashParts& parts) : parts_(parts) {}

  // The button.
  void CommandErase_Click() { Erase(); }

  // The whole operation, its message box included; the first step of programming. Returns when the
  // board has confirmed (true) or the wait was cut short. There is no time-out.
  bool Erase();

 private:
  const FlashParts parts_;
};

}  // namespace pelmora
