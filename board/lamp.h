#pragma once

#include <QWidget>

namespace simboard {

// A lamp with its caption, and "on" or "off" after it.
class Lamp : public QWidget {
 public:
  explicit Lamp(const QString& caption, QWidget* parent = nullptr);
  void Show(bool lit);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString caption_;
  QString state_;
  bool lit_ = false;
};

}  // namespace simboard
