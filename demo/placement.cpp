#include "demo/placement.h"

#include <algorithm>

namespace demo {

std::optional<Placement> PlacesBeside(const QRect& screen, QSize program, QSize board) {
  const int together = program.width() + board.width();
  if (together > screen.width()) return std::nullopt;
  const QPoint place(screen.left() + (screen.width() - together) / 2,
                     screen.top() + std::max(0, screen.height() - program.height()) / 2);
  return Placement{place, place + QPoint(program.width(), 0)};
}

}  // namespace demo
