// The look of a list box: the colours of its lines and the mark of a drag. The colours are all made
// from the palette's active colours: a list that is disabled for a while is still read, and the
// toolkit's disabled colours are too pale for that.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>

namespace platform {

struct LineState {
  bool odd = false;  // every second line is striped, whatever line stands first in view
  bool selected = false;
  bool halted = false;   // counts for the selected line only
  bool dragged = false;  // the line is being dragged to another place
  bool enabled = true;
};

// Texts stand out from their ground by a contrast of 4.5 to 1 at least.
struct LineColours {
  QColor ground;
  QColor text;
  QColor strong;    // the text of a strong column
  QColor number;    // the line's number
  QColor repeated;  // a number that is the same in the line above
};

LineColours ColoursOf(const LineState& state, const QPalette& palette);

// A bar across `lines`, the area of the lines, at height `y`: a dragged line will go in there.
void DrawDropMark(QPainter& painter, const QRect& lines, int y, const QPalette& palette);

}  // namespace platform
