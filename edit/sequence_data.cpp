#include "edit/sequence_data.h"

#include <algorithm>
#include <utility>

#include "core/sequence_store.h"
#include "core/step_line.h"
#include "link/serial_port.h"

namespace pelmora {

SequenceData::SequenceData(Declaration& data, platform::ListBox& list_sequence, QLabel& label_byte,
                           platform::MessageBox& message_box, std::string decimal_point)
    : data_(data),
      list_sequence_(list_sequence),
      label_byte_(label_byte),
      message_box_(message_box),
      decimal_point_(std::move(decimal_point)) {}

void SequenceData::DataInit() {
  ClearTable(data_);
}

void SequenceData::DataToBuffer() {
  const int steps = LoadEditBuffer(data_);
  for (int step = 0; step < steps; ++step) {
    const EditRow& row = data_.EditBuffer[static_cast<std::size_t>(step)];
    list_sequence_.AddItem(QString::fromStdString(TableLine(row, decimal_point_)));
  }
}

bool SequenceData::BufferToData() {
  if (!StoreEditBuffer(data_, list_sequence_.ListCount())) {
    message_box_.Show(QStringLiteral("Sequence %1 is not stored: a position or a duration of it is "
                                     "out of range. The sequence table keeps what it had.")
                          .arg(data_.CurSeq),
                      kProgramTitle);
    return false;
  }
  OffsetCalc();
  return true;
}

void SequenceData::OffsetCalc() {
  ComputeFlashFigures(data_);
  label_byte_.setText(QStringLiteral("%1 bytes").arg(data_.TotalBytes));
  if (data_.TotalBytes > kFlashCapacity) message_box_.Show(CapacityText(), kProgramTitle);
}

void SequenceData::ResetBreakPoints() {
  ClearBreakFlags(data_);
  for (int line = 0; line < list_sequence_.ListCount(); ++line) {
    const std::string text = list_sequence_.List(line).toStdString();
    if (HasBreakMark(text)) {
      list_sequence_.SetList(line, QString::fromStdString(WithoutBreakMarks(text)));
    }
  }
}

void SequenceData::RebuildEditBuffer() {
  const int lines = std::min(list_sequence_.ListCount(), kSteps);
  for (int line = 0; line < lines; ++line) {
    ReadStepLine(list_sequence_.List(line).toStdString(), decimal_point_,
                 data_.EditBuffer[static_cast<std::size_t>(line)]);
  }
}

void SequenceData::MatchBreakFlags() {
  ClearBreakFlags(data_);
  const int lines = std::min(list_sequence_.ListCount(), kSteps);
  for (int line = 0; line < lines; ++line) {
    if (HasBreakMark(list_sequence_.List(line).toStdString())) {
      data_.EditBuffer[static_cast<std::size_t>(line)][kBreakColumn] = 1;
    }
  }
}

QString CapacityText() {
  return QStringLiteral("Out of memory: too many steps. Max # of bytes is %1!").arg(kFlashCapacity);
}

QString TooManyLinesText() {
  return QStringLiteral("Impossible add other lines, max # of lines is %1!").arg(kSteps);
}

QString StepCaption(int line) {
  return QStringLiteral("Step N\u00B0 %1").arg(line);
}

QString NoStepCaption() {
  return QStringLiteral("Step N\u00B0 ...");
}

QString SequenceCaption(int sequence) {
  return QStringLiteral("Sequence N\u00B0 %1").arg(sequence);
}

}  // namespace pelmora
