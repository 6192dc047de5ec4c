// The moves between the layers of sequence data, with the controls that show them: the sequence
// table, the edit buffer and the step list. The list is the master copy while editing.
#pragma once

#include <QLabel>
#include <string>

#include "core/declaration.h"
#include "platform/list_box.h"
#include "platform/message_box.h"

namespace pelmora {

class SequenceData {
 public:
  // `decimal_point` (UTF-8) is the one of the user's locale; angle texts are built and read with
  // it.
  SequenceData(Declaration& data, platform::ListBox& list_sequence, QLabel& label_byte,
               platform::MessageBox& message_box, std::string decimal_point);

  // Empties the whole table. `CurSeq`, the edit buffer, the list and the labels stay.
  void DataInit();

  // Loads `CurSeq` from the table into the edit buffer and appends its lines to the list, which the
  // caller has cleared.
  void DataToBuffer();

  // Stores the edit buffer as `CurSeq`, with as many steps as the list has lines, and runs
  // `OffsetCalc`. False when a value does not fit the table: a message says so, nothing of the
  // sequence is stored, and the caller must not throw the list away.
  bool BufferToData();

  // Recomputes the flash figures, shows the total in `LabelByte`, and warns (every time) when the
  // board's capacity is exceeded.
  void OffsetCalc();

  // Clears every breakpoint of the current sequence, flags and marks.
  void ResetBreakPoints();

  // Reads every line back into the edit buffer; the breakpoint column stays.
  void RebuildEditBuffer();

  // Sets each row's breakpoint flag to what its line's mark says; rows without a line get none.
  void MatchBreakFlags();

  const std::string& DecimalPoint() const { return decimal_point_; }

 private:
  Declaration& data_;
  platform::ListBox& list_sequence_;
  QLabel& label_byte_;
  platform::MessageBox& message_box_;
  const std::string decimal_point_;
};

// The warning that the sequences exceed the board's capacity.
QString CapacityText();
// "Impossible add other lines, ...", shown when a list would grow beyond 256 lines.
QString TooManyLinesText();

// "Step N° " followed by the list index `line`.
QString StepCaption(int line);
// "Step N° ...": no step is shown.
QString NoStepCaption();
// "Sequence N° " followed by the number.
QString SequenceCaption(int sequence);

}  // namespace pelmora
