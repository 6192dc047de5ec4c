#include "platform/controls/cw_num_edit.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QWheelEvent>

#include "platform/controls/entry_keys.h"
#include "platform/controls/typed_number.h"

namespace platform {
namespace {

// What an entry may look like while it is typed: digits, the locale's decimal separator, digits.
bool IsEntry(const QString& text) {
  const QString point = QRegularExpression::escape(QLocale().decimalPoint());
  const QRegularExpression form("^[0-9]*(" + point + "[0-9]*)?$");
  return form.match(text).hasMatch();
}

}  // namespace

CWNumEdit::CWNumEdit(QWidget* parent) : QSpinBox(parent) {
  setLocale(QLocale::c());  // of what the field shows
  setFocusPolicy(Qt::StrongFocus);
  setCorrectionMode(CorrectToNearestValue);
  // The value changes when an entry is complete, not with each of its digits.
  setKeyboardTracking(false);
  connect(this, &QSpinBox::editingFinished, this, [this] { lineEdit()->setModified(false); });
  // The toolkit paints the text anew and not the arrows, which fade at the bounds.
  connect(lineEdit(), &QLineEdit::textChanged, this, [this] { update(); });
  // Behind the unit no digit can be typed.
  connect(lineEdit(), &QLineEdit::cursorPositionChanged, this, [this](int, int position) {
    const auto last = static_cast<int>(text().size() - suffix().size());
    const bool behind = position > last && text().endsWith(suffix());
    if (behind && !lineEdit()->hasSelectedText()) lineEdit()->setCursorPosition(last);
  });
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

void CWNumEdit::Step(int difference) {
  setValue(Value() + difference);
  selectAll();
}

void CWNumEdit::stepBy(int steps) {
  Step(steps * singleStep());
}

QAbstractSpinBox::StepEnabled CWNumEdit::stepEnabled() const {
  const int typed = valueFromText(text());
  StepEnabled enabled = StepNone;
  if (typed > minimum()) enabled |= StepDownEnabled;
  if (typed < maximum()) enabled |= StepUpEnabled;
  return enabled;
}

bool CWNumEdit::event(QEvent* event) {
  return TakeEntryKeys(*lineEdit(), *event) || QSpinBox::event(event);
}

void CWNumEdit::keyPressEvent(QKeyEvent* event) {
  const QString typed = event->text();
  const bool blank = typed.size() == 1 && typed.at(0).isSpace() && typed.at(0).isPrint();
  if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown) {
    Step(event->key() == Qt::Key_PageUp ? fast_increment_ : -fast_increment_);
  } else if (event->key() == Qt::Key_Escape && lineEdit()->isModified()) {
    setValue(value());
    selectAll();
  } else if (!blank) {
    QSpinBox::keyPressEvent(event);
  }
}

void CWNumEdit::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QSpinBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

// What stands before the unit, without blanks: groups of digits may be parted by any kind of them.
QString CWNumEdit::Typed(const QString& text) const {
  QString typed = text;
  if (typed.endsWith(suffix())) typed.chop(suffix().size());
  return typed.removeIf([](QChar c) { return c.isSpace(); });
}

int CWNumEdit::valueFromText(const QString& text) const {
  return TypedNumber(Typed(text), minimum(), maximum()).value_or(value());
}

QValidator::State CWNumEdit::validate(QString& text, int& position) const {
  const QString before_caret = text.left(position);
  position -= static_cast<int>(before_caret.size() - Typed(before_caret).size());
  const QString typed = Typed(text);
  text = typed + suffix();
  if (typed.isEmpty()) return QValidator::Intermediate;
  if (!IsEntry(typed)) return QValidator::Invalid;
  bool whole = false;
  const int value = typed.toInt(&whole);
  if (whole && value >= minimum() && value <= maximum()) return QValidator::Acceptable;
  return out_of_range_ == OutOfRange::kRefuse ? QValidator::Invalid : QValidator::Intermediate;
}

void CWNumEdit::fixup(QString& text) const {
  text = textFromValue(valueFromText(text)) + suffix();
}

}  // namespace platform
