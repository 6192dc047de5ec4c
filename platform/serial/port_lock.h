// The lock file by which programs tell each other that they use a serial port. The toolkit's port
// makes and heeds it; this says what stands in one.
#pragma once

#include <QString>

namespace platform {

struct PortLock {
  enum class State {
    kFree,   // there is no lock file
    kHeld,   // the program that made it is running
    kStale,  // that program has ended without removing it
    kUnclear,
  };
  State state = State::kFree;
  QString file;
  QString owner;  // of the file: besides root the only user who may remove it
};

// The lock of a device, given by its own name and not by a link to it.
PortLock LockOf(const QString& device);

// Removes a stale lock file where this user may; opening the port fails on one that stays.
void RemoveStaleLock(const QString& device);

}  // namespace platform
