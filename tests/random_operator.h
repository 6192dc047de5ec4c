// An operator who does anything at any time, with a board that misbehaves, and what the program
// must be like after each action. What the actions have brought about is counted.
#pragma once

#include <QClipboard>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <array>
#include <map>

#include "core/step_line.h"
#include "tests/table_model.h"

namespace pelmora {

constexpr char kInside[] = " inside ";
constexpr int kLinesInView = 13;
constexpr int kLongRun = 8;  // steps of undo
constexpr char kCompared[] = "compared what was programmed with the model";
constexpr int kGlance = 20;    // ms between his looks at what is going on
constexpr int kPatience = 40;  // ms that the operator lets an operation wait

class RandomOperator : public WindowTest {
 protected:
  RandomOperator() {
    box.ExpectAnything();
    box.Shown = [this](const QString& shown) {
      for (const char* text :
           {"Data Flash Erased", "Data Flash Programmed!", "Data Flash Read!", "Reading Error!",
            "Nothing to Read!", "Operation Aborted!", "Data Saved!", "Data Loaded!"}) {
        seen_[text] += shown.startsWith(text);
      }
      seen_["lost the line"] += shown.contains("is lost");
      // The steps to be programmed are taken when the flash has been erased.
      if (shown == "Data Flash Erased") to_program_ = reads_ == 0 ? model_.Image() : std::nullopt;
      if (shown == "Data Flash Programmed!") programmed_ = TailOfTheLine();
      if (shown.startsWith("Something else was sent")) programmed_.reset();
    };
    LosePatience();
  }

  ~RandomOperator() override { box.Shown = nullptr; }

  int Random(int below) { return static_cast<int>(random_.bounded(below)); }
  int Count() const { return List().ListCount(); }
  bool Connected() const { return !Enabled("ComboPort"); }
  bool Playing() const { return hands->Read("CWButtonEmuPC") == "On"; }

  // One action. Each says what it has brought about by adding to `seen_`.
  void Act() {
    using Action = void (RandomOperator::*)();
    using Self = RandomOperator;
    // Each as often as it stands here.
    // clang-format off
    static constexpr Action kKinds[] = {
        &Self::PressAnyButton, &Self::PressAnyButton, &Self::PressAnyButton, &Self::Add, &Self::Add,
        &Self::EnterValues, &Self::EnterValues, &Self::Drag, &Self::DoubleClick, &Self::SelectAny,
        &Self::HoldKeyInList, &Self::Play, &Self::Play, &Self::Play, &Self::Play, &Self::Tick,
        &Self::Tick, &Self::BoardPlays, &Self::Operate, &Self::Operate, &Self::Operate,
        &Self::TryToConnect, &Self::SaveOrLoad, &Self::Interpolate, &Self::Interpolate,
        &Self::Undo, &Self::CopyAndPaste, &Self::ShapeMovement, &Self::ShapeMovement,
        &Self::Disturb, &Self::ResetWithBothSwitchesOn};
    // clang-format on
    const int chosen = Random(std::size(kKinds));
    seen_["with a list longer than its window"] += Count() > kLinesInView;
    seen_["inside a wait"] += Waiting();
    done_.append(QString("%1%2").arg(chosen).arg(Waiting() ? " in a wait" : ""));
    (this->*kKinds[chosen])();
  }

