#include "ui/fit_font.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "ui/inventory.h"

namespace pelmora {
namespace {

constexpr int kLargestFont = 12;  // pixels
constexpr int kSmallestFont = 9;

constexpr int kPanelEdge = 60;  // twips between a label and the edge of its panel

constexpr int kFullStretch = 100;   // percent
constexpr int kLowestStretch = 90;  // below, a smaller font reads better than a narrower one

// The pixels that the widest text of the row's control takes with its frame, without narrowing.
double WidthFor(const ControlRow& row, const QFont& font) {
  const auto width = [&font](const QString& text, double frame) {
    return QFontMetricsF(font).horizontalAdvance(text) + frame;
  };
  QString caption = QString::fromUtf8(row.caption).remove(QLatin1Char('&'));
  // Captions that change have the widest number that they can hold.
  if (Is<Heading>(row)) return width(caption.replace("%1", "255").replace("...", "255"), 0);
  if (Is<QLabel>(row))
    return width(caption.replace("%1", caption.endsWith("bytes") ? "57330" : "15"), 0);
  if (Is<platform::CWButton>(row)) return width(caption, 36);
  if (Is<platform::PushButton>(row)) return width(caption, 8);
  if (Is<platform::Panel>(row)) return width(caption, 16);
  // Of the position fields and the angle displays the latter need the most.
  if (Is<platform::TextField>(row) && row.count > 1) return width("-63.5 \u00B0", 5);
  if (Is<platform::TextField>(row)) return width("Overflow!", 8);
  if (Is<platform::CWSlide>(row)) return width("Ch11", 2);
  if (Is<platform::DropDownList>(row)) return width("Comm8", 40);
  if (Is<platform::CWNumEdit>(row)) return width("-32768 ms", 30);
  return 0;  // no text of its own
}

// The pixels that the row's text may take: for a label everything up to the next control at its
// right or the edge of its panel, for others what is inside them.
int RoomFor(const ControlRow& row) {
  if (!Is<QLabel>(row) || Is<Heading>(row)) return Pixels(row.width);
  int right = kFormWidth;
  for (const ControlRow& other : Inventory()) {
    if (other.control.name == std::string_view(row.parent.name)) {
      right = std::min(right, other.width - kPanelEdge);
    }
    const bool level = other.top < row.top + row.height && row.top < other.top + other.height;
    if (other.parent.member == row.parent.member && level && other.left > row.left) {
      right = std::min(right, other.left);
    }
  }
  return Pixels(std::max(row.width, right - row.left));
}

// How far the control's text has to be narrowed to fit, in percent of its full width.
int StretchFor(const ControlRow& row, const QFont& font) {
  const double room = RoomFor(row);
  const double width = WidthFor(row, font);
  return width <= room ? kFullStretch : static_cast<int>(kFullStretch * room / width);
}

bool Fits(const QFont& font) {
  return std::ranges::all_of(Inventory(), [&font](const ControlRow& row) {
    return Is<Heading>(row) || StretchFor(row, font) >= kLowestStretch;
  });
}

}  // namespace

void FitFont(QWidget& client) {
  QFont font = client.font();
  for (int size = kLargestFont; size >= kSmallestFont; --size) {
    font.setPixelSize(size);
    if (Fits(font)) break;
  }
  client.setFont(font);
  for (const ControlRow& row : Inventory()) {
    for (int i = 0; i < row.count; ++i) {
      auto& control = *client.findChild<QWidget*>(ElementName(row, i));
      QFont narrow = control.font();  // a heading has a size of its own
      if (Is<QLabel>(row)) {
        const int wanted = static_cast<int>(std::ceil(WidthFor(row, narrow)));
        control.resize(std::clamp(wanted, control.width(), RoomFor(row)), control.height());
      }
      const int stretch = StretchFor(row, narrow);
      if (stretch >= kFullStretch) continue;
      narrow.setStretch(stretch);
      control.setFont(narrow);
    }
  }
}

}  // namespace pelmora
