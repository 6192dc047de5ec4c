// A drop-down list without free text, each entry with a caption, a number as item data and a
// tooltip that is asked for anew whenever the list is opened.
#pragma once

#include <QComboBox>
#include <functional>

namespace platform {

class DropDownList : public QComboBox {
  Q_OBJECT
 public:
  explicit DropDownList(QWidget* parent = nullptr);

  void AddItem(const QString& caption, int item_data);
  // Item data of an entry, 0 for an index that is no entry.
  int ItemData(int index) const;
  int ListIndex() const { return currentIndex(); }  // -1 when nothing is selected
  void SetListIndex(int index) { setCurrentIndex(index); }

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
