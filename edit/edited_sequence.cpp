#include "edit/edited_sequence.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/sequence_store.h"
#include "core/step_line.h"
#include "link/serial_port.h"

namespace pelmora {
namespace {

QString StepCaption(int line) {
  return QStringLiteral("Step N\u00B0 %1").arg(line);
}

QString NoStepCaption() {
  return QStringLiteral("Step N\u00B0 ...");
}

QString SequenceCaption(int sequence) {
  return QStringLiteral("Sequence N\u00B0 %1").arg(sequence);
}

}  // namespace

EditedSequence::EditedSequence(const SequenceControls& controls, platform::MessageBox& message_box,
                               std::string decimal_point)
    : controls_(controls), message_box_(message_box), decimal_point_(std::move(decimal_point)) {}

void EditedSequence::Form_Load() {
  ResetBreakPoints();
  DataInit();
}

void EditedSequence::DataInit() {
  ClearTable(data_);
}

// The list has been cleared.
void EditedSequence::DataToBuffer() {
  const int steps = LoadEditBuffer(data_);
  for (int step = 0; step < steps; ++step) {
    controls_.ListSequence.AddItem(QString::fromStdString(TableLine(Row(step), decimal_point_)));
  }
}

bool EditedSequence::BufferToData() {
  if (!StoreEditBuffer(data_, ListCount())) {
    message_box_.Show(QStringLiteral("Sequence %1 is not stored: a position or a duration of it is "
                                     "out of range. The sequence table keeps what it had.")
                          .arg(data_.CurSeq),
                      kProgramTitle);
    return false;
  }
  OffsetCalc();
  return true;
}

// The warning comes every time, as long as the capacity is exceeded.
void EditedSequence::OffsetCalc() {
  ComputeFlashFigures(data_);
  controls_.LabelByte.setText(QStringLiteral("%1 bytes").arg(data_.TotalBytes));
  if (data_.TotalBytes > kFlashCapacity) message_box_.Show(CapacityText(), kProgramTitle);
}

void EditedSequence::ResetBreakPoints() {
  ClearBreakFlags(data_);
  for (int line = 0; line < ListCount(); ++line) {
    const std::string text = controls_.ListSequence.List(line).toStdString();
    if (HasBreakMark(text)) {
      controls_.ListSequence.SetList(line, QString::fromStdString(WithoutBreakMarks(text)));
    }
  }
}

// Lines to buffer, marks to flags.
void EditedSequence::ReadLinesBack() {
  ClearBreakFlags(data_);
  const int lines = std::min(ListCount(), kSteps);
  for (int line = 0; line < lines; ++line) {
    const std::string text = controls_.ListSequence.List(line).toStdString();
    EditRow& row = data_.EditBuffer[static_cast<std::size_t>(line)];
    ReadStepLine(text, decimal_point_, row);
    row[kBreakColumn] = HasBreakMark(text) ? 1 : 0;
  }
}

void EditedSequence::NameStep() {
  controls_.LabelStep.setText(StepCaption(ListIndex()));
}

void EditedSequence::ShowOffset() {
  controls_.CommandOffset.setText(QStringLiteral("OffSet Seq. %1").arg(data_.CurSeq));
  controls_.LabelOffset.setText(QStringLiteral("%1 bytes").arg(data_.SeqOffset[data_.CurSeq]));
}

void EditedSequence::Insert(const std::vector<std::string>& lines) {
  const History::Change change(changes_, "Add");
  ResetBreakPoints();
  int at = ListIndex();
  for (const std::string& line : lines) {
    controls_.ListSequence.InsertItem(++at, QString::fromStdString(line));
  }
  ReadLinesBack();
  Select(at);
  BufferToData();
  NameStep();
  ShowOffset();
}

void EditedSequence::Remove() {
  const History::Change change(changes_, "Remove");
  if (ListCount() == 0) return;
  ResetBreakPoints();
  const int line = ListIndex();
  if (line < 0) return;
  controls_.ListSequence.RemoveItem(line);
  Select(ListCount() > line ? line : line - 1);
  ReadLinesBack();
  BufferToData();
  NameStep();
  ShowOffset();
}

void EditedSequence::Move(int from, int to) {
  // At the end of a drag the selection is at its new place already.
  const History::Change change(changes_, "Move", {.selected = from});
  const QString text = controls_.ListSequence.List(from);
  controls_.ListSequence.RemoveItem(from);
  controls_.ListSequence.InsertItem(to, text);
  Select(to);
  ReadLinesBack();
}

void EditedSequence::Replace(int line, const std::vector<EditRow>& steps) {
  const History::Change change(changes_, "Interpolate");
  controls_.ListSequence.RemoveItem(line);
  int at = line;
  for (const EditRow& step : steps) {
    controls_.ListSequence.InsertItem(at++,
                                      QString::fromStdString(EditorLine(step, decimal_point_)));
  }
  Select(line);
  NameStep();
  ReadLinesBack();
}

void EditedSequence::ToggleBreak() {
  const int line = ListIndex();
  if (line < 0) return;
  const std::string text = controls_.ListSequence.List(line).toStdString();
  std::int32_t& flag = data_.EditBuffer[static_cast<std::size_t>(line)][kBreakColumn];
  flag = flag == 0 ? 1 : 0;
  controls_.ListSequence.SetList(
      line, QString::fromStdString(flag == 1 ? WithBreakMark(text) : WithoutBreakMarks(text)));
}

void EditedSequence::Clear() {
  const History::Change change(changes_, "Clear Sequence");
  controls_.ListSequence.Clear();
  ResetBreakPoints();
  controls_.LabelStep.setText(NoStepCaption());
}

void EditedSequence::ClearAll() {
  const History::Change change(changes_, "Clear All");
  Clear();
  DataInit();
  data_.CurSeq = 0;
  controls_.LabelSeq.setText(SequenceCaption(0));
}

void EditedSequence::ShowSequence(int sequence) {
  if (sequence >= 0 && sequence < kSequences && BufferToData()) {
    data_.CurSeq = static_cast<std::uint8_t>(sequence);
    ShowCurrentSequence();
  }
  controls_.LabelSeqEmu.setText(SequenceCaption(data_.CurSeq));
  controls_.LabelSeq.setText(SequenceCaption(data_.CurSeq));
  controls_.LabelStep.setText(NoStepCaption());
  ShowOffset();
}

void EditedSequence::ShowCurrentSequence() {
  controls_.ListSequence.Clear();
  ResetBreakPoints();
  DataToBuffer();
  controls_.LabelSeq.setText(SequenceCaption(data_.CurSeq));
}

void EditedSequence::TakeTable(const SequenceTable& table) {
  const History::Change change(changes_, "Load Buffer");
  static_cast<SequenceTable&>(data_) = table;
  data_.CurSeq = 0;
  OffsetCalc();
  ShowCurrentSequence();
}

bool EditedSequence::TakeHeader(const FlashHeader& header, int total_bytes) {
  const History::Change change(changes_, "Read Seq.");
  data_.TotalBytes = total_bytes;
  const bool sound = DecodeHeader(header, data_);
  LimitStepCounts(data_);
  return sound;
}

bool EditedSequence::TakeReply(const FlashHeader& header, int total_bytes, const FlashRows& image) {
  const History::Change change(changes_, "Read Seq.");
  data_.TotalBytes = total_bytes;
  DecodeHeader(header, data_);
  const bool placed = DecodeSteps(image, data_);
  LimitStepCounts(data_);
  if (!placed) return false;
  data_.CurSeq = 0;
  ShowCurrentSequence();
  return true;
}

SequenceState EditedSequence::State(const SequenceState* former) const {
  SequenceState state = StateOf(data_, former);
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
  PutBack(state, data_);
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
