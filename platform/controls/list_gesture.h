// One gesture of the pointer on a list box: from the first button that goes down to the last one
// that comes up. It knows lines and heights only; the list box scrolls, selects and draws.
#pragma once

#include <QApplication>
#include <cstdlib>

namespace platform {

class ListGesture {
 public:
  // A button went down on `line` (-1: on no line) at height `y` in the lines' area, in pixels.
  void Begin(int line, int y, Qt::MouseButton button) {
    phase_ = line >= 0 ? Phase::kPressed : Phase::kBesideLines;
    from_ = to_ = line;
    press_y_ = y_ = y;
    button_ = button;
  }
  // The pointer stands at `y` now and `line` is nearest to it; `outside` when it is above or below
  // the list. A move within the line of the press, or one that is shorter than the toolkit's
  // distance for a drag, still belongs to a click. True while it is a drag.
  bool Follow(int line, int y, bool outside) {
    y_ = y;
    const bool moved = std::abs(y - press_y_) >= QApplication::startDragDistance();
    if (Dragging() || (moved && (line != from_ || outside))) DragOn(line);
    return Dragging();
  }
  // The lines have moved under the pointer that stays where it is.
  void DragOn(int line) {
    phase_ = Phase::kDragging;
    to_ = line;
  }
  // Lines have been inserted or removed: the one that was pressed may be gone. A gesture on a line
  // goes on without one.
  void LoseLine() {
    phase_ = Phase::kBesideLines;
    from_ = to_ = -1;
  }
  void End() { *this = {}; }

  bool Running() const { return phase_ != Phase::kNone; }
  bool OnLine() const { return phase_ == Phase::kPressed || phase_ == Phase::kDragging; }
  bool Dragging() const { return phase_ == Phase::kDragging; }
  int From() const { return from_; }  // the line of the press, -1 when there is none
  int To() const { return to_; }      // where the drag stands; without one the line of the press
  int PointerY() const { return y_; }
  Qt::MouseButton Button() const { return button_; }  // the first one

 private:
  enum class Phase { kNone, kBesideLines, kPressed, kDragging };

  Phase phase_ = Phase::kNone;
  int from_ = -1;
  int to_ = -1;
  int press_y_ = 0;
  int y_ = 0;
  Qt::MouseButton button_ = Qt::NoButton;
};

}  // namespace platform
