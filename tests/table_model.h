// What the sequence table must hold, worked out from what the operator presses and what the list
// shows, and not from what the program says of its table; and which changes undo takes back.
#pragma once

#include <cmath>
#include <optional>
#include <vector>

#include "core/board_codec.h"
#include "core/step_line.h"
#include "tests/window_fixture.h"

namespace pelmora {

using Steps = std::vector<std::vector<EditRow>>;

// The 16 sequences as the table holds them.
inline Steps StoredSteps(const Declaration& data) {
  Steps stored(kSequences);
  for (std::size_t i = 0; i < kSequences; ++i) {
    stored[i].resize(static_cast<std::size_t>(data.SeqSteps[i]));
    for (std::size_t step = 0; step < stored[i].size(); ++step) {
      std::ranges::copy(data.SeqTable[i].Position[step], stored[i][step].begin());
      stored[i][step][kDurationColumn] = data.SeqTable[i].Duration[step];
    }
  }
  return stored;
}

class TableModel {
 public:
  explicit TableModel(const ProgramWithBoard& program) : program_(program) {}

  struct State {
    Steps table = Steps(kSequences);
    std::size_t current = 0;
    Bytes header = Bytes(66);  // the figures, as they are programmed
    QStringList lines;         // without breakpoint marks

    bool operator==(const State&) const = default;
  };

  // What the last command has done to the table.
  void Store() {  // the list as it stands
    now_.table[now_.current] = ListedSteps();
    now_.header = HeaderOf(Sequences());
  }
  void Empty() { Take(Steps(kSequences)); }
  void Take(const Steps& table) {
    now_.table = table;
    now_.current = 0;
    now_.header = HeaderOf(Sequences());
  }
  void Show(int sequence) {
    Store();
    now_.current = static_cast<std::size_t>(sequence);
  }
  // A read has taken what the board has sent, whatever that was.
  void Adopt() {
    now_.table = StoredSteps(program_.Data());
    now_.current = program_.Data().CurSeq;
    const auto command = ProgramCommand(program_.Data());
    now_.header.assign(command.begin() + 1, command.end());
  }

  State Now() const {
    State now = now_;
    now.lines = program_.Lines();
    now.lines.replaceInStrings("\tBREAK!", "");
    return now;
  }

  // Changes inside a change are one step of undo with it.
  void Begin() {
    if (open_++ == 0) before_ = Now();
  }
  void End() {
    if (--open_ > 0 || before_ == Now()) return;
    ++changes_;
    undo_.push_back(before_);
    if (undo_.size() > kMostUndone) undo_.erase(undo_.begin());
    redo_.clear();
  }
  // How many there are that have not been undone.
  int Changes() const { return changes_; }
  // Undoes a change, or does one `again`. `press` presses the key, which does nothing unless it is
  // `allowed`.
  template <class Press>
  void Undo(bool again, bool allowed, Press press) {
    std::vector<State>& from = again ? redo_ : undo_;
    const State former = Now();
    press();
    if (!allowed || open_ > 0 || from.empty()) {
      EXPECT_TRUE(Now() == former) << "there is nothing to undo or redo";
      return;
    }
    (again ? undo_ : redo_).push_back(former);
    now_ = from.back();
    from.pop_back();
    changes_ += again ? 1 : -1;
    EXPECT_EQ(Now().lines, now_.lines);
  }

  // What programming sends behind its command. Nothing after a read whose header did not fit its
  // steps.
  std::optional<Bytes> Image() const {
    if (now_.header != HeaderOf(Sequences())) return std::nullopt;
    return now_.header + StepDataOf(Sequences());
  }

  void Check() const {
    EXPECT_TRUE(StoredSteps(program_.Data()) == now_.table) << "the table is not what was stored";
    EXPECT_EQ(program_.Data().CurSeq, now_.current);
  }

 private:
  static constexpr std::size_t kMostUndone = 500;

  Steps::value_type ListedSteps() const {
    Steps::value_type steps;
    for (const QString& line : program_.Lines()) {
      steps.push_back(ReadStepLine(line.toStdString(), ".").value());
      steps.back()[kBreakColumn] = 0;
    }
    return steps;
  }
  rig::Sequences Sequences() const {
    rig::Sequences sequences;
    for (std::size_t i = 0; i < kSequences; ++i) {
      for (const EditRow& row : now_.table[i]) {
        Step& step = sequences[i].emplace_back();
        std::copy_n(row.begin(), kChannels, step.positions.begin());
        step.ticks = static_cast<int>(std::nearbyint(row[kDurationColumn] / 20.0));
      }
    }
    return sequences;
  }
  const ProgramWithBoard& program_;
  State now_;
  State before_;
  int open_ = 0;
  int changes_ = 0;
  std::vector<State> undo_;
  std::vector<State> redo_;
};

}  // namespace pelmora
