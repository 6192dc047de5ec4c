#include "rig/operator.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTimer>
#include <QtTest/QTest>
#include <cstdlib>

#include "platform/controls/cw_slide.h"

namespace rig {
namespace {

constexpr int kPollMilliseconds = 3;

QRect HandleOf(const QSlider& slide) {
  QStyleOptionSlider option;
  option.initFrom(&slide);
  option.orientation = slide.orientation();
  option.minimum = slide.minimum();
  option.maximum = slide.maximum();
  option.sliderPosition = option.sliderValue = slide.value();
  option.upsideDown = slide.orientation() == Qt::Vertical;
  option.subControls = QStyle::SC_All;
  return slide.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slide);
}

}  // namespace

Operator::Operator(QWidget& window) : window_(window) {}

void Operator::Click(const QString& name) {
  auto& control = Find<QWidget>(name);
  QTest::mouseClick(&control, Qt::LeftButton, {}, control.rect().center());
}

void Operator::MoveSlider(const QString& name, int value) {
  auto& slide = Find<platform::CWSlide>(name);
  const QPoint start = HandleOf(slide).center();
  const int travel = slide.height() - HandleOf(slide).height();
  const int range = slide.maximum() - slide.minimum();
  const int distance = (slide.value() - value) * travel / range;
  QTest::mousePress(&slide, Qt::LeftButton, {}, start);
  constexpr int kStages = 4;
  for (int stage = 1; stage <= kStages; ++stage) {
    QTest::mouseMove(&slide, start + QPoint(0, distance * stage / kStages));
  }
  QTest::mouseRelease(&slide, Qt::LeftButton, {}, start + QPoint(0, distance));
  while (slide.value() != value) {
    QTest::keyClick(&slide, slide.value() < value ? Qt::Key_Up : Qt::Key_Down);
  }
}

void Operator::Type(const QString& name, const QString& text, bool enter) {
  auto& field = Find<QWidget>(name);
  QTest::mouseClick(&field, Qt::LeftButton, {}, QPoint(8, field.height() / 2));
  auto* spin = qobject_cast<QSpinBox*>(&field);
  spin ? spin->selectAll() : QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
  if (text.isEmpty() && !spin) QTest::keyClick(&field, Qt::Key_Delete);
  QTest::keyClicks(&field, text);
  if (enter) QTest::keyClick(&field, Qt::Key_Return);
}

void Operator::Keys(QWidget& control, const QString& keys) {
  QApplication::setActiveWindow(control.window());
  for (const QString& key : keys.split(' ')) {
    const QKeyCombination pressed = QKeySequence(key)[0];
    QTest::keyClick(&control, pressed.key(), pressed.keyboardModifiers());
  }
}

void Operator::Hold(QWidget& control, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  const QString text = key == Qt::Key_Space ? " " : key == Qt::Key_Return ? "\r" : "";
  for (int i = 0; i < 6; ++i) {
    QTest::simulateEvent(&control, true, key, modifiers, text, i > 0);
  }
  QTest::simulateEvent(&control, false, key, modifiers, text, false);
}

void Operator::Choose(const QString& name, const QString& entry) {
  auto& combo = Find<QComboBox>(name);
  QTest::mouseClick(&combo, Qt::LeftButton, {}, combo.rect().center());
  QAbstractItemView* view = combo.view();
  WaitUntil([view] { return view->isVisible(); });
  const QModelIndex index = combo.model()->index(combo.findText(entry), 0);
  // A click that comes at once would be taken for the one that opened the list.
  Wait(QApplication::doubleClickInterval() + 50);
  const QPoint place = view->visualRect(index).center();
  QTest::mouseMove(view->viewport(), place);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
}

void Operator::ChooseMenu(const QString& item) {
  auto& action = Find<QAction>(item);
  auto* menu = qobject_cast<QMenu*>(action.parent());
  auto& bar = *window_.findChild<QMenuBar*>();
  QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(menu->menuAction()).center());
  WaitUntil([menu] { return menu->isVisible(); });
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(&action).center());
}

