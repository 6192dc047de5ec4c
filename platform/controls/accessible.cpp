#include "platform/controls/accessible.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>

#include "platform/controls/cw_slide.h"
#include "platform/controls/drop_down_list.h"

namespace platform {
namespace {

class AccessibleSlide : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleSlide(CWSlide& slide)
      : QAccessibleWidget(&slide, QAccessible::Slider), slide_(slide) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return currentValue().toString();
    return QAccessibleWidget::text(kind);
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QVariant currentValue() const override { return slide_.value() - slide_.ToldZero(); }
  void setCurrentValue(const QVariant& value) override {
    slide_.setValue(value.toInt() + slide_.ToldZero());
  }
  QVariant maximumValue() const override { return slide_.maximum() - slide_.ToldZero(); }
  QVariant minimumValue() const override { return slide_.minimum() - slide_.ToldZero(); }
  QVariant minimumStepSize() const override { return slide_.singleStep(); }

 private:
  CWSlide& slide_;
};

class AccessibleDropDownList : public QAccessibleWidget {
 public:
  explicit AccessibleDropDownList(DropDownList& list)
      : QAccessibleWidget(&list, QAccessible::ComboBox), list_(list) {}

  // Screen readers on Linux say a drop-down list's name and not its value, so the name has both.
  QString text(QAccessible::Text kind) const override {
    QString entry = list_.currentText();
    if (kind == QAccessible::Value) return entry;
    const QString text = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && !entry.isEmpty() ? text + ": " + entry : text;
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.expanded = list_.view()->isVisible();
    return state;
  }

  int childCount() const override { return 1; }
  QAccessibleInterface* child(int index) const override {
    return index == 0 ? QAccessible::queryAccessibleInterface(list_.view()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child && child->object() == list_.view() ? 0 : -1;
  }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }

  QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }
  void doAction(const QString& action) override {
    if (!list_.isEnabled() || !actionNames().contains(action)) return;
    list_.view()->isVisible() ? list_.hidePopup() : list_.showPopup();
  }

 private:
  DropDownList& list_;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  if (auto* slide = qobject_cast<CWSlide*>(object)) return new AccessibleSlide(*slide);
  if (auto* list = qobject_cast<DropDownList*>(object)) return new AccessibleDropDownList(*list);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(Make);
}

}  // namespace platform
