#include "platform/controls/list_box.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

#include "platform/controls/lost_pointer.h"
#include "platform/look/list_look.h"

namespace platform {
namespace {

constexpr int kNumberMargin = 6;         // pixels between a line's number and the scroll bar
constexpr int kScrollMilliseconds = 60;  // per line, while a drag is held above or below the list

// The keyboard goes from the list to a menu, which takes the pointer, too.
bool GoesToMenu(const QEvent& event) {
  if (event.type() != QEvent::FocusOut) return false;
  const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
  return reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
}

// A line for which the list says what assistive technology reads out.
class Line : public QListWidgetItem {
 public:
  using QListWidgetItem::QListWidgetItem;

  QVariant data(int role) const override {
    if (role != Qt::AccessibleTextRole) return QListWidgetItem::data(role);
    const auto& list = static_cast<const ListBox&>(*listWidget());
    if (!list.Spoken) return {};
    const int line = list.row(this);
    return list.Spoken(line, text(), list.Halted() && line == list.ListIndex());
  }
};

}  // namespace

ListBox::ListBox(QWidget* parent) : QListWidget(parent), delegate_(new ColumnDelegate(this)) {
  setItemDelegate(delegate_);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setUniformItemSizes(true);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_timer_.setInterval(kScrollMilliseconds);
  scroll_timer_.setTimerType(Qt::PreciseTimer);
  connect(&scroll_timer_, &QTimer::timeout, this, &ListBox::ScrollOn);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
}

QString ListBox::List(int index) const {
  const QListWidgetItem* line = item(index);
  return line ? line->text() : QString();
}

void ListBox::SetList(int index, const QString& text) {
  QListWidgetItem* line = item(index);
  if (!line) return;
  line->setText(text);
  viewport()->update();  // the line below may repeat it
  Announce(index);
}

// The toolkit tells assistive technology that the new line has the focus, whichever control has it.
void ListBox::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  if (hasFocus()) {
    QListWidget::currentChanged(current, previous);
  } else {
    // What the list adds to this is that very announcement.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::currentChanged(current, previous);
  }
}

// Tells assistive technology that a line reads differently now.
void ListBox::Announce(int line) {
  if (line < 0) return;
  QAccessibleEvent event(this, QAccessible::NameChanged);
  event.setChild(line);
  QAccessible::updateAccessibility(&event);
}

void ListBox::InsertItem(int index, const QString& text) {
  LinesChange();
  insertItem(index, new Line(text));
}

void ListBox::RemoveItem(int index) {
  LinesChange();
  // The toolkit would select a neighbour of the line that goes.
  const int selected = ListIndex();
  if (selected == index || selected < 0) SetListIndex(-1);
  delete takeItem(index);
}

int ListBox::ListIndex() const {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return selected.isEmpty() ? -1 : selected.constFirst().row();
}

void ListBox::SetListIndex(int index) {
  if (index < 0 || index >= count()) {
    selectionModel()->clear();
    return;
  }
  BringIntoView(index);
  setCurrentRow(index, QItemSelectionModel::ClearAndSelect);
}

void ListBox::SetColumns(std::vector<ListColumn> columns) {
  for (ListColumn& column : columns) column.left -= frameWidth();
  delegate_->SetColumns(std::move(columns));
  viewport()->update();
}

void ListBox::SetHalted(bool halted) {
  if (!delegate_->SetHalted(halted)) return;
  viewport()->update();
  Announce(ListIndex());
}

// The lines share the list's height, so that none is cut at the bottom. What the division leaves
// over goes above and below them.
void ListBox::FitRows() {
  const int space = height() - 2 * frameWidth();
  rows_ = std::max(1, space / delegate_->LeastHeight(fontMetrics()));
  const int rest = space % rows_;
  setViewportMargins(0, rest / 2, 0, rest - rest / 2);
  delegate_->SetRowHeight(space / rows_);
  scheduleDelayedItemsLayout();
}

