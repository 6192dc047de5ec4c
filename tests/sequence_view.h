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

inline SequenceView ViewOf(const ProgramWithBoard& program) {
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

using Steps = std::vector<std::vector<EditRow>>;

// The 16 sequences as the table holds them.
inline Steps StoredSteps(const SequenceView& view) {
  Steps stored(kSequences);
  for (std::size_t i = 0; i < kSequences; ++i) {
    const SequenceRecord& record = view.data->SeqTable[i];
    stored[i].resize(std::size_t(view.data->SeqSteps[i]));
    for (std::size_t step = 0; step < stored[i].size(); ++step) {
      std::ranges::copy(record.Position[step], stored[i][step].begin());
      stored[i][step][kDurationColumn] = record.Duration[step];
    }
  }
  return stored;
}

// The 16 sequences as the operator has them before him: the current one as its list stands.
inline Steps Contents(const SequenceView& view) {
  Steps contents = StoredSteps(view);
  const auto& rows = view.data->EditBuffer;
  contents[view.data->CurSeq].assign(rows.begin(), rows.begin() + view.lines.size());
  for (EditRow& row : contents[view.data->CurSeq]) row[kBreakColumn] = 0;
  return contents;
}

// Whether something has changed that can be undone.
inline bool Changed(const SequenceView& before, const SequenceView& after) {
  QStringList lines[] = {before.lines, after.lines};
  for (QStringList& list : lines) list.replaceInStrings("\tBREAK!", "");
  return before.data->CurSeq != after.data->CurSeq || lines[0] != lines[1] ||
         StoredSteps(before) != StoredSteps(after) ||
         before.data->SeqOffset != after.data->SeqOffset ||
         before.data->TotalBytes != after.data->TotalBytes;
}

}  // namespace pelmora
