#include "edit/step_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <variant>
#include <vector>

#include "core/step_text.h"
#include "link/serial_port.h"

namespace pelmora {

void StepClipboard::Copy_Click() {
  if (edited_.ListIndex() >= 0) Put(edited_.ListIndex(), 1);
}

void StepClipboard::CopySequence_Click() {
  if (edited_.ListCount() > 0) Put(0, edited_.ListCount());
}

void StepClipboard::Cut_Click() {
  if (edited_.ListIndex() < 0) return;
  Copy_Click();
  edited_.Remove("Cut");
}

void StepClipboard::Paste_Click() {
  const std::string text = QGuiApplication::clipboard()->text().toStdString();
  const auto read = ReadStepText(text, edited_.DecimalPoint());
  if (const auto* fault = std::get_if<StepTextFault>(&read)) {
    message_box_.Show(QStringLiteral("Nothing is pasted. Line %1 is no step: %2.")
                          .arg(fault->line)
                          .arg(QString::fromStdString(fault->reason)),
                      kProgramTitle);
    return;
  }
  const auto& steps = std::get<std::vector<EditRow>>(read);
  if (steps.empty()) return;
  if (steps.size() > static_cast<std::size_t>(kSteps - edited_.ListCount())) {
    message_box_.Show(TooManyLinesText(), kProgramTitle);
    return;
  }
  edited_.Insert(steps, "Paste");
}

void StepClipboard::Put(int first_line, int lines) {
  std::vector<EditRow> steps;
  for (int line = first_line; line < first_line + lines; ++line) steps.push_back(edited_.Row(line));
  QGuiApplication::clipboard()->setText(
      QString::fromStdString(FormatStepText(steps, edited_.DecimalPoint())));
}

}  // namespace pelmora
