// The window that shows the simulated board at work.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <array>

#include "board/simulated_board.h"

class QLabel;
class QListWidget;
class QProgressBar;
class QRadioButton;

namespace simboard {

class FlashGauge;
class ServoView;

// Twelve servos seen from above, the PC control lamp, what the board is doing, its flash and its
// last commands, newest at the bottom. The window only looks: it changes nothing on the board.
class BoardWindow : public QWidget {
  Q_OBJECT

 public:
  // Becomes the board's listener (SimulatedBoard::SetChanged) until it is destroyed; the board must
  // outlive it. It repaints at most 30 times a second, and sleeps while the board does.
  explicit BoardWindow(SimulatedBoard& board, QWidget* parent = nullptr);
  ~BoardWindow() override;

 private:
  void BuildParts();
  void ScheduleRefresh();
  void Refresh();
  void ShowTransfer(const State& state);
  void ShowCommands(const State& state);

  SimulatedBoard& board_;
  QTimer refresh_timer_;
  QElapsedTimer since_refresh_;
  std::array<ServoView*, 12> servos_{};
  QRadioButton* pc_control_ = nullptr;  // a lamp: nobody can press it
  QLabel* activity_ = nullptr;
  QProgressBar* transfer_ = nullptr;
  FlashGauge* gauge_ = nullptr;
  QListWidget* commands_ = nullptr;
  std::deque<std::string> shown_commands_;
};

}  // namespace simboard
