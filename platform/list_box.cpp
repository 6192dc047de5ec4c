#include "platform/list_box.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

#include "platform/list_column.h"

namespace platform {
namespace {

constexpr int kScrollMilliseconds = 60;  // per line, while the pointer is held outside the list

// A line whose tabs are read out as pauses.
class Line : public QListWidgetItem {
 public:
  using QListWidgetItem::QListWidgetItem;

  QVariant data(int role) const override {
    if (role == Qt::AccessibleTextRole) {
      return text().split('\t', Qt::SkipEmptyParts).join(", ");
    }
    return QListWidgetItem::data(role);
  }
};

}  // namespace

ListBox::ListBox(QWidget* parent) : QListWidget(parent), delegate_(new ColumnDelegate(this)) {
  setItemDelegate(delegate_);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setUniformItemSizes(true);
  setAlternatingRowColors(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

QString ListBox::List(int index) const {
  const QListWidgetItem* line = item(index);
  return line == nullptr ? QString() : line->text();
}

void ListBox::SetList(int index, const QString& text) {
  if (QListWidgetItem* line = item(index)) line->setText(text);
}

void ListBox::AddItem(const QString& text) {
  InsertItem(count(), text);
}

void ListBox::InsertItem(int index, const QString& text) {
  insertItem(std::clamp(index, 0, count()), new Line(text));
}

void ListBox::RemoveItem(int index) {
  // The toolkit would select a neighbour of the line that goes.
  const int selected = ListIndex();
  if (selected == index || selected < 0) SetListIndex(-1);
  delete takeItem(index);
}

void ListBox::Clear() {
  clear();
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
  setCurrentRow(index, QItemSelectionModel::ClearAndSelect);
  scrollToItem(item(index));
}

void ListBox::SetColumns(std::vector<ListColumn> columns) {
  for (ListColumn& column : columns) column.left -= frameWidth();
  delegate_->SetColumns(std::move(columns));
  viewport()->update();
}

int ListBox::LineAt(int y) const {
  return indexAt({viewport()->width() / 2, y}).row();
}

int ListBox::NearestLine(int y) const {
  const int line = LineAt(std::clamp(y, 0, viewport()->height() - 1));
  return line >= 0 ? line : count() - 1;
}

void ListBox::Press(QMouseEvent* event) {
  event->accept();
  const bool first_button = event->buttons() == Qt::MouseButtons(event->button());
  if (gesture_ != Gesture::kNone && !first_button) return;
  const int line = LineAt(event->position().toPoint().y());
  gesture_ = line >= 0 ? Gesture::kOnLine : Gesture::kBesideLines;
  if (line >= 0) SetListIndex(line);
  emit MouseDown(line);
}

void ListBox::mousePressEvent(QMouseEvent* event) {
  Press(event);
}

void ListBox::mouseDoubleClickEvent(QMouseEvent* event) {
  Press(event);
  if (event->button() == Qt::LeftButton && gesture_ == Gesture::kOnLine && ListIndex() >= 0) {
    emit DblClick();
  }
}

void ListBox::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) {
    EndGesture();
  } else if (gesture_ == Gesture::kOnLine) {
    FollowPointer(event->position().toPoint().y());
  }
}

void ListBox::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (gesture_ == Gesture::kNone || event->buttons() != Qt::NoButton) return;
  const bool on_line = gesture_ == Gesture::kOnLine;
  if (on_line) FollowPointer(event->position().toPoint().y());
  EndGesture();
  emit MouseUp(on_line ? ListIndex() : -1);
}

void ListBox::FollowPointer(int y) {
  pointer_y_ = y;
  SetListIndex(NearestLine(y));
  const bool inside = y >= 0 && y < viewport()->height();
  if (inside) {
    scroll_timer_.stop();
  } else if (!scroll_timer_.isActive()) {
    scroll_timer_.start(kScrollMilliseconds, this);
  }
}

void ListBox::timerEvent(QTimerEvent* event) {
  if (event->timerId() != scroll_timer_.timerId()) {
    QListWidget::timerEvent(event);
    return;
  }
  const int line = NearestLine(pointer_y_) + (pointer_y_ < 0 ? -1 : 1);
  SetListIndex(std::clamp(line, 0, count() - 1));
}

void ListBox::EndGesture() {
  gesture_ = Gesture::kNone;
  scroll_timer_.stop();
}

// Once another window has come up, the release may never arrive.
void ListBox::changeEvent(QEvent* event) {
  QListWidget::changeEvent(event);
  if ((event->type() == QEvent::ActivationChange && !isActiveWindow()) ||
      (event->type() == QEvent::EnabledChange && !isEnabled())) {
    EndGesture();
  }
}

void ListBox::hideEvent(QHideEvent* event) {
  QListWidget::hideEvent(event);
  EndGesture();
}

void ListBox::keyPressEvent(QKeyEvent* event) {
  // With nothing selected the toolkit starts from the first line and the key would pass it over.
  const bool moves = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ||
                     event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown;
  if (moves && ListIndex() < 0 && count() > 0) {
    SetListIndex(0);
    event->accept();
    return;
  }
  QListWidget::keyPressEvent(event);
}

}  // namespace platform
