// The real window on the off-screen platform, with the simulated board on "Comm1" over a pseudo
// terminal, made anew for each test. Whatever goes otherwise than a test says fails it at once.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QTimer>

#include "rig/program_with_board.h"

namespace pelmora {

using namespace rig;

// A text with decimal points as the operator's locale writes it.
QString Local(QString text);

class WindowTest : public testing::Test, public ProgramWithBoard {
 protected:
  WindowTest();
  ~WindowTest() override;

  // The exact bytes on the line since the last look.
  void ExpectSent(const Bytes& bytes);

 private:
  QTimer watchdog_;
};

}  // namespace pelmora
