// The window "Movement": the lanes, a scroll bar and a line that says what is shown.
#pragma once

#include <QLabel>
#include <QRect>
#include <QScrollBar>
#include <QWidget>

#include "movement/movement_canvas.h"

namespace pelmora {

// Where a window that shall stand beside another opens, both without their frames: to its right or
// left where the usable part of the screen has room, otherwise over it.
QRect PlaceBeside(const QRect& other, const QRect& screen);

class MovementWindow : public QWidget {
  Q_OBJECT
 public:
  // `main_window` is the parent: the window stays before it, and can't be used while it is locked.
  // It is hidden at first.
  MovementWindow(const MovementParts& parts, QWidget& main_window);
  ~MovementWindow() override;

  // Shows the window, the first time beside the main window, and gives it the keyboard.
  void Open();

  // See MovementCanvas.
  void PlaybackChanged() { canvas_->PlaybackChanged(); }

 signals:
  // The window has been shown or hidden, by whomever; a minimised one counts as hidden.
  void Shown(bool shown);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void ShowTexts();
  void ShowTime();

  EditedSequence& edited_;
  QWidget& main_window_;
  MovementCanvas* canvas_;
  QScrollBar* scroll_bar_;
  QLabel* total_;
  QLabel* state_;
  bool placed_ = false;
};

}  // namespace pelmora