  // Presses a button, which does what the model says.
  void Press(const char* button) {
    const std::string_view name = button;
    const auto press = [&] { WindowTest::Press(button); };
    const bool selected = Selected() >= 0;
    const bool room = Count() < kSteps;
    if ((name == "CommandAdd" && room) || (name == "CommandRem" && selected) ||
        (name == "CommandReplace" && selected && room)) {
      return Change([&] { press(), model_.Store(); });
    }
    if (name == "CommandClear" || name == "OKButton") return Change(press);
    if (name == "CommandClearAll") return Change([&] { press(), model_.Empty(); });
    if (name == "CommandMoreSeq") return ShowSequence(Data().CurSeq + 1, press);
    if (name == "CommandLessSeq") return ShowSequence(Data().CurSeq - 1, press);
    if (name == "CommandErase") NotePhase("erase");
    if (name == "CommandRead") return Read(press);
    if (name == "CommandFlash") return Program(press);
    press();
  }
  template <class Act>
  void Change(Act act) {
    model_.Begin();
    act();
    model_.End();
  }
  template <class Act>
  void ShowSequence(int sequence, Act press) {
    const bool exists = sequence >= 0 && sequence < kSequences;
    if (exists) model_.Store();
    press();
    if (exists) model_.Show(sequence);
  }
  template <class Act>
  void Read(Act press) {
    NotePhase("read");
    ++reads_;
    Change([&] {
      model_.Empty();
      press();
      if (--reads_ == 0) model_.Adopt();
    });
  }
  template <class Act>
  void Program(Act press) {
    NotePhase("program");
    programmed_.reset();
    press();
    if (!programmed_ || !to_program_) return;
    ++seen_[kCompared];
    EXPECT_TRUE(*programmed_ == Bytes{2} + *to_program_);
    programmed_.reset();
  }
  // An operation is begun: what it is inside of.
  void NotePhase(const std::string& operation) {
    if (!Waiting()) return;
    const char* phase = Erasing()          ? "an erase"
                        : Programming()    ? "a program"
                        : BarMaximum() > 1 ? "the data of a read"
                                           : "the header of a read";
    ++seen_[operation + kInside + phase];
  }
  // As many bytes, the last that the board has received, as should have been programmed.
  std::optional<Bytes> TailOfTheLine() {
    if (!to_program_) return std::nullopt;
    const std::size_t size = 1 + to_program_->size();
    const auto ending = [&] {
      const Bytes received = board.Received();
      return Bytes(received.end() - std::ptrdiff_t(std::min(size, received.size())),
                   received.end());
    };
    for (int wait = 0; wait < 40 && ending() != Bytes{2} + *to_program_; ++wait) QTest::qSleep(5);
    return ending();
  }

