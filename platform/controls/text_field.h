// A one-line text field whose keys pass through a handler that can discard them. A click selects
// the whole text when the field was not being edited, and so does a double click; the toolkit
// places the caret, so that what is typed joins what stood there.
#pragma once

#include <QInputMethodEvent>
#include <QLineEdit>
#include <functional>

namespace platform {

// Codes of keys that are no characters.
inline constexpr int kBackspace = 8;
inline constexpr int kEnter = 13;
inline constexpr int kEscape = 27;

class TextField : public QLineEdit {
  Q_OBJECT
 public:
  explicit TextField(QWidget* parent = nullptr);

  // Asks whether the field may take a character key, with the key's code: the character's code, or
  // one of those above. Setting the code to 0 discards the key. Keys that move the cursor or the
  // focus, Delete and the clipboard shortcuts do not come here. Characters typed with Control, Alt
  // or Super held never get into the field. After Enter or Escape all of the text is selected, so
  // that the next entry replaces it. Without it every key is taken.
  std::function<void(int& key)> KeyPress;

 signals:
  // The keyboard focus has moved from this field to another control of the window, perhaps by way
  // of a menu or another window, which are no reason by themselves.
  void LostFocus();
  // A mouse click into the field, or Space in one that is read-only.
  void Click();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  // The toolkit turns input methods on again by itself, for instance when a field becomes writable.
  void inputMethodEvent(QInputMethodEvent* event) override { event->ignore(); }
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 private:
  bool Discards(int key) const;
  void Leave();

  // Ends the connection before the field's base, whose destruction moves the focus.
  QObject focus_watch_;
  bool editing_ = false;             // a click places the caret
  bool focus_is_elsewhere_ = false;  // in a menu or another window: it may come back
  bool click_selects_ = false;       // until the button is released
};

}  // namespace platform
