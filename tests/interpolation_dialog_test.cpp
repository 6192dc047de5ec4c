// The dialog "Interpolation" on the screen. What it does and locks is in tests/effects.txt.
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

using Interpolate = WindowTest;

TEST_F(Interpolate, SaysInFullThatAChoiceIsMissing) {
  AddSteps(3);
  Select(1);
  Press("CommandInterpolate");
  hands->Find<QSpinBox>("CWNumEditInterp").setValue(3);
  Press("OKButton");
  const auto& missing = hands->Find<QLabel>("LabelMissingChoice");
  EXPECT_TRUE(missing.isVisible());
  EXPECT_GE(missing.width(), missing.sizeHint().width());
  EXPECT_TRUE(hands->Find<QDialog>("DialogInterp").rect().contains(missing.geometry()));
}

}  // namespace
}  // namespace pelmora