  const char* OneOf(std::initializer_list<const char*> all) {
    return all.begin()[Random(static_cast<int>(all.size()))];
  }
  void PressOneOf(std::initializer_list<const char*> buttons) {
    const char* button = OneOf(buttons);
    done_.append(button);
    Press(button);
  }
  // Presses a key in the list, which does what the model says.
  void ListKeys(const QString& key) {
    const auto press = [&] { WindowTest::ListKeys(key); };
    const bool may_undo = !form->Link().Busy();
    if (key == "Ctrl+Z") return model_.Undo(may_undo, press);
    if (key == "Ctrl+Y") return model_.Redo(may_undo, press);
    const int lines = Count();
    Change([&] {
      press();
      if (Count() != lines) model_.Store();  // cut or pasted
    });
  }
  void PressAnyButton() {
    PressOneOf({"CommandRem", "CommandReplace", "CommandUp", "CommandDwn", "CommandMoreSeq",
                "CommandLessSeq", "CommandUpdate", "CommandBrk", "CommandBrk", "CommandResBrk",
                "CommandRepeat", "CommandContinue", "CommandInBuff", "CWButtonMainOnOff"});
  }
  void Add() {
    const int lines = Count();
    Press("CommandAdd");
    seen_["added"] += Count() > lines;
  }
  void EnterValues() {
    SetSlider(Random(12), Random(256));
    const QString text = QString::number(Random(400) - 200) + (Random(4) == 0 ? "-" : "");
    hands->Type(QString("Text1_%1").arg(Random(24)), text, Random(2) == 0);
    hands->Type("CWNumEditTimeStep", QString::number(Random(40000)), Random(2) == 0);
  }
  void Drag() {
    if (Count() < 2) return;
    const int from = Random(Count());
    List().scrollToItem(List().item(from));
    const int top = List().indexAt({20, 2}).row();
    const int to = std::min(top + Random(10), Count() - 1);
    Change([&] { hands->DragLine("ListSequence", from, to); });
    seen_["dragged"] += from != to && Selected() == to;
  }
  void DoubleClick() {
    if (Count() == 0) return;
    const int line = Random(Count());
    hands->DoubleClickLine("ListSequence", line);
    seen_["showed by a double click"] +=
        hands->Read("LabelStep") == QString("Step N° %1").arg(line);
  }
  void HoldKeyInList() {
    const int before = Selected();
    List().setFocus();
    const bool moves_line = Random(3) == 0;
    // Each repetition of the key is a change.
    QObject moves;
    QObject::connect(&form->Edited(), &EditedSequence::SequenceChanged, &moves, [this] {
      model_.End();
      model_.Begin();
    });
    model_.Begin();
    Operator::Hold(List(), Random(2) == 0 ? Qt::Key_Down : Qt::Key_Up,
                   moves_line ? Qt::ControlModifier : Qt::NoModifier);
    model_.End();
    seen_["held a key in the list"] += std::abs(Selected() - before) > 1;
  }
  void SelectAny() { Select(Random(Count() + 1) - 1); }
  void Play() {
    TryToConnect();
    if (hands->Read("CWButtonRealEmu") == "On") Press("CWButtonRealEmu");
    if (Playing()) return PressOneOf({"CWButtonEmuPC", "CommandContinue", "CommandContinue"});
    if (Count() > 2 && Random(8) > 0) {
      const int line = 1 + Random(Count() - 1);
      Select(line);
      Press("CommandBrk");
      Select(std::max(0, line - 2));
    }
    Press("CWButtonEmuPC");
    Tick();
  }
  void Tick() {
    for (int ticks = 3; ticks > 0 && timer.Enabled(); --ticks) {
      const int line = Selected();
      const auto busy = form->Link().Port().TimeUntilReady().count();
      if (busy > kPatience) return;  // with a whole program
      hands->Wait(static_cast<int>(busy));
      timer.Elapse();
      if (!Playing()) return;
      seen_["played a step"] += Selected() != line;
      seen_["halted"] += !timer.Enabled();
    }
  }
  void BoardPlays() {
    if (Playing()) Press("CWButtonEmuPC");
    TryToConnect();
    Press("CWButtonRealEmu");
    seen_["let the board play"] += hands->Read("CWButtonRealEmu") == "On";
  }
  void Operate() {
    TryToConnect();
    if (Random(2) == 0) FillFlash();
    OperateInside();
  }
  void OperateInside() {
    Misbehave();
    PressOneOf({"CommandErase", "CommandFlash", "CommandFlash", "CommandRead", "CommandRead"});
  }
  void FillFlash() {
    const Sequences flashed =
        RandomSequences(random_.generate(), std::min(Random(3), 1) * Random(40));
    board.SetFlash(HeaderOf(flashed), StepDataOf(flashed));
  }
  void TryToConnect() {
    if (Connected()) return;
    auto& combo = hands->Find<QComboBox>("ComboPort");
    combo.setCurrentIndex(0);
    emit combo.activated(0);
    seen_["connected"] += Connected();
  }
  void Reconnect() {
    board.Unplug();
    board.Replug();
  }
  void SaveOrLoad() { Random(2) == 0 ? Save() : LoadAFile(); }
  void Save() {
    files.answer = Random(6) == 0 ? std::nullopt : std::optional(folder_.filePath("file"));
    model_.Store();
    const int saved = seen_["Data Saved!"];
    Trigger("SaveBuffer");
    if (seen_["Data Saved!"] == saved) return;
    file_ = reads_ == 0 ? model_.Now().table : StoredSteps(Data());
  }
  // What was saved, or sequences of many steps.
  void LoadAFile() {
    Change([&] {
      if (Random(2) == 0) {
        Load(RandomSequences(random_.generate(), 400));
        return model_.Adopt();
      }
      files.answer = Random(6) == 0 ? std::nullopt : std::optional(folder_.filePath("file"));
      const int loaded = seen_["Data Loaded!"];
      Trigger("LoadBuffer");
      seen_["Data Loaded!"] > loaded ? model_.Take(file_) : model_.Empty();
    });
  }
  void Interpolate() {
    const int lines = Count();
    if (lines < 2) return;
    if (Selected() < 0) Select(Random(lines));
    Press("CommandInterpolate");
    auto* count = form->findChild<QSpinBox*>("CWNumEditInterp");
    if (!count) return;
    count->setValue(Random(12));
    PressOneOf({"OptionINterp_0", "OptionINterp_1"});
    PressOneOf({"OKButton", "OKButton", "OKButton", "CancelButton"});
    if (auto* dialog = form->findChild<QDialog*>("DialogInterp")) dialog->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    seen_["interpolated"] += Count() > lines;
  }
  void TakeBack() { ListKeys("Ctrl+Z"); }
  void DoAgain() { ListKeys("Ctrl+Y"); }
  void Undo() {
    undo_chosen_ = true;
    if (Random(3) == 0) {
      Press("CommandClearAll");
      ProgramAfter("\"Clear All\"");
    }
    const QStringList lines = Lines();
    TakeBack();
    seen_["undid"] += Lines() != lines;
    if (Random(2) == 0) return ProgramAfter("an undo");
    DoAgain();
    seen_["did again"] += Lines() == lines;
    ProgramAfter("a redo");
  }
  // At once, with a board that does what it should.
  void ProgramAfter(const std::string& command) {
    TryToConnect();
    board.SetFaults({});
    const int before = seen_[kCompared];
    Press("CommandFlash");
    seen_["programmed after " + command] += seen_[kCompared] > before;
  }
  void CopyAndPaste() {
    const int lines = Count();
    if (lines > 0 && Selected() < 0) Select(Random(lines));
    ListKeys(OneOf({"Ctrl+C", "Ctrl+C", "Ctrl+X"}));
    const int left = Count();
    ListKeys("Ctrl+V");
    seen_["pasted steps"] += Count() > left;
  }
  // In the window "Movement", by a key, or by a drag of what the pointer finds.
  void ShapeMovement() {
    const auto* movement = form->findChild<QWidget*>("Movement");
    if (!movement || !movement->isVisible() || Random(8) == 0) Trigger("ListMovement");
    movement = form->findChild<QWidget*>("Movement");
    if (Count() == 0 || !movement->isVisible() || Waiting()) return;
    QWindow* window = movement->windowHandle();
    auto& canvas = hands->Find<QWidget>("MovementCanvas");
    const QStringList lines = Lines();
    Select(-1);  // what was shaped before is a change of its own
    const int line = Random(Count());
    const auto any = [&] { return QPoint(Random(canvas.width()), Random(canvas.height())); };
    const bool by_key = Random(2) == 0;
    Change([&] {
      if (by_key) {
        Select(line);
        hands->Keys(canvas, OneOf({"Shift+Up", "Shift+PgDown", "Shift+Left", "Shift+Right"}));
      } else {
        QPoint from;
        for (int search = 0; search < 40; ++search) {
          QTest::mouseMove(window, from = any());
          if (canvas.cursor().shape() != Qt::ArrowCursor) break;
        }
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, any());
        if (Random(3) == 0) Tick();
        if (Random(4) == 0) hands->Keys(canvas, "Escape");
        QTest::mouseRelease(window, Qt::LeftButton, {}, any());
      }
      if (Lines() != lines) model_.Store();
    });
    seen_[by_key ? "shaped by a key" : "shaped by a drag"] += Lines() != lines;
  }
  // So many changes can be undone and done again. The model compares what comes back.
  void CheckUndo(int changes) {
    if (changes <= 0) return;
    const Declaration data = Data();
    const int selected = Selected();
    for (int i = 0; i < changes; ++i) TakeBack();
    model_.Check();
    for (int i = 0; i < changes; ++i) DoAgain();
    EXPECT_TRUE(Data() == data && Selected() == selected)
        << "done again: " << changes << " changes";
    ++seen_[changes > kLongRun ? "undid many actions and did them again"
                               : "undid an action and did it again"];
  }

