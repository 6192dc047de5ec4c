// The whole state of the program, what an operator sees and what is behind it, and the difference
// of two such states in a few words.
#pragma once

#include <QString>
#include <QStringList>
#include <map>

#include "rig/program_with_board.h"

namespace rig {

struct ProgramState {
  // "LabelStep" is "Step N° 3", "Command1 enabled?" is "disabled"; of every control, menu item and
  // window that has a name, and of the data behind them.
  std::map<QString, QString> values;
  QStringList lines;  // of the step list, in short and without breakpoint marks
};

// A line of the step list in short, without its breakpoint mark: "1 °|0 °*11|100 ms".
QString InShort(QString line);

// What the program shows and holds now.
ProgramState StateOf(const ProgramWithBoard& program);

// What has changed and to what, an entry each: "LabelStep: Step N° 3", "Command1 enabled",
// "-1 1 °|0 °*11|100 ms" for a line that has gone and "+4 ..." for one that has come,
// "selected: 2", "Ch3: 140" for a fader with its two fields, "sequence 7: 130,128*11:100
// 150*12:200" or "sequence 7: as listed", "flash: 42 bytes 0:2@0 7:1@28" for counts and offsets.
// Equal things in a row are given once, with their number.
QStringList Difference(const ProgramState& before, const ProgramState& after);

}  // namespace rig
