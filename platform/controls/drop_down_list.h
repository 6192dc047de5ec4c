// A drop-down list whose entries are chosen from the open list only. Each time it opens it asks
// what they stand for. The item data of an entry is a number. Disabled with an entry selected, it
// is locked on that entry and shows it with a lit lamp.
#pragma once

#include <QColor>
#include <QComboBox>
#include <QPalette>
#include <QWheelEvent>
#include <functional>

namespace platform {

class DropDownList : public QComboBox {
  Q_OBJECT
 public:
  explicit DropDownList(QWidget* parent = nullptr);

  // Tells what the entry with this item data stands for now: its tool tip. Empty when for nothing;
  // it is drawn pale in the open list then, and can be chosen all the same. Asked each time the
  // list opens, and for the selected entry each time the pointer rests on the closed list.
  std::function<QString(int item_data)> StandsFor;
  // The tool tip of an entry that stands for nothing.
  QString NothingTip;
  // The colour of unavailable entries, on the ground of fields.
  static QColor UnavailableColour(const QPalette& palette);

  void showPopup() override;

 signals:
  // The operator has chosen an entry from the open list (also the one already selected), which
  // stood for `stood_for` when the list opened. The wheel and the arrow keys choose nothing while
  // the list is closed; keys open it.
  void Click(const QString& stood_for);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }

 private:
  QString TipFor(const QString& what) const { return what.isEmpty() ? NothingTip : what; }
};

}  // namespace platform
