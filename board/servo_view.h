#pragma once

#include <QWidget>
#include <cstdint>

namespace simboard {

// One servo from above: its horn stands at the angle of its position, 128 straight up, higher
// positions to the right. Channel and angle are written beneath.
class ServoView : public QWidget {
 public:
  explicit ServoView(int channel, QWidget* parent = nullptr);
  void Show(std::uint8_t position);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintBody(QPainter& painter) const;
  void PaintHorn(QPainter& painter) const;

  QString name_;
  QString angle_;
  std::uint8_t position_ = 128;
};

}  // namespace simboard
