#include "ui/controls.h"

#include <QFontMetricsF>
#include <QLabel>
#include <QRegularExpression>
#include <algorithm>

#include "platform/cw_button.h"
#include "platform/cw_num_edit.h"
#include "platform/cw_slide.h"
#include "platform/drop_down_list.h"
#include "platform/list_box.h"
#include "platform/panel.h"
#include "platform/push_button.h"
#include "platform/text_field.h"

namespace pelmora {
namespace {

constexpr int kLargestFont = 12;  // pixels
constexpr int kSmallestFont = 8;
constexpr int kHeadingFont = 16;  // 12 points at 96 dpi
constexpr int kLineOfText = 21;

constexpr int kFullStretch = 100;   // percent
constexpr int kLowestStretch = 90;  // below, a smaller font reads better than a narrower one

QWidget* MakeLabel(const QString& caption, int height, QWidget* parent) {
  auto* label = new QLabel(caption, parent);
  // A label with room for more than its line has its text at the top: another control may reach
  // into the rest.
  label->setAlignment(Qt::AlignLeft | (height > kLineOfText ? Qt::AlignTop : Qt::AlignVCenter));
  return label;
}

QFont HeadingFont(QFont font) {
  font.setPixelSize(kHeadingFont);
  font.setBold(true);
  return font;
}

QWidget* MakeHeading(const QString& caption, QWidget* parent) {
  auto* label = new QLabel(caption, parent);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setFont(HeadingFont(label->font()));
  return label;
}

QWidget* MakeTextField(const QString& text, bool display, QWidget* parent) {
  auto* field = new platform::TextField(parent);
  field->setText(text);
  field->setAlignment(Qt::AlignCenter);
  // The fields are narrow: the text may use the room that a line edit leaves free at its sides.
  field->setTextMargins(-2, 0, -2, 0);
  field->setReadOnly(display);
  if (display) field->setFocusPolicy(Qt::ClickFocus);
  return field;
}

// A text without the mark of its mnemonic.
QString Plain(QString caption) {
  return caption.remove(QLatin1Char('&'));
}

// The widest text that a control has to show, and the pixels around it that its frame takes.
struct Demand {
  QString text;
  double margin;
};

Demand DemandOf(const ControlRow& row) {
  const QString caption = Plain(QString::fromUtf8(row.caption));
  switch (row.kind) {
    case Kind::kLabel: {
      // Captions that change: the widest number that they can hold.
      static const QRegularExpression number(QStringLiteral("0(?= bytes)|0$"));
      QString text = caption;
      text.replace(number, caption.endsWith(QLatin1String("bytes")) ? "57330" : "15");
      return {text, 0};
    }
    case Kind::kSwitch:
      return {caption, 36};
    case Kind::kPushButton:
      return {caption, 8};
    case Kind::kPanel:
      return {caption, 16};
    case Kind::kTextField:
      return {QStringLiteral("-128"), 8};
    case Kind::kDisplay:
      return {QStringLiteral("-63.5 \u00B0"), 5};
    case Kind::kFader:
      return {QStringLiteral("Ch11"), 2};
    case Kind::kDropDown:
      return {QStringLiteral("Comm8"), 40};
    case Kind::kNumEdit:
      return {QStringLiteral("-32768 ms"), 30};
    case Kind::kHeading:
      return {QString(caption).replace(QRegularExpression(QStringLiteral("0$|\\.\\.\\.$")), "255"),
              0};
    case Kind::kListBox:
    case Kind::kBar:
      break;
  }
  return {QString(), 0};
}

QString ElementName(const ControlRow& row, int element) {
  const QString name = QString::fromLatin1(row.name);
  return row.count == 1 ? name : QStringLiteral("%1_%2").arg(name).arg(row.first + element);
}

// How far the control's text has to be narrowed to fit, in percent of its full width.
int StretchFor(const ControlRow& row, const QFont& font) {
  const Demand demand = DemandOf(row);
  const QFontMetricsF metrics(row.kind == Kind::kHeading ? HeadingFont(font) : font);
  const double width = metrics.horizontalAdvance(demand.text);
  const double room = Pixels(row.width) - demand.margin;
  return width <= room ? kFullStretch : static_cast<int>(kFullStretch * room / width);
}

int NarrowestStretch(const QFont& font) {
  int narrowest = kFullStretch;
  for (const ControlRow& row : Inventory()) {
    // Headings have a size of their own.
    if (row.kind != Kind::kHeading) narrowest = std::min(narrowest, StretchFor(row, font));
  }
  return narrowest;
}

}  // namespace

Controls::Controls(QWidget& client) {
  for (const ControlRow& row : Inventory()) {
    QWidget* parent = *row.parent ? controls_.value(QLatin1String(row.parent)) : &client;
    for (int i = 0; i < row.count; ++i) {
      const bool array = row.count > 1;
      const auto numbered = [&](const char* text) {
        const QString whole = QString::fromUtf8(text);
        return array && whole.contains(QLatin1String("%1")) ? whole.arg(i) : whole;
      };
      const QString name = ElementName(row, i);
      QWidget* control = Make(row, numbered(row.caption), parent);
      control->setObjectName(name);
      if (*row.spoken_name) control->setAccessibleName(numbered(row.spoken_name));
      control->setGeometry(Pixels(row.left + i * row.pitch), Pixels(row.top), Pixels(row.width),
                           Pixels(row.height));
      control->setVisible(row.start != Start::kHidden);
      control->setEnabled(row.start != Start::kDisabled);
      controls_.insert(name, control);
    }
  }
}

QWidget* Controls::Make(const ControlRow& row, const QString& caption, QWidget* parent) const {
  switch (row.kind) {
    case Kind::kPanel:
      return new platform::Panel(caption, parent);
    case Kind::kLabel:
      return MakeLabel(caption, Pixels(row.height), parent);
    case Kind::kHeading:
      return MakeHeading(caption, parent);
    case Kind::kDropDown:
      return new platform::DropDownList(parent);
    case Kind::kSwitch:
      return new platform::CWButton(caption, parent);
    case Kind::kListBox:
      return new platform::ListBox(parent);
    case Kind::kPushButton:
      return new platform::PushButton(caption, parent);
    case Kind::kTextField:
      return MakeTextField(caption, false, parent);
    case Kind::kDisplay:
      return MakeTextField(caption, true, parent);
    case Kind::kFader: {
      auto* slide = new platform::CWSlide(platform::CWSlide::Look::kFader, parent);
      slide->SetCaption(caption);
      return slide;
    }
    case Kind::kBar:
      return new platform::CWSlide(platform::CWSlide::Look::kBar, parent);
    case Kind::kNumEdit:
      return new platform::CWNumEdit(parent);
  }
  Q_UNREACHABLE();
}

void Controls::FitFont(QWidget& client) const {
  QFont font = client.font();
  for (int size = kLargestFont; size > kSmallestFont; --size) {
    font.setPixelSize(size);
    if (NarrowestStretch(font) >= kLowestStretch) break;
  }
  client.setFont(font);
  for (const ControlRow& row : Inventory()) {
    const int stretch = StretchFor(row, font);
    if (stretch >= kFullStretch) continue;
    QFont narrow = row.kind == Kind::kHeading ? HeadingFont(font) : font;
    narrow.setStretch(stretch);
    for (int i = 0; i < row.count; ++i) controls_.value(ElementName(row, i))->setFont(narrow);
  }
}

}  // namespace pelmora
