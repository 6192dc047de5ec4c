// A panel that groups controls: a light card with an optional caption on its frame.
#pragma once

#include <QGroupBox>

namespace platform {

class Panel : public QGroupBox {
  Q_OBJECT
 public:
  using QGroupBox::QGroupBox;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace platform
