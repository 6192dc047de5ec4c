// Whether what the window shows stands out from its ground: the contrast of the colours that texts
// and marks are really drawn in, by the Web Content Accessibility Guidelines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <tuple>
#include <vector>

#include "movement/movement_look.h"
#include "platform/controls/drop_down_list.h"
#include "platform/look/colours.h"
#include "platform/look/control_look.h"
#include "platform/look/list_look.h"
#include "platform/look/slide_style.h"
#include "ui/look.h"

namespace pelmora {
namespace {

using namespace platform;

constexpr double kText = 4.5;
constexpr double kDisabledText = 3.5;
constexpr double kMark = 3;

double Luminance(const QColor& colour) {
  const auto linear = [](double share) {
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

// The least contrast of each text and mark in all its states; prints it at the end, as the table in
// docs/measurements.md.
class Table {
 public:
  ~Table() {
    for (const auto& [what, contrast, floor] : rows_) {
      std::printf("| %s | %.1f | %.1f |\n", what.c_str(), contrast, floor);
    }
  }
  void Check(const std::string& what, const QColor& mark, const QColor& ground, double floor,
             int state = 0) {
    const double contrast = Contrast(mark, ground);
    EXPECT_GE(contrast, floor) << what << " in state " << state;
    for (auto& [same, least, its_floor] : rows_) {
      if (same != what || its_floor != floor) continue;
      least = std::min(least, contrast);
      return;
    }
    rows_.emplace_back(what, contrast, floor);
  }

 private:
  std::vector<std::tuple<std::string, double, double>> rows_;
};

TEST(Contrast, OfTextsAndMarksIsHighEnough) {
  const QPalette palette = ProgramPalette();
  const auto colour = [&](QPalette::ColorRole role) { return palette.color(role); };
  const QColor card = colour(QPalette::Light);
  const QColor window = colour(QPalette::Window);
  const QColor highlight = colour(QPalette::Highlight);
  EXPECT_NEAR(Contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01) << "the guidelines' own";

  Table table;
  for (int bits = 0; bits < 32; ++bits) {
    const auto bit = [bits](int n) { return (bits >> n & 1) != 0; };
    const ControlState control{.enabled = bit(0),
                               .hovered = bit(1),
                               .pressed = bit(2),
                               .on = bit(3),
                               .waiting = bit(3) && bit(4)};
    const double text = control.enabled ? kText : kDisabledText;
    const ControlColours button = ButtonColoursOf(control, palette);
    const std::string is = control.enabled ? "" : ", disabled";
    table.Check("button's caption" + is, button.text, button.face, text, bits);
    table.Check("switch's word" + is, button.word, button.face, text, bits);
    for (const bool display : {false, true}) {
      const ControlColours field = FieldColoursOf(control, display, palette);
      table.Check((display ? "angle display" : "field's text") + is, field.text, field.face, text,
                  bits);
    }
    EXPECT_EQ(FieldColoursOf(control, true, palette).edge,
              FieldColoursOf({.enabled = bit(0)}, true, palette).edge)
        << "what takes no typing does not light up";
    if (control.enabled) {
      table.Check("switch's lamp", button.rim, button.face, kMark, bits);
      table.Check("button's edge, on the window", button.edge, window, kMark, bits);
      table.Check("button's edge, on a panel", button.edge, card, kMark, bits);
    }
    const LineState line_state{bit(0), bit(1), bit(2), bit(3), bit(4)};
    const LineColours line = ColoursOf(line_state, palette);
    table.Check("line of the list", line.text, line.ground, kText, bits);
    table.Check("line's \"BREAK!\"", line.strong, line.ground, kText, bits);
    table.Check("line's number", line.number, line.ground, kText, bits);
    table.Check("number as in the line above", line.repeated, line.ground, kText, bits);
  }
  const SlideColours fader = SlideColoursOf({}, palette);
  const QColor field_edge = FieldColoursOf({}, false, palette).edge;
  // clang-format off
  const std::tuple<const char*, QColor, QColor, double> cases[] = {
      {"label, on the window", colour(QPalette::WindowText), window, kText},
      {"label, on a panel", colour(QPalette::WindowText), card, kText},
      {"warning, in a dialog", kWarningColour, window, kText},
      {"warning, on a panel", kWarningColour, card, kText},
      {"label of the sequence", kSequenceColour, card, kText},
      {"label of the step", kStepColour, card, kText},
      {"label, disabled", palette.color(QPalette::Disabled, QPalette::WindowText), card, kDisabledText},
      {"entry with a port", colour(QPalette::Text), colour(QPalette::Base), kText},
      {"entry without a port", DropDownList::UnavailableColour(palette), colour(QPalette::Base), kText},
      {"field's or bar's edge", field_edge, card, kMark},
      {"selected text", colour(QPalette::HighlightedText), highlight, kText},
      {"edge of what has the focus", highlight, card, kMark},
      {"full part of the bar", highlight, colour(QPalette::Base), kMark},
      {"fader's caption", fader.text, card, kText},
      {"fader's tick", fader.tick, card, kMark},
      {"fader's groove", fader.groove_edge, card, kMark},
      {"fader's way from the centre", fader.accent, fader.groove, kMark},
      {"fader's handle", fader.handle_edge, card, kMark},
      {"fader's mark", fader.mark_edge, card, kMark},
      {"line on the handle", fader.accent, fader.handle, kMark},
      {"tool tip", colour(QPalette::ToolTipText), colour(QPalette::ToolTipBase), kText},
  };
  // clang-format on
  for (const auto& [what, mark, ground, floor] : cases) table.Check(what, mark, ground, floor);

  const MovementColours movement = MovementColoursOf(palette);
  for (const QColor& ground :
       {movement.lane, movement.odd_lane, movement.selected, movement.halted}) {
    table.Check("movement: curve", movement.curve, ground, kMark);
    table.Check("movement: curve of a channel at rest", movement.pale_curve, ground, kMark);
    table.Check("movement: line at 0 degrees", movement.zero, ground, kMark);
    table.Check("movement: breakpoint", movement.brk, ground, kMark);
    table.Check("movement: playhead", movement.head, ground, kMark);
    table.Check("movement: box beside the pointer", movement.bubble, ground, kMark);
  }
  table.Check("movement: ruler and names", movement.text, movement.window, kText);
  table.Check("movement: names of channels at rest", movement.pale_text, movement.window, kText);
  table.Check("movement: ends of the scale", movement.pale_text, movement.lane, kText);
  table.Check("movement: selected step's number", movement.number, movement.window, kText);
  table.Check("movement: value beside the pointer", movement.bubble_text, movement.bubble, kText);
  table.Check("movement: ticks of the ruler", movement.tick, movement.window, kMark);
  table.Check("movement: breakpoint's flag", movement.brk, movement.window, kMark);
  table.Check("movement: mark of a late step", movement.slow, movement.window, kMark);
}

}  // namespace
}  // namespace pelmora
