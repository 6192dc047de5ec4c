#include "edit/edited_sequence.h"

#include <QLabel>
#include <algorithm>
#include <utility>

#include "core/step_line.h"
#include "link/serial_port.h"
#include "platform/controls/list_box.h"

namespace pelmora {
namespace {

QString Caption(const char* text, int number) {
  return QString::fromUtf8(text).arg(number);
}

// Whether the editor takes this for a column of a step.
bool FitsEditor(int column, int value) {
  if (column == kDurationColumn) return value >= kShortestDuration && value <= kLongestDuration;
  return column >= 0 && column < kChannels && value >= 0 && value <= kHighestPosition;
}

}  // namespace

// The time of an operation. With a name it is a change that can be undone. Of operations inside
// each other the end of the outermost announces and shows what they have left to say.
class EditedSequence::Operation {
 public:
  explicit Operation(EditedSequence& edited, const char* name = nullptr,
                     const ChangeTraits& traits = {})
      : edited_(edited) {
    if (name) {
      change_.emplace(edited_.changes_, name, traits);
    } else if (edited_.operations_ == 0) {
      edited_.changes_.EndRun();
    }
    ++edited_.operations_;
  }
  ~Operation() {
    change_.reset();
    edited_.EndOperation();
  }
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

 private:
  EditedSequence& edited_;
  std::optional<History::Change> change_;
};

EditedSequence::EditedSequence(const SequenceControls& controls, platform::MessageBox& message_box,
                               std::string decimal_point)
    : controls_(controls), message_box_(message_box), decimal_point_(std::move(decimal_point)) {
  connect(&controls_.ListSequence, &platform::ListBox::itemSelectionChanged, this, [this] {
    if (operations_ == 0) AnnounceSelection();
  });
}

int EditedSequence::ListCount() const {
  return controls_.ListSequence.ListCount();
}

int EditedSequence::ListIndex() const {
  return controls_.ListSequence.ListIndex();
}

void EditedSequence::Select(int line) {
  controls_.ListSequence.SetListIndex(line);
}

void EditedSequence::EndOperation() {
  if (--operations_ > 0) return;
  if (std::exchange(sequence_changed_, false)) emit SequenceChanged();
  AnnounceSelection();
  if (std::exchange(breakpoints_changed_, false)) emit BreakpointsChanged();
  for (const QString& text : std::exchange(messages_, {})) message_box_.Show(text, kProgramTitle);
}

// The list tells when the operator or the program selects a line, but not when a selected line gets
// another index or goes with all others.
void EditedSequence::AnnounceSelection() {
  if (announced_selection_ == ListIndex()) return;
  announced_selection_ = ListIndex();
  changes_.EndRun();
  emit SelectionChanged();
}

void EditedSequence::Form_Load() {
  const Operation operation(*this);
  ResetBreakPoints();
  DataInit();
}

void EditedSequence::DataInit() {
  ClearTable(data_);
  sequence_changed_ = true;
}

// The list has been cleared.
void EditedSequence::DataToBuffer() {
  const int steps = LoadEditBuffer(data_);
  for (int step = 0; step < steps; ++step) {
    controls_.ListSequence.AddItem(QString::fromStdString(TableLine(Row(step), decimal_point_)));
  }
}

bool EditedSequence::BufferToData() {
  const Operation operation(*this);
  if (!StoreEditBuffer(data_, ListCount())) {
    messages_.append(QStringLiteral("Sequence %1 is not stored: a position or a duration of it is "
                                    "out of range. The sequence table keeps what it had.")
                         .arg(data_.CurSeq));
    return false;
  }
  sequence_changed_ = true;
  OffsetCalc();
  return true;
}

// After a change of lines. What can't be stored has been reported and stays in the list, from where
// the next store takes it.
void EditedSequence::Store() {
  static_cast<void>(BufferToData());
  ShowOffset();
}

// The warning comes every time, as long as the capacity is exceeded.
void EditedSequence::OffsetCalc() {
  ComputeFlashFigures(data_);
  controls_.LabelByte.setText(Caption(kBytesCaption, data_.TotalBytes));
  if (data_.TotalBytes > kFlashCapacity) messages_.append(CapacityText());
}

void EditedSequence::ResetBreakPoints() {
  const Operation operation(*this);
  for (int line = 0; line < kSteps; ++line) {
    if (Row(line)[kBreakColumn] != 0) SetBreak(line, false);
  }
}

// The flag of a row and, where it has a line, the mark.
void EditedSequence::SetBreak(int line, bool set) {
  data_.EditBuffer[static_cast<std::size_t>(line)][kBreakColumn] = set ? 1 : 0;
  const std::string text = controls_.ListSequence.List(line).toStdString();
  controls_.ListSequence.SetList(
      line, QString::fromStdString(set ? WithBreakMark(text) : WithoutBreakMarks(text)));
  breakpoints_changed_ = true;
}

// Lines to buffer, marks to flags.
void EditedSequence::ReadLinesBack() {
  for (int line = 0; line < kSteps; ++line) {
    EditRow& row = data_.EditBuffer[static_cast<std::size_t>(line)];
    // Beyond the last line a row keeps its values and loses its flag.
    EditRow read = row;
    read[kBreakColumn] = 0;
    if (line < ListCount()) {
      const std::string text = controls_.ListSequence.List(line).toStdString();
      read = ReadStepLine(text, decimal_point_).value_or(read);
    }
    breakpoints_changed_ |= read[kBreakColumn] != row[kBreakColumn];
    row = read;
  }
  sequence_changed_ = true;
}

void EditedSequence::NameStep() {
  controls_.LabelStep.setText(Caption(kStepCaption, ListIndex()));
}

void EditedSequence::ShowOffset() {
  controls_.CommandOffset.setText(Caption(kOffsetCaption, data_.CurSeq));
  controls_.LabelOffset.setText(Caption(kBytesCaption, data_.SeqOffset[data_.CurSeq]));
}

void EditedSequence::InsertLines(int at, const std::vector<EditRow>& steps) {
  for (const EditRow& step : steps) {
    controls_.ListSequence.InsertItem(at++,
                                      QString::fromStdString(EditorLine(step, decimal_point_)));
  }
  ReadLinesBack();
}

void EditedSequence::Insert(const std::vector<EditRow>& steps, const char* change) {
  const Operation operation(*this, change);
  ResetBreakPoints();
  const int above = ListIndex();
  InsertLines(above + 1, steps);
  Select(above + static_cast<int>(steps.size()));
  Store();
  NameStep();
}

void EditedSequence::Remove(const char* change) {
  const Operation operation(*this, change);
  if (ListCount() == 0) return;
  ResetBreakPoints();
  const int line = ListIndex();
  if (line < 0) return;
  controls_.ListSequence.RemoveItem(line);
  Select(ListCount() > line ? line : line - 1);
  ReadLinesBack();
  Store();
  NameStep();
}

void EditedSequence::ReplaceSelected(const EditRow& step) {
  const Operation operation(*this, "Replace");
  const int replaced = ListIndex();
  Insert({step});
  Select(replaced);
  Remove();
}

bool EditedSequence::ChangeValue(int line, int column, int value, Joins joins) {
  if (line < 0 || line >= ListCount() || !FitsEditor(column, value)) return false;
  EditRow& row = data_.EditBuffer[static_cast<std::size_t>(line)];
  if (row[static_cast<std::size_t>(column)] == value) return true;
  const int run = line * kEditColumns + column;
  const Operation operation(*this, column == kDurationColumn ? "Duration" : "Angle",
                            {.run = joins == Joins::kYes ? std::optional(run) : std::nullopt});
  const std::string text =
      WithValue(controls_.ListSequence.List(line).toStdString(), column, value, decimal_point_);
  controls_.ListSequence.SetList(line, QString::fromStdString(text));
  ReadLinesBack();
  Store();
  return true;
}

void EditedSequence::Move(int from, int to) {
  // At the end of a drag the selection is at its new place already.
  const Operation operation(*this, "Move", {.selected = from});
  const QString text = controls_.ListSequence.List(from);
  controls_.ListSequence.RemoveItem(from);
  controls_.ListSequence.InsertItem(to, text);
  Select(to);
  ReadLinesBack();
}

void EditedSequence::Replace(int line, const std::vector<EditRow>& steps) {
  const Operation operation(*this, "Interpolate");
  controls_.ListSequence.RemoveItem(line);
  InsertLines(line, steps);
  Select(line);
  NameStep();
}

void EditedSequence::ToggleBreak() {
  const Operation operation(*this);
  const int line = ListIndex();
  if (line >= 0) SetBreak(line, Row(line)[kBreakColumn] == 0);
}

void EditedSequence::Clear() {
  const Operation operation(*this, "Clear Sequence");
  sequence_changed_ |= ListCount() > 0;
  controls_.ListSequence.Clear();
  ResetBreakPoints();
  controls_.LabelStep.setText(QString::fromUtf8(kNoStepCaption));
}

void EditedSequence::ClearAll() {
  const Operation operation(*this, "Clear All");
  Clear();
  DataInit();
  MakeCurrent(0);
}

void EditedSequence::ShowSequence(int sequence) {
  const Operation operation(*this);
  if (sequence >= 0 && sequence < kSequences && BufferToData()) MakeCurrent(sequence);
  controls_.LabelSeqEmu.setText(Caption(kSequenceCaption, data_.CurSeq));
  controls_.LabelSeq.setText(Caption(kSequenceCaption, data_.CurSeq));
  controls_.LabelStep.setText(QString::fromUtf8(kNoStepCaption));
  ShowOffset();
}

void EditedSequence::MakeCurrent(int sequence) {
  data_.CurSeq = static_cast<std::uint8_t>(sequence);
  controls_.ListSequence.Clear();
  ResetBreakPoints();
  DataToBuffer();
  sequence_changed_ = true;
  controls_.LabelSeq.setText(Caption(kSequenceCaption, data_.CurSeq));
}

void EditedSequence::TakeTable(const SequenceTable& table) {
  const Operation operation(*this);
  LoadTable(table, data_);
  OffsetCalc();
  MakeCurrent(0);
}

bool EditedSequence::TakeHeader(const FlashHeader& header) {
  const Operation operation(*this);
  sequence_changed_ = true;
  const bool sound = DecodeHeader(header, data_);
  LimitStepCounts(data_);
  return sound;
}

bool EditedSequence::TakeReply(const FlashHeader& header, const FlashRows& image) {
  const Operation operation(*this);
  sequence_changed_ = true;
  const bool placed = DecodeHeader(header, data_) && DecodeSteps(image, data_);
  LimitStepCounts(data_);
  if (placed) MakeCurrent(0);
  return placed;
}

SequenceState EditedSequence::State(const SequenceState* former) const {
  SequenceState state;
  state.Table = TakeSnapshot(data_, former ? &former->Table : nullptr);
  for (int line = 0; line < ListCount(); ++line) {
    state.Lines.append(controls_.ListSequence.List(line).toUtf8()).append('\n');
  }
  state.Lines.squeeze();
  if (former && former->Lines == state.Lines) state.Lines = former->Lines;
  state.Selected = ListIndex();
  std::ranges::transform(Labels(), state.Labels.begin(), &QLabel::text);
  return state;
}

void EditedSequence::Restore(const SequenceState& state) {
  const Operation operation(*this);
  sequence_changed_ = true;
  for (std::size_t line = 0; line < kSteps; ++line) {
    breakpoints_changed_ |=
        (*state.Table.EditBuffer)[line][kBreakColumn] != data_.EditBuffer[line][kBreakColumn];
  }
  RestoreSnapshot(state.Table, data_);
  ShowLines(QString::fromUtf8(state.Lines).split('\n', Qt::SkipEmptyParts));
  Select(state.Selected);
  for (std::size_t i = 0; QLabel * label : Labels()) label->setText(state.Labels[i++]);
}

std::array<QLabel*, 6> EditedSequence::Labels() const {
  return {&controls_.LabelSeq,  &controls_.LabelSeqEmu,   &controls_.LabelStep,
          &controls_.LabelByte, &controls_.CommandOffset, &controls_.LabelOffset};
}

// Lines that stay the same at the beginning and at the end are left where they are on the screen.
void EditedSequence::ShowLines(const QStringList& lines) {
  platform::ListBox& list = controls_.ListSequence;
  const int now = list.ListCount();
  const int wanted = static_cast<int>(lines.size());
  const int shorter = std::min(now, wanted);
  int first = 0;
  while (first < shorter && list.List(first) == lines[first]) ++first;
  int last = 0;
  while (last < shorter - first && list.List(now - 1 - last) == lines[wanted - 1 - last]) ++last;
  for (int line = now - 1 - last; line >= first; --line) list.RemoveItem(line);
  for (int line = first; line < wanted - last; ++line) list.InsertItem(line, lines[line]);
}

QString CapacityText() {
  return QStringLiteral("Out of memory: too many steps. Max # of bytes is %1!").arg(kFlashCapacity);
}

QString TooManyLinesText() {
  return QStringLiteral("Impossible add other lines, max # of lines is %1!").arg(kSteps);
}

}  // namespace pelmora
