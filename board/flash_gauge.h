#pragma once

#include <QFrame>
#include <array>

class QLabel;
class QProgressBar;

namespace simboard {

// How full the flash is, and which of the sixteen sequences it holds with how many steps each.
class FlashGauge : public QFrame {
 public:
  explicit FlashGauge(QWidget* parent = nullptr);
  // playing_sequence is marked; -1 marks none.
  void Show(int bytes, const std::array<int, 16>& sequence_steps, int playing_sequence);

 private:
  void ShowSequence(std::size_t sequence, int steps, bool playing);

  QLabel* fill_text_;
  QProgressBar* fill_;
  std::array<QLabel*, 16> sequences_{};
};

}  // namespace simboard
