// The program's window, connected with the simulated board.
#pragma once

#include "rig/program_with_board.h"

namespace bench {

class ConnectedProgram : public rig::ProgramWithBoard {
 public:
  // Whatever goes otherwise than expected ends the run: its figures would mean nothing.
  explicit ConnectedProgram(simboard::Pace pace, rig::RealParts real = {})
      : ProgramWithBoard([](const QString& problem) { qFatal("%s", qPrintable(problem)); }, pace,
                         real) {
    Connect();
  }
};

}  // namespace bench
