// Where the demo's two windows stand.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>

namespace demo {

struct Placement {
  QPoint program;
  QPoint board;
};

// The board's window beside the program's, the frames level and the two together in the middle of
// the screen. Nothing when the screen has no room for that: each then stays where it is.
std::optional<Placement> PlacesBeside(const QRect& screen, QSize program, QSize board);

}  // namespace demo
