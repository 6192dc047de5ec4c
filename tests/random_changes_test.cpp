// Any changes in any order can be undone to the first and done again to the last.
#include "tests/random_operator.h"

namespace pelmora {
namespace {

// Everything that undo has to bring back, as it can be seen from outside.
struct Seen {
  Declaration data;
  QStringList shown;
  bool operator==(const Seen&) const = default;
};

// Any changes in any order, and what is no change in between.
class RandomChanges : public RandomOperator, public testing::WithParamInterface<unsigned> {
 protected:
  RandomChanges() { random_.seed(GetParam()); }

  void Change() {
    if (Random(3) > 0) return Press("CommandAdd");
    if (Random(8) == 0) return LoadAFile();
    if (Random(8) == 0 && Selected() >= 0) return Interpolate();
    if (Random(2) == 0) return ListKeys(OneOf({"Ctrl+Up", "Ctrl+Down", "Ctrl+X", "Ctrl+V"}));
    PressOneOf({"CommandRem", "CommandRem", "CommandReplace", "CommandReplace", "CommandRead",
                "CommandRead", "CommandClear", "CommandClearAll"});
  }
  Seen Now() const {
    QStringList shown = Lines() + QStringList(QString::number(Selected()));
    for (const char* label :
         {"LabelSeq", "LabelSeqEmu", "LabelStep", "LabelByte", "CommandOffset", "LabelOffset"}) {
      shown.append(hands->Read(label));
    }
    return {Data(), shown};
  }
  void NoChange() {
    if (Random(2) == 0) SelectAny();
    if (Random(4) == 0) EnterValues();
    if (Random(4) == 0) FillFlash();
    if (Random(4) == 0) ListKeys("Ctrl+C");
    if (Random(4) == 0) Save();
    TryToConnect();
    Misbehave();
    PressOneOf({"CommandBrk", "CommandMoreSeq", "CommandLessSeq", "CommandUp", "CommandInBuff"});
  }
};

TEST_P(RandomChanges, CanBeUndoneToTheStartAndRedoneToTheEnd) {
  constexpr int kChanges = 500;
  std::vector<Seen> states;  // before each change, and at the end
  while (model_.Changes() < kChanges) {
    NoChange();
    const Seen before = Now();
    Change();
    if (model_.Changes() > static_cast<int>(states.size())) states.push_back(before);
  }
  states.push_back(Now());
  // What was no change, done since a change, comes back with its redo.
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = kChanges; i-- > 0;) {
      TakeBack();
      ASSERT_TRUE(Now() == states[i]) << "undone: change " << i;
    }
    TakeBack();
    ASSERT_TRUE(Now() == states[0]) << "nothing more to undo";
    for (std::size_t i = 0; i < kChanges; ++i) {
      DoAgain();
      ASSERT_TRUE(Now() == states[i + 1]) << "redone: change " << i;
    }
    DoAgain();
    ASSERT_TRUE(Now() == states[kChanges]) << "nothing more to redo";
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomChanges, testing::Values(1U, 2U, 3U, 20261123U));

}  // namespace
}  // namespace pelmora
