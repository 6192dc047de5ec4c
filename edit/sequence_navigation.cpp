#include "edit/sequence_navigation.h"

namespace pelmora {

SequenceNavigation::SequenceNavigation(Declaration& data, SequenceData& sequence_data,
                                       platform::ListBox& list_sequence,
                                       const SequenceLabels& labels)
    : data_(data), sequence_data_(sequence_data), list_sequence_(list_sequence), labels_(labels) {}

void SequenceNavigation::Go(int direction) {
  const int wanted = data_.CurSeq + direction;
  // A sequence that could not be stored stays in the list: leaving it would lose it.
  if (wanted >= 0 && wanted < kSequences && sequence_data_.BufferToData()) {
    list_sequence_.Clear();
    sequence_data_.ResetBreakPoints();
    data_.CurSeq = static_cast<std::uint8_t>(wanted);
    sequence_data_.DataToBuffer();
  }
  labels_.LabelSeq->setText(SequenceCaption(data_.CurSeq));
  labels_.LabelSeqEmu->setText(SequenceCaption(data_.CurSeq));
  labels_.LabelStep->setText(NoStepCaption());
  ShowOffset(labels_, data_);
}

}  // namespace pelmora
