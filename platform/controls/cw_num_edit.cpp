#include "platform/controls/cw_num_edit.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "platform/controls/entry_keys.h"

namespace platform {
namespace {

constexpr qsizetype kMostDigits = 15;  // that a double holds exactly

// What an entry may look like while it is typed: sign, whole digits, separator and further digits.
QRegularExpressionMatch Split(const QString& number) {
  static const QRegularExpression form(QStringLiteral("^(-?)0*([0-9]*)(\\.[0-9]*)?$"));
  return form.match(number);
}

}  // namespace

CWNumEdit::CWNumEdit(QWidget* parent) : QSpinBox(parent) {
  setLocale(QLocale::c());
  setFocusPolicy(Qt::StrongFocus);
  setCorrectionMode(CorrectToNearestValue);
  // The value changes when an entry is complete, not with each of its digits.
  setKeyboardTracking(false);
  connect(this, &QSpinBox::editingFinished, this, [this] { lineEdit()->setModified(false); });
  connect(lineEdit(), &QLineEdit::cursorPositionChanged, this,
          [this](int, int position) { KeepCaretBeforeUnit(position); });
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

void CWNumEdit::Step(int difference) {
  interpretText();
  const qint64 target = qint64{value()} + difference;
  setValue(static_cast<int>(std::clamp<qint64>(target, minimum(), maximum())));
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
  if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown) {
    Step(event->key() == Qt::Key_PageUp ? fast_increment_ : -fast_increment_);
    event->accept();
    return;
  }
  const QString key = event->text();
  if (key.size() == 1 && key.at(0).isSpace() && key.at(0).isPrint()) {
    event->accept();
    return;
  }
  if (event->key() == Qt::Key_Escape && lineEdit()->isModified()) {
    setValue(value());
    selectAll();
    event->accept();
    return;
  }
  QSpinBox::keyPressEvent(event);
}

void CWNumEdit::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QSpinBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

// Behind the unit no digit can be typed.
void CWNumEdit::KeepCaretBeforeUnit(int position) {
  const auto last = static_cast<int>(lineEdit()->text().size() - suffix().size());
  if (position > last && lineEdit()->text().endsWith(suffix()) && !lineEdit()->hasSelectedText()) {
    lineEdit()->setCursorPosition(last);
  }
}

// What stands before the unit, without blanks: groups of digits may be parted by any kind of them.
QString CWNumEdit::Typed(const QString& text) const {
  QString typed = text;
  if (typed.endsWith(suffix())) typed.chop(suffix().size());
  return typed.removeIf([](QChar c) { return c.isSpace(); });
}

// The number in a text of the field, with "." as its separator. A point of a locale that has
// another one makes it none.
QString CWNumEdit::Number(const QString& text) const {
  QString number = Typed(text);
  const QString point = QLocale().decimalPoint();
  if (point != QLatin1String(".")) number.replace('.', '?').replace(point, QLatin1String("."));
  return number;
}

QString CWNumEdit::textFromValue(int value) const {
  return QString::number(value);
}

int CWNumEdit::valueFromText(const QString& text) const {
  const QString number = Number(text);
  const QRegularExpressionMatch parts = Split(number);
  const bool any_digit = std::ranges::any_of(number, [](QChar c) { return c.isDigit(); });
  if (!parts.hasMatch() || !any_digit) return value();
  const QString digits = parts.captured(2);
  const QString fraction = parts.captured(3).left(kMostDigits);
  const bool negative = !parts.captured(1).isEmpty();
  if (digits.size() > kMostDigits) return negative ? minimum() : maximum();
  const double typed = QString('0' + digits + fraction).toDouble() * (negative ? -1 : 1);
  return static_cast<int>(std::clamp<double>(std::nearbyint(typed), minimum(), maximum()));
}

QValidator::State CWNumEdit::validate(QString& text, int& position) const {
  const QString before_caret = text.left(position);
  position -= static_cast<int>(before_caret.size() - Typed(before_caret).size());
  text = Typed(text) + suffix();
  const QString number = Number(text);
  if (number.isEmpty()) return QValidator::Intermediate;
  const QRegularExpressionMatch parts = Split(number);
  if (!parts.hasMatch() || (minimum() >= 0 && number.startsWith('-'))) return QValidator::Invalid;
  bool whole = false;
  const int value = number.toInt(&whole);
  if (whole && value >= minimum() && value <= maximum()) return QValidator::Acceptable;
  return out_of_range_ == OutOfRange::kRefuse ? QValidator::Invalid : QValidator::Intermediate;
}

void CWNumEdit::fixup(QString& text) const {
  text = textFromValue(valueFromText(text)) + suffix();
}

}  // namespace platform
