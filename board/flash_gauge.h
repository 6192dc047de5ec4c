#pragma once

#include <QWidget>
#include <array>

namespace simboard {

// How full the flash is, and which of the sixteen sequences it holds with how many steps each.
class FlashGauge : public QWidget {
 public:
  explicit FlashGauge(QWidget* parent = nullptr);
  // playing_sequence is marked; -1 marks none.
  void Show(int bytes, const std::array<int, 16>& sequence_steps, int playing_sequence);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintSequence(QPainter& painter, std::size_t sequence, const QRectF& cell) const;

  int bytes_ = -1;
  std::array<int, 16> sequence_steps_{};
  int playing_sequence_ = -1;
  QString fill_text_;
};

}  // namespace simboard
