// Everything that undo has to bring back, as it can be seen from outside.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>

#include "tests/window_fixture.h"

namespace pelmora {

struct SequenceView {
  std::shared_ptr<const Declaration> data;
  QStringList lines;
  int selected;
  QStringList labels;
};

inline SequenceView Look(const ProgramWithBoard& program) {
  SequenceView view{
      std::make_shared<const Declaration>(program.Data()), program.Lines(), program.Selected(), {}};
  for (const char* label :
       {"LabelSeq", "LabelSeqEmu", "LabelStep", "LabelByte", "CommandOffset", "LabelOffset"}) {
    view.labels.append(program.hands->Read(label));
  }
  return view;
}

// What differs, in words; empty when nothing does.
inline std::string Difference(const SequenceView& now, const SequenceView& wanted) {
  const Declaration& a = *now.data;
  const Declaration& b = *wanted.data;
  if (a.CurSeq != b.CurSeq) return "the current sequence";
  if (a.SeqTable != b.SeqTable || a.SeqSteps != b.SeqSteps) return "the sequence table";
  if (a.SeqOffset != b.SeqOffset || a.TotalBytes != b.TotalBytes) return "the flash figures";
  if (a.EditBuffer != b.EditBuffer) return "the edit buffer";
  if (now.lines != wanted.lines || now.selected != wanted.selected) return "the list";
  return now.labels != wanted.labels ? "the labels" : "";
}

// The 16 sequences as the operator has them before him: the current one as its list stands.
inline std::vector<std::vector<EditRow>> Contents(const SequenceView& view) {
  std::vector<std::vector<EditRow>> contents(kSequences);
  for (std::size_t i = 0; i < kSequences; ++i) {
    const SequenceRecord& stored = view.data->SeqTable[i];
    const bool current = i == view.data->CurSeq;
    contents[i].resize(std::size_t(current ? view.lines.size() : view.data->SeqSteps[i]));
    for (std::size_t step = 0; step < contents[i].size(); ++step) {
      EditRow& row = contents[i][step] = view.data->EditBuffer[step];
      row[kBreakColumn] = 0;
      if (current) continue;
      std::ranges::copy(stored.Position[step], row.begin());
      row[kDurationColumn] = stored.Duration[step];
    }
  }
  return contents;
}

// Whether the operator would say that something has changed that can be undone.
inline bool Changed(const SequenceView& before, const SequenceView& after) {
  QStringList lines[] = {before.lines, after.lines};
  for (QStringList& list : lines) list.replaceInStrings("\tBREAK!", "");
  return before.data->CurSeq != after.data->CurSeq || lines[0] != lines[1] ||
         Contents(before) != Contents(after);
}

}  // namespace pelmora