  // What would stand in the way of everything else if it happened often.
  void Disturb() {
    if (Random(3) == 0) return Reconnect();
    if (Random(3) == 0) Trigger("Resetting");
    if (Random(3) == 0) PressOneOf({"CommandClearAll", "CommandClear"});
  }
  void ResetWithBothSwitchesOn() {
    const auto both = [this](const char* state) {
      return hands->Read("CWButtonMainOnOff") == state && hands->Read("CWButtonRealEmu") == state;
    };
    if (hands->Read("CWButtonMainOnOff") == "Off") Press("CWButtonMainOnOff");
    if (hands->Read("CWButtonRealEmu") == "Off") BoardPlays();
    const bool both_on = both("On");
    Trigger("Resetting");
    seen_["reset with both switches On"] += both_on && both("Off");
  }
  void Misbehave() {
    std::array<std::uint8_t, 66> header{};
    for (auto& byte : header) byte = static_cast<std::uint8_t>(Random(4) == 0 ? Random(256) : 0);
    constexpr std::chrono::milliseconds kLate(kPatience / 2);
    const auto cut = static_cast<std::size_t>(Random(120));
    const auto cut_in_data = static_cast<std::size_t>(66 + Random(60));
    const simboard::Faults faults[] = {
        {.silent = true},       {.before_reply = {3, 0}},         {.extra_replies = 2},
        {.cut_reply_at = cut},  {.after_reply = {1, 2}},          {.lying_header = header},
        {.reply_delay = kLate}, {.silent_after_acks = Random(3)}, {.cut_reply_at = cut_in_data}};
    const auto kind = static_cast<std::size_t>(Random(14));
    board.SetFaults(kind < std::size(faults) ? faults[kind] : simboard::Faults{});
  }

