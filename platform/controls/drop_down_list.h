// A drop-down list whose entries are chosen from the open list only. Each time it opens it asks for
// the entries' tool tips and which of them are unavailable. The item data of an entry is a number.
// Disabled with an entry selected, it is locked on that entry and shows it with a lit lamp.
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

  // Gives the tooltip of the entry with this item data; asked each time the list opens, and for
  // the selected entry each time the pointer rests on the closed list.
  std::function<QString(int item_data)> ToolTip;

  // Whether the entry with this item data is unavailable now: it is drawn pale in the open list,
  // and can be chosen all the same. Asked each time the list opens.
  std::function<bool(int item_data)> Unavailable;
  // The colour of unavailable entries, on the ground of fields.
  static QColor UnavailableColour(const QPalette& palette);

  void showPopup() override;

 signals:
  // The operator has chosen an entry from the open list (also the one already selected). The wheel
  // and the arrow keys choose nothing while the list is closed; keys open it.
  void Click();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

}  // namespace platform
