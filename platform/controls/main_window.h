// A main window in which the keyboard focus never goes by itself to a control that the next key
// would press. When the control that has it is disabled or hidden, the toolkit goes on to the one
// behind it in the order of Tab, or to the first one of all when the window was disabled as a
// whole.
#pragma once

#include <QMainWindow>
#include <QPointer>

namespace platform {

class MainWindow : public QMainWindow {
 public:
  // The control that has the focus at the start, and gets it when the one that has it is disabled
  // or hidden.
  void SetRestingControl(QWidget& control);

 protected:
  bool focusNextPrevChild(bool next) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* target, QEvent* event) override;

 private:
  bool Rest();

  QPointer<QWidget> resting_control_;
};

}  // namespace platform
