#include "platform/controls/drop_down_list.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "platform/look/colours.h"
#include "platform/look/control_look.h"

namespace platform {
namespace {

constexpr int kLampLeft = 7;      // from the edge to the lamp
constexpr int kEntryLamp = 10;    // diameter
constexpr int kEntryLampGap = 6;  // between lamp and text
constexpr int kEntryPadding = 8;  // above and below an entry of the open list together

constexpr int kStoodForRole = Qt::UserRole + 1;  // what an entry stood for when the list opened

}  // namespace

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QComboBox::activated, this, [this](int entry) {
    const QString stood_for = itemData(entry, kStoodForRole).toString();
    for (int i = 0; i < count(); ++i) setItemData(i, {}, kStoodForRole);
    emit Click(stood_for);
  });
}

QColor DropDownList::UnavailableColour(const QPalette& palette) {
  return Blend(palette.color(QPalette::Active, QPalette::Text),
               palette.color(QPalette::Active, QPalette::Base), 0.36);
}

void DropDownList::showPopup() {
  const QSize size(0, fontMetrics().height() + kEntryPadding);
  for (int i = 0; i < count(); ++i) {
    const QString what = StandsFor(itemData(i).toInt());
    setItemData(i, size, Qt::SizeHintRole);
    setItemData(i, what, kStoodForRole);
    setItemData(i, TipFor(what), Qt::ToolTipRole);
    setItemData(i, what.isEmpty() ? QVariant(UnavailableColour(palette())) : QVariant(),
                Qt::ForegroundRole);
  }
  QComboBox::showPopup();
}

void DropDownList::paintEvent(QPaintEvent* event) {
  if (isEnabled() || currentIndex() < 0) {
    QComboBox::paintEvent(event);
    return;
  }
  const ControlColours colours = ButtonColoursOf({.on = true}, palette());
  QPainter painter(this);
  DrawBox(painter, rect(), colours.face, colours.edge, false);
  DrawLamp(painter, QRectF(kLampLeft, (height() - kEntryLamp) / 2.0, kEntryLamp, kEntryLamp),
           colours, true);
  painter.setPen(colours.text);
  painter.drawText(rect().adjusted(kLampLeft + kEntryLamp + kEntryLampGap, 0, 0, 0),
                   Qt::AlignVCenter | Qt::AlignLeft, currentText());
}

bool DropDownList::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    setToolTip(currentIndex() < 0 ? QString() : TipFor(StandsFor(currentData().toInt())));
  }
  return QComboBox::event(event);
}

void DropDownList::keyPressEvent(QKeyEvent* event) {
  // On a closed list the toolkit would choose every entry on the way to the one that is meant, so
  // these keys open it.
  constexpr int kMoving[] = {Qt::Key_Up,       Qt::Key_Down, Qt::Key_PageUp,
                             Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
  const bool plain = (event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == 0;
  const bool types = !event->text().isEmpty() && event->text().at(0).isPrint();
  if (plain && (types || std::ranges::count(kMoving, event->key()) > 0)) {
    showPopup();
  } else {
    QComboBox::keyPressEvent(event);
  }
}

}  // namespace platform
