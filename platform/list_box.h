// A list of text lines, at most one of them selected. The tab-separated fields of a line are drawn
// in columns. The selected line is always scrolled into view.
#pragma once

#include <QBasicTimer>
#include <QListWidget>
#include <QString>
#include <vector>

#include "platform/list_column.h"

namespace platform {

class ColumnDelegate;

class ListBox : public QListWidget {
  Q_OBJECT
 public:
  explicit ListBox(QWidget* parent = nullptr);

  int ListCount() const { return count(); }
  QString List(int index) const;                 // the text of a line, 0 .. ListCount - 1
  void SetList(int index, const QString& text);  // replaces a text in place; selection stays
  void AddItem(const QString& text);             // at the end
  void InsertItem(int index,
                  const QString& text);  // 0 .. ListCount; the selection stays on its line
  void RemoveItem(int index);            // nothing is selected if it was the selected line
  void Clear();

  // The selected line, -1 when none is.
  int ListIndex() const;
  // Selects a line and scrolls it into view; -1 (or any index that is no line) selects none.
  void SetListIndex(int index);

  // The columns for the fields of a line, left to right; an empty field draws nothing and fields
  // beyond the last column are not drawn.
  void SetColumns(std::vector<ListColumn> columns);

 signals:
  // A mouse button (any) was pressed on the list; further buttons pressed before it is released
  // belong to the same gesture. The line under the pointer has been selected;
  // `line` is its index, -1 when the pointer is on no line (the selection then stays).
  void MouseDown(int line);
  // The last button was released. While one was held, the selection followed the pointer
  // (scrolling when it leaves the list), and the line under the pointer has just been selected
  // again, so that a selection made by the program meanwhile does not count. `line` is -1 when the
  // press hit no line. Does not come when the list loses the pointer meanwhile: it is hidden or
  // disabled, or another window comes up.
  void MouseUp(int line);
  // A double click on a line, which has been selected; comes after its `MouseDown`.
  void DblClick();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  enum class Gesture { kNone, kOnLine, kBesideLines };

  int LineAt(int y) const;
  int NearestLine(int y) const;
  void Press(QMouseEvent* event);
  void FollowPointer(int y);
  void EndGesture();

  ColumnDelegate* delegate_;
  Gesture gesture_ = Gesture::kNone;
  int pointer_y_ = 0;
  QBasicTimer scroll_timer_;
};

}  // namespace platform