void ListBox::resizeEvent(QResizeEvent* event) {
  FitRows();
  // The numbers keep clear of the scroll bar, also while it is hidden.
  const int scroll_bar = verticalScrollBar()->sizeHint().width();
  delegate_->SetNumberEdge(width() - 2 * frameWidth() - scroll_bar - kNumberMargin);
  QListWidget::resizeEvent(event);
}

// The toolkit scrolls to whatever becomes the current line.
void ListBox::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (!gesture_.Running()) QListWidget::scrollTo(index, hint);
}

// Turns the page when the line is on another one. The line comes to stand near the edge that it
// came over, with the rest of the new page before it.
void ListBox::BringIntoView(int line) {
  if (gesture_.Running() || line < 0) return;
  executeDelayedItemsLayout();
  const int top = TopLine();
  if (line >= top && line < top + rows_) return;
  int turned = line < top ? line - rows_ + 2 : line - 1;
  turned -= (turned - top) % 2;  // the stripes stay where they are
  verticalScrollBar()->setValue(std::clamp(turned, line - rows_ + 1, line));
}

int ListBox::TopLine() const {
  return verticalScrollBar()->value();
}

int ListBox::LineAt(int y) const {
  return indexAt({viewport()->width() / 2, y}).row();
}

int ListBox::NearestLine(int y) const {
  const int line = LineAt(std::clamp(y, 0, viewport()->height() - 1));
  return line >= 0 ? line : count() - 1;
}

void ListBox::mousePressEvent(QMouseEvent* event) {
  event->accept();
  const bool first_button = event->buttons() == Qt::MouseButtons(event->button());
  if (gesture_.Running() && !first_button) return;
  EndGesture();  // its release may have been lost
  const int y = event->position().toPoint().y();
  const int line = LineAt(y);
  gesture_.Begin(line, y, event->button());
  pressed_top_ = TopLine();
  if (line >= 0) SetListIndex(line);
  emit MouseDown(line);
}

void ListBox::mouseDoubleClickEvent(QMouseEvent* event) {
  // When a page was turned since the first click, the second one hits a line that was not meant.
  const bool same_page = TopLine() == pressed_top_;
  mousePressEvent(event);
  if (event->button() == Qt::LeftButton && gesture_.OnLine() && same_page) emit DblClick();
}

void ListBox::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) {
    EndGesture();
  } else {
    FollowPointer(event->position().toPoint().y());
  }
}

void ListBox::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (!gesture_.Running() || event->buttons() != Qt::NoButton) return;
  const int y = event->position().toPoint().y();
  FollowPointer(y);
  const int line = gesture_.To();
  if (line >= 0) SetListIndex(line);
  const bool right_click = gesture_.Button() == Qt::RightButton && !gesture_.Dragging() &&
                           viewport()->rect().contains(event->position().toPoint()) &&
                           LineAt(y) == gesture_.From();
  EndGesture();
  emit MouseUp(line);
  if (right_click) emit ContextMenuWanted(event->globalPosition().toPoint());
}

void ListBox::FollowPointer(int y) {
  if (!gesture_.OnLine()) return;
  const bool outside = y < 0 || y >= viewport()->height();
  if (!gesture_.Follow(NearestLine(y), y, outside)) return;
  ShowDrag();
  if (!outside) {
    scroll_timer_.stop();
  } else if (!scroll_timer_.isActive()) {
    scroll_timer_.start();
  }
}

void ListBox::ShowDrag() {
  SetListIndex(gesture_.To());
  delegate_->SetDragged(gesture_.From());
  viewport()->setCursor(Qt::ClosedHandCursor);
  viewport()->update();
}

void ListBox::HideDrag() {
  scroll_timer_.stop();
  delegate_->SetDragged(-1);
  viewport()->unsetCursor();
  viewport()->update();
}

