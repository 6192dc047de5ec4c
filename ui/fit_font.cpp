#include "ui/fit_font.h"

#include <QFontMetricsF>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

#include "ui/inventory.h"

namespace pelmora {
namespace {

constexpr int kLargestFont = 12;  // pixels
constexpr int kSmallestFont = 8;

constexpr int kPanelEdge = 60;  // twips between a label and the edge of its panel

constexpr int kFullStretch = 100;   // percent
constexpr int kLowestStretch = 90;  // below, a smaller font reads better than a narrower one

// The widest text that a control has to show, and the pixels around it that its frame takes.
struct Demand {
  QString text;
  double margin = 0;
};

Demand DemandOf(One<QLabel>, const QString& caption) {
  // Captions that change: the widest number that they can hold.
  static const QRegularExpression number(QStringLiteral("0(?= bytes)|0(?= is)|0$"));
  QString text = caption;
  text.replace(number, caption.endsWith(QLatin1String("bytes")) ? "57330" : "15");
  return {text, 0};
}

Demand DemandOf(One<Heading>, const QString& caption) {
  static const QRegularExpression number(QStringLiteral("0$|\\.\\.\\.$"));
  return {QString(caption).replace(number, "255"), 0};
}

Demand DemandOf(One<platform::CWButton>, const QString& caption) {
  return {caption, 36};
}

Demand DemandOf(One<platform::PushButton>, const QString& caption) {
  return {caption, 8};
}

Demand DemandOf(One<platform::Panel>, const QString& caption) {
  return {caption, 16};
}

// The position fields and angle displays; the latter need the most.
Demand DemandOf(Several<platform::TextField, 2 * kChannels>, const QString&) {
  return {QStringLiteral("-63.5 \u00B0"), 5};
}

Demand DemandOf(One<platform::TextField>, const QString&) {
  return {QStringLiteral("Overflow!"), 8};
}

Demand DemandOf(Several<platform::CWSlide, kChannels>, const QString&) {
  return {QStringLiteral("Ch11"), 2};
}

Demand DemandOf(One<platform::DropDownList>, const QString&) {
  return {QStringLiteral("Comm8"), 40};
}

Demand DemandOf(One<platform::CWNumEdit>, const QString&) {
  return {QStringLiteral("-32768 ms"), 30};
}

// Those without a text of their own.
template <class Control>
Demand DemandOf(Control, const QString&) {
  return {};
}

bool IsHeading(const ControlRow& row) {
  return std::holds_alternative<One<Heading>>(row.control.member);
}

QWidget& ElementOf(Controls& controls, const ControlRow& row, int element) {
  const auto find = [&](auto member) -> QWidget* {
    return PlaceOf(controls, member, row.first + element);
  };
  return *std::visit(find, row.control.member);
}

// The pixels that the row's text may take: for a label everything up to the next control at its
// right or the edge of its panel, for others what is inside them.
int RoomFor(const ControlRow& row) {
  if (!std::holds_alternative<One<QLabel>>(row.control.member)) return Pixels(row.width);
  int right = kFormWidth;
  for (const ControlRow& other : Inventory()) {
    if (row.parent.member && other.control.member == Member(row.parent.member)) {
      right = std::min(right, other.width - kPanelEdge);
    }
    const bool level = other.top < row.top + row.height && row.top < other.top + other.height;
    if (other.parent.member == row.parent.member && level && other.left > row.left) {
      right = std::min(right, other.left);
    }
  }
  return Pixels(std::max(row.width, right - row.left));
}

// The pixels that the row's widest text takes, without narrowing.
double WidthFor(const ControlRow& row, const QFont& font) {
  const QString caption = QString::fromUtf8(row.caption).remove(QLatin1Char('&'));
  const Demand demand =
      std::visit([&](auto member) { return DemandOf(member, caption); }, row.control.member);
  return QFontMetricsF(font).horizontalAdvance(demand.text) + demand.margin;
}

// How far the control's text has to be narrowed to fit, in percent of its full width.
int StretchFor(const ControlRow& row, const QFont& font) {
  const double room = RoomFor(row);
  const double width = WidthFor(row, font);
  return width <= room ? kFullStretch : static_cast<int>(kFullStretch * room / width);
}

int NarrowestStretch(const QFont& font) {
  int narrowest = kFullStretch;
  for (const ControlRow& row : Inventory()) {
    if (!IsHeading(row)) narrowest = std::min(narrowest, StretchFor(row, font));
  }
  return narrowest;
}

}  // namespace

void FitFont(QWidget& client, Controls& controls) {
  QFont font = client.font();
  for (int size = kLargestFont; size > kSmallestFont; --size) {
    font.setPixelSize(size);
    if (NarrowestStretch(font) >= kLowestStretch) break;
  }
  client.setFont(font);
  for (const ControlRow& row : Inventory()) {
    // A heading has a size of its own.
    QFont narrow = ElementOf(controls, row, 0).font();
    if (std::holds_alternative<One<QLabel>>(row.control.member)) {
      QWidget& label = ElementOf(controls, row, 0);
      const int wanted = static_cast<int>(std::ceil(WidthFor(row, narrow)));
      label.resize(std::clamp(wanted, label.width(), RoomFor(row)), label.height());
    }
    const int stretch = StretchFor(row, narrow);
    if (stretch >= kFullStretch) continue;
    narrow.setStretch(stretch);
    for (int i = 0; i < row.count; ++i) ElementOf(controls, row, i).setFont(narrow);
  }
}

}  // namespace pelmora
