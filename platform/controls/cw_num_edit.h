// A numeric field that shows its whole-number value, never below 0, and a suffix, e.g. "1000 ms",
// always in plain digits whatever the locale. The toolkit's own refuses the digit that takes an
// entry above the range, takes no decimal separator, steps by the wheel without the focus and has
// no page step.
#pragma once

#include <QSpinBox>

namespace platform {

class CWNumEdit : public QSpinBox {
  Q_OBJECT
 public:
  // What becomes of a typed number outside the range.
  enum class OutOfRange {
    kClamp,   // the nearest bound, once the entry is complete
    kRefuse,  // the key that would make it is ignored
  };

  explicit CWNumEdit(QWidget* parent = nullptr);

  // The value, with an entry that is still being typed taken into account.
  int Value();

  // Range and steps: arrow keys, buttons and the wheel (in the field that has the focus) step by
  // `increment`, page keys by `fast_increment`, and stop at the bounds. A typed entry counts when
  // the field is left, Enter is pressed or the value is asked for; Escape puts the value back
  // instead (and does nothing where nothing is being typed). It is read by `TypedNumber`, without
  // its blanks. Where there is no number the value stays as it was.
  void SetScale(int minimum, int maximum, int increment, int fast_increment);
  void SetOutOfRange(OutOfRange out_of_range) { out_of_range_ = out_of_range; }

 protected:
  bool event(QEvent* event) override;
  void stepBy(int steps) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  int valueFromText(const QString& text) const override;
  StepEnabled stepEnabled() const override;
  QValidator::State validate(QString& text, int& position) const override;
  void fixup(QString& text) const override;

 private:
  QString Typed(const QString& text) const;
  void Step(int difference);

  OutOfRange out_of_range_ = OutOfRange::kClamp;
  int fast_increment_ = 10;
};

}  // namespace platform