void ListBox::paintEvent(QPaintEvent* event) {
  QListWidget::paintEvent(event);
  if (!gesture_.Dragging() || gesture_.To() == gesture_.From()) return;
  const QRect line = visualItemRect(item(gesture_.To()));
  const int between = gesture_.To() < gesture_.From() ? line.top() : line.bottom() + 1;
  QPainter painter(viewport());
  DrawDropMark(painter, viewport()->rect(), between, palette());
}

bool ListBox::event(QEvent* event) {
  const QEvent::Type type = event->type();
  // A list that is hidden, or behind another window or a menu, may never get the release.
  if (TakesPointer(*event, *this) || type == QEvent::Hide || GoesToMenu(*event) ||
      (type == QEvent::ActivationChange && !isActiveWindow())) {
    // A line that was being dragged stays selected where it is.
    if (gesture_.Dragging()) SetListIndex(gesture_.From());
    EndGesture();
  }
  if (type == QEvent::FontChange) FitRows();
  // The toolkit paints the lines anew and not the frame, which shows the focus of an empty list.
  if (type == QEvent::FocusIn || type == QEvent::FocusOut) update();
  return QListWidget::event(event);
}

void ListBox::ScrollOn() {
  const int y = gesture_.PointerY();
  verticalScrollBar()->setValue(TopLine() + (y < 0 ? -1 : 1));
  FollowPointer(y);
}

void ListBox::wheelEvent(QWheelEvent* event) {
  const int top = TopLine();
  QListWidget::wheelEvent(event);
  if (!gesture_.OnLine() || TopLine() == top) return;
  gesture_.DragOn(NearestLine(event->position().toPoint().y()));
  ShowDrag();
}

// The gesture knows its line by the index, which now means another line.
void ListBox::LinesChange() {
  if (!gesture_.OnLine()) return;
  gesture_.LoseLine();
  HideDrag();
}

void ListBox::EndGesture() {
  if (!gesture_.Running()) return;
  gesture_.End();
  HideDrag();
  BringIntoView(ListIndex());
}

void ListBox::keyPressEvent(QKeyEvent* event) {
  if (!TakeKey(*event)) QListWidget::keyPressEvent(event);
}

// True when the key has done what it means here; the toolkit does the rest of the keys.
bool ListBox::TakeKey(const QKeyEvent& event) {
  const int selected = ListIndex();
  const bool none_selected = selected < 0 && count() > 0;
  const bool acts = !event.isAutoRepeat() && !gesture_.Running() && selected >= 0;
  switch (event.key()) {
    case Qt::Key_Escape:
      if (!gesture_.OnLine()) return false;
      SetListIndex(gesture_.From());
      EndGesture();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (acts) emit DblClick();
      return true;
    case Qt::Key_Delete:
      if (event.modifiers() & ~Qt::KeypadModifier) return false;
      if (acts) emit RemoveLine();
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (event.modifiers().testFlag(Qt::ControlModifier)) {
        const int to = selected + (event.key() == Qt::Key_Up ? -1 : 1);
        if (selected >= 0 && to >= 0 && to < count() && !gesture_.Running()) {
          emit MoveLine(selected, to);
        }
        return true;
      }
      [[fallthrough]];
    // With nothing selected the toolkit starts from the first line and would pass it over.
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
      if (none_selected) SetListIndex(0);
      return none_selected;
    case Qt::Key_End:
      if (none_selected) SetListIndex(count() - 1);
      return none_selected;
    default:
      return false;
  }
}

// The toolkit asks for a menu when the right button goes down; here it waits for the release.
void ListBox::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (event->reason() == QContextMenuEvent::Mouse || gesture_.Running()) return;
  const QListWidgetItem* selected = item(ListIndex());
  const QRect line = selected ? visualItemRect(selected) : QRect();
  const QPoint place = viewport()->rect().intersects(line) ? line.bottomLeft() : QPoint();
  emit ContextMenuWanted(viewport()->mapToGlobal(place));
}

}  // namespace platform