  // Called now and then, also inside waits: does something else in between, and ends a wait that
  // takes too long.
  void LosePatience() {
    // A timer does not fire inside its own slot, and this may come to wait: each time is a new one.
    QTimer::singleShot(kGlance, &patience_, [this] { LosePatience(); });
    // One of two operations that wait at once takes the flags with it when it ends.
    if (!Waiting() && !Enabled("Command1")) {
      waiting_.invalidate();
      return;
    }
    if (!waiting_.isValid()) waiting_.start();
    if (waiting_.elapsed() >= kPatience) {
      waiting_.restart();
      return Enabled("Command1") ? Press("Command1") : Reconnect();
    }
    if (depth_ == 2) return;
    ++depth_;
    Random(2) == 0 ? OperateInside() : Act();
    CheckLines();
    --depth_;
  }

  // The list and the edit buffer are one.
  void CheckLines() {
    const QStringList lines = Lines();
    ASSERT_LT(Selected(), lines.size());
    for (std::size_t i = 0; const QString& line : lines) {
      ASSERT_EQ(ReadStepLine(line.toStdString(), "."), Data().EditBuffer[i++])
          << line.toStdString();
    }
    if (reads_ == 0) model_.Check();
    for (const int steps : Data().SeqSteps) ASSERT_TRUE(steps >= 0 && steps <= kSteps);
  }

  void CheckState() {
    ASSERT_NO_FATAL_FAILURE(CheckLines());
    ASSERT_FALSE(Waiting());
    ASSERT_FALSE(Enabled("Command1"));
    ASSERT_FALSE(BarShown());
    ASSERT_TRUE(Enabled("ListSequence"));
    const bool real = hands->Read("CWButtonRealEmu") == "On";
    ASSERT_EQ(Enabled("CWButtonRealEmu"), !Playing());
    ASSERT_EQ(Enabled("CWButtonEmuPC"), !real);
    ASSERT_TRUE(Playing() || !timer.Enabled()) << "nothing plays while the switch is Off";
    board.ClearLog();
  }

  TableModel model_{*this};
  int reads_ = 0;                    // in progress, one inside the other
  std::optional<Bytes> to_program_;  // what the flash must hold once it is programmed, if known
  std::optional<Bytes> programmed_;
  Steps file_ = Steps(kSequences);

  QRandomGenerator random_;
  QTemporaryDir folder_;
  QObject patience_;
  QElapsedTimer waiting_;
  int depth_ = 0;
  bool undo_chosen_ = false;
  QStringList done_;
  std::map<std::string, int> seen_;
};

}  // namespace pelmora
