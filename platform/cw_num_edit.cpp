#include "platform/cw_num_edit.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>

#include "platform/undo_keys.h"

namespace platform {
namespace {

bool IsAsciiNumber(QStringView text) {
  if (text.startsWith('-')) text = text.mid(1);
  return !text.isEmpty() &&
         std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; });
}

}  // namespace

CWNumEdit::CWNumEdit(QWidget* parent) : QSpinBox(parent) {
  setLocale(QLocale::c());
  setCorrectionMode(CorrectToNearestValue);
  // The value changes when an entry is complete, not with each of its digits.
  setKeyboardTracking(false);
  connect(this, &QSpinBox::editingFinished, this, [this] { lineEdit()->setModified(false); });
}

int CWNumEdit::Value() {
  interpretText();
  return value();
}

void CWNumEdit::SetScale(int minimum, int maximum, int increment, int fast_increment) {
  setSingleStep(increment);
  fast_increment_ = fast_increment;
  setRange(minimum, maximum);
}

void CWNumEdit::SetUnit(const QString& unit) {
  setSuffix(unit);
}

bool CWNumEdit::Step(int difference) {
  interpretText();
  const qint64 target = qint64{value()} + difference;
  if (target < minimum() || target > maximum()) return false;
  setValue(static_cast<int>(target));
  selectAll();
  return true;
}

void CWNumEdit::stepBy(int steps) {
  Step(steps * singleStep());
}

QAbstractSpinBox::StepEnabled CWNumEdit::stepEnabled() const {
  StepEnabled enabled = StepNone;
  if (value() - singleStep() >= minimum()) enabled |= StepDownEnabled;
  if (value() + singleStep() <= maximum()) enabled |= StepUpEnabled;
  return enabled;
}

bool CWNumEdit::event(QEvent* event) {
  return TakeUndoKeys(*lineEdit(), *event) || QSpinBox::event(event);
}

void CWNumEdit::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown) {
    Step(event->key() == Qt::Key_PageUp ? fast_increment_ : -fast_increment_);
    event->accept();
    return;
  }
  QSpinBox::keyPressEvent(event);
}

QString CWNumEdit::Number(QString text) const {
  if (text.endsWith(suffix())) text.chop(suffix().size());
  return text.trimmed();
}

QString CWNumEdit::textFromValue(int value) const {
  return QString::number(value);
}

int CWNumEdit::valueFromText(const QString& text) const {
  const QString number = Number(text);
  if (!IsAsciiNumber(number)) return value();
  bool fits = false;
  const int typed = number.toInt(&fits);
  if (!fits) return number.startsWith('-') ? minimum() : maximum();
  return std::clamp(typed, minimum(), maximum());
}

// The toolkit refuses the digit that takes an entry above the range and turns an unfinished one
// into the minimum; here any number can be typed, and it is corrected when the entry is complete.
QValidator::State CWNumEdit::validate(QString& text, int&) const {
  const QString number = Number(text);
  if (number.isEmpty() || (number == "-" && minimum() < 0)) return QValidator::Intermediate;
  if (!IsAsciiNumber(number)) return QValidator::Invalid;
  if (number.startsWith('-') && minimum() >= 0) return QValidator::Invalid;
  bool fits = false;
  const int typed = number.toInt(&fits);
  return fits && typed >= minimum() && typed <= maximum() ? QValidator::Acceptable
                                                          : QValidator::Intermediate;
}

void CWNumEdit::fixup(QString& text) const {
  text = textFromValue(valueFromText(text)) + suffix();
}

}  // namespace platform
