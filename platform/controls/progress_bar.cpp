#include "platform/controls/progress_bar.h"

#include <algorithm>

namespace platform {

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent) {
  setFormat(QStringLiteral("%p %"));
  setValue(0);
}

void ProgressBar::SetScaleMaximum(int maximum) {
  const int shown = value();
  setRange(0, std::max(1, maximum));
  SetValue(shown);
}

void ProgressBar::SetValue(int value) {
  setValue(std::clamp(value, minimum(), maximum()));
}

}  // namespace platform
