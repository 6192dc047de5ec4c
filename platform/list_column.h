// The columns of a list box and the drawing of its lines.
#pragma once

#include <QStyledItemDelegate>
#include <vector>

namespace platform {

// Where a field of a line is drawn, in pixels from the list's left edge (frame included).
struct ListColumn {
  int left;
  int width;
  Qt::Alignment alignment;
};

// Draws a line of tab-separated fields, each in its column; without columns the whole line as it
// is.
class ColumnDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  // The lefts here count from the left edge of the lines, without the frame.
  void SetColumns(std::vector<ListColumn> columns) { columns_ = std::move(columns); }

  // The height that a line needs at least, in pixels.
  static int LeastHeight(const QFontMetrics& font);
  // The height of every line, in pixels. False when it is the same already.
  bool SetRowHeight(int height);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  std::vector<ListColumn> columns_;
  int row_height_ = 1;
};

}  // namespace platform
