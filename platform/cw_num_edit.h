// A numeric field that shows its whole-number value followed by a unit, e.g. "1000 ms", always in
// plain digits whatever the locale.
#ifndef PELMORA_PLATFORM_CW_NUM_EDIT_H
#define PELMORA_PLATFORM_CW_NUM_EDIT_H

#include <QSpinBox>

namespace platform {

class CWNumEdit : public QSpinBox {
  Q_OBJECT
 public:
  explicit CWNumEdit(QWidget* parent = nullptr);

  int Value() const { return value(); }

  /// Sets the value, cut to the range. A change raises `ValueChanged` before the call returns;
  /// setting the value already held raises nothing.
  void SetValue(int value) { setValue(value); }

  /// Range and steps: arrow keys and buttons step by `increment`, page keys by `fast_increment`; a
  /// step that would leave the range is not made. An entry outside the range is clamped to it when
  /// the field is left or Enter is pressed.
  void SetScale(int minimum, int maximum, int increment, int fast_increment);

  /// The unit shown behind the number, its leading blank included (" ms").
  void SetUnit(const QString& unit);

 signals:
  /// Every change of the value, whoever makes it.
  void ValueChanged(int value);

 protected:
  void stepBy(int steps) override;
  void keyPressEvent(QKeyEvent* event) override;
  QString textFromValue(int value) const override;
  int valueFromText(const QString& text) const override;

 private:
  int fast_increment_ = 10;
};

}  // namespace platform

#endif
