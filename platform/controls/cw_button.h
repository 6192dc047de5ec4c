// A two-state switch that looks On or Off at a glance, or On and waiting.
#pragma once

#include "platform/controls/push_button.h"

namespace platform {

class CWButton : public PushButton {
  Q_OBJECT
 public:
  explicit CWButton(const QString& caption, QWidget* parent = nullptr);

  // Whether what the switch has turned on waits for the operator. It changes the look of a switch
  // that is On and nothing else.
  void SetWaiting(bool waiting);
  bool Waiting() const { return waiting_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool waiting_ = false;
};

}  // namespace platform
