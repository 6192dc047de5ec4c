// A one-line text field whose keys pass through a handler that can discard them.
#pragma once

#include <QLineEdit>
#include <functional>

namespace platform {

class TextField : public QLineEdit {
  Q_OBJECT
 public:
  explicit TextField(QWidget* parent = nullptr);

  // Called for each character key before the field takes it, with the key's code: the character's
  // code, 8 for Backspace, 13 for Enter. Setting the code to 0 discards the key. Keys that move
  // the cursor or the focus, Delete and the clipboard shortcuts do not come here. Characters typed
  // with Control, Alt or Super held never get into the field. After Enter all of the text is
  // selected, so that the next entry replaces it.
  std::function<void(int& key)> KeyPress;

  // Called when the keyboard focus has moved from this field to another control of the window (not
  // when the whole window or a menu takes it).
  std::function<void()> LostFocus;

 signals:
  // A mouse click into the field, or Space in one that is read-only.
  void Click();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 private:
  bool Discards(int key) const;
};

}  // namespace platform
