#include "ui/controls.h"

#include <QFontMetricsF>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>

#include "platform/cw_button.h"
#include "platform/cw_num_edit.h"
#include "platform/cw_slide.h"
#include "platform/drop_down_list.h"
#include "platform/list_box.h"
#include "platform/push_button.h"
#include "platform/text_field.h"

namespace pelmora {
namespace {

constexpr int kLargestFont = 12;  // pixels
constexpr int kSmallestFont = 8;
constexpr int kHeadingFont = 16;  // 12 points at 96 dpi

QWidget* MakePanel(const QString& caption, QWidget* parent) {
  if (!caption.isEmpty()) return new QGroupBox(caption, parent);
  auto* frame = new QFrame(parent);
  frame->setFrameShape(QFrame::StyledPanel);
  return frame;
}

QWidget* MakeHeading(const QString& caption, QWidget* parent) {
  auto* label = new QLabel(caption, parent);
  QFont font = label->font();
  font.setPixelSize(kHeadingFont);
  font.setBold(true);
  label->setFont(font);
  return label;
}

QWidget* MakeTextField(const QString& text, bool display, QWidget* parent) {
  auto* field = new platform::TextField(parent);
  field->setText(text);
  field->setAlignment(Qt::AlignCenter);
  field->setReadOnly(display);
  if (display) field->setFocusPolicy(Qt::ClickFocus);
  return field;
}

/// A text without the mark of its mnemonic.
QString Plain(QString caption) { return caption.remove(QLatin1Char('&')); }

/// The widest text that a control has to show, and the pixels around it that its frame takes.
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
      return {caption, 4};
    case Kind::kPanel:
      return {caption, 16};
    case Kind::kTextField:
      return {QStringLiteral("-128"), 8};
    case Kind::kDisplay:
      return {QStringLiteral("-63.5 \u00B0"), 6};
    case Kind::kFader:
      return {QStringLiteral("Ch11"), 2};
    case Kind::kDropDown:
      return {QStringLiteral("Comm8"), 40};
    case Kind::kNumEdit:
      return {QStringLiteral("-32768 ms"), 30};
    case Kind::kHeading:
    case Kind::kListBox:
    case Kind::kBar:
      break;
  }
  return {QString(), 0};
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
      const QString name = array ? QStringLiteral("%1_%2").arg(QLatin1String(row.name)).arg(row.first + i)
                                 : QString::fromLatin1(row.name);
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
      return MakePanel(caption, parent);
    case Kind::kLabel:
      return new QLabel(caption, parent);
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
  for (int size = kLargestFont; size >= kSmallestFont; --size) {
    font.setPixelSize(size);
    const QFontMetricsF metrics(font);
    bool fits = true;
    for (const ControlRow& row : Inventory()) {
      const Demand demand = DemandOf(row);
      if (demand.text.isEmpty()) continue;
      fits = fits && metrics.horizontalAdvance(demand.text) + demand.margin <= Pixels(row.width);
    }
    if (fits) break;
  }
  client.setFont(font);
}

}  // namespace pelmora