QPoint Operator::LineCentre(const QString& list, int line) const {
  auto& box = Find<QListWidget>(list);
  box.scrollToItem(box.item(line));
  return box.visualItemRect(box.item(line)).center();
}

void Operator::ClickLine(const QString& list, int line) {
  QTest::mouseClick(Find<QListWidget>(list).viewport(), Qt::LeftButton, {}, LineCentre(list, line));
}

void Operator::DoubleClickLine(const QString& list, int line) {
  ClickLine(list, line);
  QWidget* view = Find<QListWidget>(list).viewport();
  const QPoint place = LineCentre(list, line);
  QTest::mouseDClick(view, Qt::LeftButton, {}, place);
  QTest::mouseRelease(view, Qt::LeftButton, {}, place);
}

void Operator::DragLine(const QString& list, int from, int to) {
  auto& box = Find<QListWidget>(list);
  QWidget* view = box.viewport();
  const QPoint start = LineCentre(list, from);
  QTest::mousePress(view, Qt::LeftButton, {}, start);
  // Held above or below the list, a drag scrolls it.
  const auto place = [&] { return box.visualItemRect(box.item(to)).center(); };
  const QPoint outside(start.x(), to < from ? -10 : view->height() + 10);
  if (!view->rect().contains(place())) {
    QTest::mouseMove(view, outside);
    WaitUntil([&] { return view->rect().contains(place()); }, 30000);
  }
  const QPoint end = place();
  QTest::mouseMove(view, (start + end) / 2);
  QTest::mouseMove(view, end);
  QTest::mouseRelease(view, Qt::LeftButton, {}, end);
}

QString Operator::Read(const QString& name) const {
  const auto& control = Find<QWidget>(name);
  auto* button = qobject_cast<const QPushButton*>(&control);
  return button ? QString(button->isChecked() ? "On" : "Off") : ShownText(control);
}

QStringList Operator::ReadLines(const QString& list) const {
  QStringList lines;
  const auto& box = Find<QListWidget>(list);
  for (int i = 0; i < box.count(); ++i) lines.append(box.item(i)->text());
  return lines;
}

void Operator::When(std::function<bool()> condition, std::function<void()> action) {
  plans_.push_back({std::move(condition), std::move(action)});
  if (!polling_) PollLater();
}

void Operator::PollLater() {
  // A timer does not fire inside its own slot, and a plan's action may wait, so each check has a
  // timer of its own.
  polling_ = true;
  QTimer::singleShot(kPollMilliseconds, this, &Operator::Poll);
}

void Operator::Poll() {
  polling_ = false;
  if (plans_.empty()) return;
  PollLater();
  for (auto plan = plans_.begin(); plan != plans_.end(); ++plan) {
    if (!plan->condition()) continue;
    const std::function<void()> action = std::move(plan->action);
    plans_.erase(plan);
    action();
    return;
  }
}

bool Operator::WaitUntil(const std::function<bool()>& condition, int limit_ms) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.elapsed() > limit_ms) return false;
    QTest::qWait(2);
  }
  return true;
}

void Operator::Wait(int milliseconds) {
  QTest::qWait(milliseconds);
}

QString ShownText(const QWidget& control) {
  for (const char* property : {"currentText", "title", "text", "value"}) {
    const QVariant shown = control.property(property);
    if (shown.isValid()) return shown.toString();
  }
  return {};
}

QWidget* OpenMessage() {
  QWidget* innermost = nullptr;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* box = qobject_cast<QMessageBox*>(window);
    if (box && box->isVisible() && (!innermost || innermost->isAncestorOf(box))) innermost = box;
  }
  return innermost;
}

QString MessageText() {
  auto* box = qobject_cast<QMessageBox*>(OpenMessage());
  return box ? box->text() : QString();
}

void AnswerMessage() {
  auto* box = qobject_cast<QMessageBox*>(OpenMessage());
  if (box) QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
}

}  // namespace rig
