#include "edit/step_fields.h"

#include <span>
#include <string>

#include "core/step_line.h"
#include "platform/controls/cw_num_edit.h"
#include "platform/controls/cw_slide.h"
#include "platform/controls/text_field.h"
#include "platform/controls/typed_number.h"

namespace pelmora {
namespace {

using platform::kBackspace;
using platform::kEnter;
using platform::kEscape;

constexpr int kMinus = '-';

constexpr int kLowestOffset = -128;
constexpr int kHighestOffset = 127;

}  // namespace

void StepFields::CWSlide1_ValueChanged(int channel, int position) {
  board_control_.SendPosition(channel, position);
  ShowPosition(channel, position);
}

void StepFields::ShowPosition(int channel, int position) {
  const auto i = static_cast<std::size_t>(channel);
  controls_.Text1[i]->setText(QString::number(position - kCentre));
  controls_.Text1[i + kChannels]->setText(
      QString::fromStdString(AngleField(position, edited_.DecimalPoint())));
}

void StepFields::Text1_KeyPress(int index, int& key) {
  if (index >= kChannels) {
    key = 0;
  } else if (key == kEnter) {
    Commit(index);
  } else if (key == kEscape) {
    ShowPosition(index, controls_.CWSlide1[static_cast<std::size_t>(index)]->value());
    key = 0;
  } else if (key != kBackspace && key != kMinus && (key < '0' || key > '9')) {
    key = 0;
  }
}

void StepFields::Text1_LostFocus(int index) {
  if (index < kChannels) Commit(index);
}

void StepFields::CommitPending() {
  for (int channel = 0; channel < kChannels; ++channel) {
    if (controls_.Text1[static_cast<std::size_t>(channel)]->isModified()) Commit(channel);
  }
}

void StepFields::Commit(int channel) {
  const auto i = static_cast<std::size_t>(channel);
  platform::CWSlide& slide = *controls_.CWSlide1[i];
  const QString typed = controls_.Text1[i]->text();
  const auto offset =
      platform::TypedNumber(typed.isEmpty() ? "0" : typed, kLowestOffset, kHighestOffset);
  if (offset) slide.setValue(*offset + kCentre);
  // A slider that stays where it is raises no event; the field must show its offset all the same
  // ("05", an empty field, a text that is no number).
  ShowPosition(channel, slide.value());
}

void StepFields::CommandUpdate_Click() {
  for (platform::CWSlide* slide : controls_.CWSlide1) slide->setValue(kCentre);
}

void StepFields::ShowSelectedStep() {
  const int line = edited_.ListIndex();
  if (line < 0) return;
  const EditRow& step = edited_.Row(line);
  for (std::size_t ch = 0; ch < kChannels; ++ch) controls_.CWSlide1[ch]->setValue(step[ch]);
  controls_.CWNumEditTimeStep->setValue(step[kDurationColumn]);
  edited_.NameStep();
}

EditRow StepFields::NewStep() {
  CommitPending();
  std::string line;
  for (const platform::TextField* angle : std::span(controls_.Text1).last<kChannels>()) {
    line += angle->text().toStdString() + '\t';
  }
  line += std::to_string(controls_.CWNumEditTimeStep->Value()) + " ms";
  return ReadStepLine(line, edited_.DecimalPoint()).value();
}

}  // namespace pelmora
