#include "platform/controls/list_gesture.h"

#include <QApplication>
#include <cstdlib>

namespace platform {

void ListGesture::Begin(int line, int y, Qt::MouseButton button) {
  phase_ = line >= 0 ? Phase::kPressed : Phase::kBesideLines;
  from_ = to_ = line;
  press_y_ = y_ = y;
  button_ = button;
}

bool ListGesture::Follow(int line, int y, bool outside) {
  y_ = y;
  const bool moved = std::abs(y - press_y_) >= QApplication::startDragDistance();
  if (Dragging() || (moved && (line != from_ || outside))) DragOn(line);
  return Dragging();
}

void ListGesture::DragOn(int line) {
  phase_ = Phase::kDragging;
  to_ = line;
}

void ListGesture::LoseLine() {
  phase_ = Phase::kBesideLines;
  from_ = to_ = -1;
}

}  // namespace platform
