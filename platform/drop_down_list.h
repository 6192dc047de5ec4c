// A drop-down list whose entries are chosen from the open list only, and whose tooltips are asked
// for anew whenever it is opened. The item data of an entry is a number.
#pragma once

#include <QComboBox>
#include <functional>

namespace platform {

class DropDownList : public QComboBox {
  Q_OBJECT
 public:
  explicit DropDownList(QWidget* parent = nullptr);

  // Gives the tooltip of the entry with this item data; asked each time the list opens, and for
  // the selected entry each time the pointer rests on the closed list.
  std::function<QString(int item_data)> ToolTip;

  void showPopup() override;

 signals:
  // The operator has chosen an entry from the open list (also the one already selected). The wheel
  // and the arrow keys choose nothing while the list is closed; keys open it.
  void Click();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void RefreshToolTips();
};

}  // namespace platform
