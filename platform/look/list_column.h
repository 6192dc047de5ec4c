// The columns of a list box and the drawing of its lines.
#pragma once

#include <QFontMetrics>
#include <QStyledItemDelegate>
#include <utility>
#include <vector>

namespace platform {

// Where a field of a line is drawn, in pixels from the list's left edge (frame included).
struct ListColumn {
  int left;
  int width;
  Qt::Alignment alignment;
  bool strong = false;  // bold and in a colour of its own, not to be overlooked
  // For a column of numbers its widest text, which is drawn in the middle. The numbers before the
  // decimal separator end, and what follows begins, where it does in this text; a field that is the
  // same in the line above is drawn paler.
  QString widest_number = {};
};

// Draws a line of tab-separated fields, each in its column. Blanks at the ends of a field are not
// drawn, and several in a row are drawn as one, so that equal fields look the same whoever wrote
// them.
class ColumnDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  // The lefts here count from the left edge of the lines, without the frame.
  void SetColumns(std::vector<ListColumn> columns) { columns_ = std::move(columns); }
  // Where the line's index, which is drawn behind the fields, ends.
  void SetNumberEdge(int right) { number_edge_ = right; }
  // See LineState: the line being dragged, -1 when none is; whether the selected one is halted.
  void SetDragged(int line) { dragged_ = line; }
  // False when it is so already.
  bool SetHalted(bool halted) { return std::exchange(halted_, halted) != halted; }
  bool Halted() const { return halted_; }

  // The height that a line needs at least, in pixels: 2 above and below its text.
  static int LeastHeight(const QFontMetrics& font) { return font.height() + 4; }
  // The height of every line, in pixels.
  void SetRowHeight(int height) { row_height_ = height; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {0, row_height_};
  }

 private:
  std::vector<ListColumn> columns_;
  int row_height_ = 1;
  int number_edge_ = 0;
  int dragged_ = -1;
  bool halted_ = false;
};

}  // namespace platform
