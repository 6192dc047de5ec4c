// An operator made of software: works a window by its real controls, with mouse and keyboard
// events. The tour and the tests use it; it calls no handler.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>
#include <functional>
#include <list>
#include <stdexcept>

namespace rig {

class Operator : public QObject {
  Q_OBJECT
 public:
  explicit Operator(QWidget& window);

  QWidget& Window() { return window_; }

  // A control by its name; throws std::runtime_error when the window has none of that name and
  // class.
  template <class T>
  T& Find(const QString& name) const {
    if (T* control = window_.findChild<T*>(name)) return *control;
    throw std::runtime_error("no such control: " + name.toStdString());
  }

  // Presses and releases the left mouse button on a control. Returns when the click's handler has.
  void Click(const QString& name);

  // Drags a fader with the mouse to about `value`, then goes the rest with the arrow keys.
  void MoveSlider(const QString& name, int value);

  // Clicks into a field, replaces its text by typing, and ends with Enter if told to.
  void Type(const QString& name, const QString& text, bool enter = true);

  // Presses keys for a control, one after the other: "Alt+A", "Home Ctrl+X End". Its window is made
  // the active one first: one that closes may leave none active.
  static void Keys(QWidget& control, const QString& keys);

  // Gives a control a key that is held until the keyboard has repeated it five times.
  static void Hold(QWidget& control, Qt::Key key, Qt::KeyboardModifiers modifiers = {});

  // Opens a drop-down list and clicks its entry.
  void Choose(const QString& name, const QString& entry);

  // Opens a menu and clicks its item, given by object name.
  void ChooseMenu(const QString& item);

  // Clicks, double-clicks or drags in the list box.
  void ClickLine(const QString& list, int line);
  void DoubleClickLine(const QString& list, int line);
  void DragLine(const QString& list, int from, int to);

  // What a control shows: its text as ShownText gives it, a switch's "On" or "Off".
  QString Read(const QString& name) const;
  QStringList ReadLines(const QString& list) const;

  // Does `action` once, as soon as `condition` holds. The condition is checked every few
  // milliseconds, also while a handler waits or a message box is open.
  void When(std::function<bool()> condition, std::function<void()> action);

  // Processes events until `condition` holds; false when `limit_ms` passed before.
  bool WaitUntil(const std::function<bool()>& condition, int limit_ms = 5000);

  // Processes events for so long.
  void Wait(int milliseconds);

 private:
  struct Plan {
    std::function<bool()> condition;
    std::function<void()> action;
  };

  void Poll();
  void PollLater();
  QPoint LineCentre(const QString& list, int line) const;

  QWidget& window_;
  std::list<Plan> plans_;
  bool polling_ = false;
};

// A control's text, the entry that is chosen in it, its title or its value, whichever it has.
QString ShownText(const QWidget& control);

// The message box that is open now; null when none is.
QWidget* OpenMessage();
QString MessageText();
// Presses the OK button of the open message box.
void AnswerMessage();

}  // namespace rig
