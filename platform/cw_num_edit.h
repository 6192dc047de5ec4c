// A numeric field that shows its whole-number value followed by a unit, e.g. "1000 ms", always in
// plain digits whatever the locale.
#pragma once

#include <QSpinBox>

namespace platform {

class CWNumEdit : public QSpinBox {
  Q_OBJECT
 public:
  explicit CWNumEdit(QWidget* parent = nullptr);

  // The value, with an entry that is still being typed taken into account.
  int Value();

  // Sets the value, cut to the range. A change raises `valueChanged` before the call returns;
  // setting the value already held raises nothing.
  void SetValue(int value) { setValue(value); }

  // Range and steps: arrow keys and buttons step by `increment`, page keys by `fast_increment`; a
  // step that would leave the range is not made. A typed entry counts when the field is left,
  // Enter is pressed or the value is asked for: a number outside the range is clamped to it, and
  // where there is no number the value stays as it was.
  void SetScale(int minimum, int maximum, int increment, int fast_increment);

  // The unit shown behind the number, its leading blank included (" ms").
  void SetUnit(const QString& unit);

 protected:
  bool event(QEvent* event) override;
  void stepBy(int steps) override;
  void keyPressEvent(QKeyEvent* event) override;
  QString textFromValue(int value) const override;
  int valueFromText(const QString& text) const override;
  StepEnabled stepEnabled() const override;
  QValidator::State validate(QString& text, int& position) const override;
  void fixup(QString& text) const override;

 private:
  QString Number(QString text) const;
  bool Step(int difference);

  int fast_increment_ = 10;
};

}  // namespace platform
