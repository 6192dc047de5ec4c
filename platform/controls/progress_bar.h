// A progress bar that shows the nearest value where the toolkit's ignores one outside its range or,
// with a maximum of 0, becomes a busy indicator.
#pragma once

#include <QLocale>
#include <QProgressBar>
#include <algorithm>

namespace platform {

class ProgressBar : public QProgressBar {
  Q_OBJECT
 public:
  explicit ProgressBar(QWidget* parent = nullptr) : QProgressBar(parent) {
    setFormat(QStringLiteral("%p %"));
    setLocale(QLocale::c());  // plain digits, as everywhere in the window
    setValue(0);
  }

  // The scale 0 .. `maximum`; a maximum below 1 counts as 1. A value above it is cut.
  void SetScaleMaximum(int maximum) {
    const int shown = value();
    setMaximum(std::max(1, maximum));
    SetValue(shown);
  }

  // Shows the value, cut to the scale.
  void SetValue(int value) { setValue(std::clamp(value, minimum(), maximum())); }
};

}  // namespace platform
