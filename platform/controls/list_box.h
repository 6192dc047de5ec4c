// A list of text lines, at most one of them selected. The tab-separated fields of a line are drawn
// in columns. What the toolkit's list lacks: signals for a press and a release on a line, dragging
// a line to another place, whole rows only, and pages that turn when the program selects a line.
//
// Lines are scrolled by the wheel, by the keys that move the selection, by a drag that is held
// above or below the list, and by a selection that the program makes; but by nothing else while a
// mouse button is held, so that the line under the pointer stays there.
#pragma once

#include <QListWidget>
#include <QTimer>
#include <functional>
#include <vector>

#include "platform/controls/list_gesture.h"
#include "platform/look/list_column.h"

namespace platform {

class ListBox : public QListWidget {
  Q_OBJECT
 public:
  explicit ListBox(QWidget* parent = nullptr);

  int ListCount() const { return count(); }
  // The text of a line. Where there is no such line it is empty, and setting it does nothing.
  QString List(int index) const;
  void SetList(int index, const QString& text);
  void AddItem(const QString& text) { InsertItem(count(), text); }  // at the end
  // Inserts a line before line `index`, 0 .. ListCount; the selection stays on its line.
  void InsertItem(int index, const QString& text);
  void RemoveItem(int index);  // nothing is selected if it was the selected line
  void Clear() {
    LinesChange();
    clear();
  }

  // The selected line, -1 when none is.
  int ListIndex() const;
  // Selects a line and turns to the page that shows it, at once or, while a mouse button is held,
  // when it is released; -1 (or any index that is no line) selects none.
  void SetListIndex(int index);

  // The columns for the fields of a line, left to right; an empty field draws nothing and fields
  // beyond the last column are not drawn. The line's index stands at its right end.
  void SetColumns(std::vector<ListColumn> columns);
  // Whether a playback that selects one line after the other has halted: the selected line is then
  // drawn in amber. Off at the start.
  void SetHalted(bool halted);
  bool Halted() const { return delegate_->Halted(); }

  // What assistive technology is told of a line, by its index and text, and whether playback is
  // halted there; asked whenever it reads one. Without it the line's text.
  std::function<QString(int line, const QString& text, bool halted)> Spoken;

  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  // The toolkit selects a line that begins with the letters that are typed.
  void keyboardSearch(const QString&) override {}

 signals:
  // A mouse button (any) was pressed on the list; further buttons pressed before it is released
  // belong to the same gesture. The line under the pointer has been selected;
  // `line` is its index, -1 when the pointer is on no line (the selection then stays).
  void MouseDown(int line);
  // The last button was released. `line` has just been selected again, so that a selection made by
  // the program meanwhile does not count: after a drag the line under the pointer, after a click
  // the line of the press. It is -1 when the press hit no line or lines have been inserted or
  // removed since. Does not come when Escape gave the gesture up or the list lost the pointer: it
  // is hidden or disabled, or a menu or another window comes up.
  void MouseUp(int line);
  // A double click on a line, which has been selected; comes after its `MouseDown`. Or Enter was
  // pressed with a line selected; not again while it is held.
  void DblClick();
  // Ctrl+Up or Ctrl+Down was pressed: the selected line `from` shall move to its neighbour's place
  // `to`, as if dragged there. Nothing has moved yet.
  void MoveLine(int from, int to);
  // Delete was pressed with a line selected; not again while it is held. Nothing has gone yet.
  void RemoveLine();
  // A right click without a drag, after its `MouseUp`; or the menu key, while no button is held.
  // `global` is where a menu should open: at the pointer, or below the selected line.
  void ContextMenuWanted(QPoint global);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  bool event(QEvent* event) override;

 private:
  void FitRows();
  int LineAt(int y) const;
  int NearestLine(int y) const;
  int TopLine() const;
  void BringIntoView(int line);
  void FollowPointer(int y);
  void ShowDrag();
  void HideDrag();
  void ScrollOn();
  void LinesChange();
  void Announce(int line);
  void EndGesture();
  bool TakeKey(const QKeyEvent& event);

  ColumnDelegate* delegate_;
  ListGesture gesture_;
  QTimer scroll_timer_;
  int rows_ = 1;         // as many lines as are in view
  int pressed_top_ = 0;  // the first line in view when a button last went down
};

}  // namespace platform
