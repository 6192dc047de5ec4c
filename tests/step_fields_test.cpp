// Entries of the step fields that are longer than any number.
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

using PositionFields = WindowTest;

TEST_F(PositionFields, TakeNumbersOfAnyLength) {
  const std::pair<QString, const char*> cases[] = {{QString(330, '9'), "127"},
                                                   {"-" + QString(330, '9'), "-128"},
                                                   {QString(330, '0') + "5", "5"}};
  for (const auto& [typed, offset] : cases) {
    hands->Type("Text1_3", typed);
    EXPECT_EQ(hands->Read("Text1_3"), offset) << typed.toStdString();
  }
}

}  // namespace
}  // namespace pelmora
