// The sequence that is being edited: the one owner of the step list, the edit buffer, `CurSeq`, the
// breakpoints, and the labels that name sequence, step and bytes. Everybody else asks it, or calls
// one of its operations; after each of them list, buffer, flags and marks agree.
//
// Every operation that changes a sequence can be undone. A command that waits between its
// operations holds them together by `BeginChange`.
//
// An operation announces what it has changed when it has ended, each signal once, and shows its
// messages after that: whoever hears or sees something finds an operation that is complete.
//
// The list's lines are the master copy of the current sequence. The sequence table gets it when it
// is stored (`BufferToData`).
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <array>
#include <string>
#include <vector>

#include "core/board_codec.h"
#include "core/declaration.h"
#include "core/sequence_store.h"
#include "edit/history.h"
#include "platform/system/message_box.h"

class QLabel;
namespace platform {
class ListBox;
}

namespace pelmora {

// What the labels say of sequence, step and bytes; "%1" is a number, 0 at the start.
inline constexpr char kSequenceCaption[] = "Sequence N\u00B0 %1";
inline constexpr char kStepCaption[] = "Step N\u00B0 %1";
inline constexpr char kNoStepCaption[] = "Step N\u00B0 ...";
inline constexpr char kOffsetCaption[] = "OffSet Seq. %1";
inline constexpr char kBytesCaption[] = "%1 bytes";

struct SequenceControls {
  platform::ListBox& ListSequence;
  QLabel& LabelSeq;
  QLabel& LabelSeqEmu;
  QLabel& LabelStep;
  QLabel& LabelByte;
  QLabel& CommandOffset;  // "OffSet Seq. n", a label despite its name
  QLabel& LabelOffset;
};

class EditedSequence : public QObject {
  Q_OBJECT
 public:
  // `decimal_point` (UTF-8) is the one of the user's locale; angle texts are built and read with
  // it.
  EditedSequence(const SequenceControls& controls, platform::MessageBox& message_box,
                 std::string decimal_point);

  const Declaration& Data() const { return data_; }
  const History& Changes() const { return changes_; }
  const std::string& DecimalPoint() const { return decimal_point_; }
  int ListCount() const;
  // The selected line, -1 when none is.
  int ListIndex() const;
  // The step of a line, 0 .. ListCount - 1.
  const EditRow& Row(int line) const { return data_.EditBuffer[static_cast<std::size_t>(line)]; }

  // Whether the table holds the current sequence as the list has it: the same number of steps, with
  // the same positions and durations. It doesn't after "Move", "Interpolate" and "Clear Sequence".
  bool Stored() const { return TableHolds(data_, ListCount()); }

  // Start-up: no breakpoints, an empty table.
  void Form_Load();

  // Stores the edit buffer as `CurSeq`, with as many steps as the list has lines, and runs
  // `OffsetCalc`. False when a value does not fit the table: a message says so, nothing of the
  // sequence is stored, and the caller must not throw the list away.
  [[nodiscard]] bool BufferToData();

  // Clears every breakpoint of the current sequence, flags and marks.
  void ResetBreakPoints();

  // Selects a line, -1 for none.
  void Select(int line);
  // `LabelStep` names the selected line.
  void NameStep();

  // What is done until the result goes is one change to undo, of this name.
  [[nodiscard]] History::Change BeginChange(const char* name) { return {changes_, name}; }
  // Restore what was before the latest change, or undone, see `History`.
  void Undo() { changes_.Undo(); }
  void Redo() { changes_.Redo(); }

  // Inserts steps (one or more, in their order) below the selected one, or at the top when none is
  // selected, selects the last of them and stores. The list must have room for them. Clears the
  // breakpoints. `change` is what the undo is called.
  void Insert(const std::vector<EditRow>& steps, const char* change = "Add");
  // Removes the selected line, selects the one that followed it (or else the last) and stores.
  // Clears the breakpoints, even when no line is selected. Nothing happens on an empty list.
  void Remove(const char* change = "Remove");
  // Moves a line, with its breakpoint, to the place of another, and selects it. Doesn't store.
  void Move(int from, int to);
  // "Replace": puts a step in the place of the selected one, which must exist and stays selected,
  // and stores. The list must have room for one more. Clears the breakpoints.
  void ReplaceSelected(const EditRow& step);
  // Changes one value of a line and stores: of column 0..11 the position (0..255), of
  // `kDurationColumn` the duration (20..32767 ms). The line keeps its place, breakpoints and
  // selection stay. False, and nothing happens, when there is no such line or the value is out of
  // range. Changes of the same value that join and follow each other, with nothing in between, are
  // one step of undo; none is left when they come back to where they began.
  enum class Joins { kNo, kYes };
  [[nodiscard]] bool ChangeValue(int line, int column, int value, Joins joins);
  // Puts steps, in their order, in the place of a line and selects the first. Doesn't store. The
  // list must have room for them.
  void Replace(int line, const std::vector<EditRow>& steps);
  // Sets or clears the breakpoint of the selected line.
  void ToggleBreak();

  // Empties the current sequence. Doesn't store.
  void Clear();
  // Empties all 16 sequences and makes sequence 0 current. Loading a file and reading the flash
  // begin with it.
  void ClearAll();

  // Stores the current sequence and shows another one, with nothing selected. A number outside
  // 0..15 shows none, and neither does a sequence that can't be stored: leaving it would lose it.
  void ShowSequence(int sequence);

  // Inside the change of a load: makes a table (every count 0..256) the program's and shows
  // sequence 0.
  void TakeTable(const SequenceTable& table);

  // A read: its header has come. Takes its figures, the counts held to what a sequence can have.
  // False when a value makes no sense; those before it are taken.
  [[nodiscard]] bool TakeHeader(const FlashHeader& header);
  // A read: all of its step data has come. Places the rows by the counts of that header, whatever
  // has become of the table meanwhile, and shows sequence 0. False when a step can't be stored:
  // those before it are in the table, and the list stays as it was.
  [[nodiscard]] bool TakeReply(const FlashHeader& header, const FlashRows& image);

 signals:
  // The lines of the current sequence, `CurSeq` or the table have changed, or have been stored.
  void SequenceChanged();
  // `ListIndex` has changed, by an operation or by the operator.
  void SelectionChanged();
  // A breakpoint of the current sequence has been set, cleared or moved.
  void BreakpointsChanged();

 private:
  class Operation;

  friend class History;
  // The state now, sharing with `former` (null when there is none) what it has alike.
  SequenceState State(const SequenceState* former) const;
  void Restore(const SequenceState& state);
  std::array<QLabel*, 6> Labels() const;
  void ShowLines(const QStringList& lines);
  void DataInit();
  void DataToBuffer();
  void OffsetCalc();
  void Store();
  void InsertLines(int at, const std::vector<EditRow>& steps);
  void SetBreak(int line, bool set);
  void ReadLinesBack();
  void EndOperation();
  void AnnounceSelection();
  void MakeCurrent(int sequence);
  void ShowOffset();

  Declaration data_;
  const SequenceControls controls_;
  platform::MessageBox& message_box_;
  const std::string decimal_point_;
  History changes_{*this};

  // Of the operation in progress.
  int operations_ = 0;  // one inside the other
  bool sequence_changed_ = false;
  bool breakpoints_changed_ = false;
  QStringList messages_;

  int announced_selection_ = -1;
};

// The warning that the sequences exceed the board's capacity.
QString CapacityText();
// "Impossible add other lines, ...", shown when a list would grow beyond 256 lines.
QString TooManyLinesText();

}  // namespace pelmora
