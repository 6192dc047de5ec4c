// Whether what the window shows stands out from its ground: the contrast of the colours that texts
// and marks are really drawn in, by the Web Content Accessibility Guidelines.
#include <QAbstractItemView>
#include <QImage>
#include <cmath>
#include <string>
#include <vector>

#include "platform/controls/drop_down_list.h"
#include "platform/look/colours.h"
#include "platform/look/control_look.h"
#include "platform/look/list_look.h"
#include "platform/look/slide_style.h"
#include "tests/window_fixture.h"
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

void Check(const std::string& what, const QColor& mark, const QColor& ground, double floor) {
  EXPECT_GE(Contrast(mark, ground), floor) << what;
}

TEST(Contrast, OfTextsAndMarksIsHighEnough) {
  const QPalette palette = ProgramPalette();
  const auto colour = [&](QPalette::ColorRole role) { return palette.color(role); };
  const QColor card = colour(QPalette::Light);
  const QColor window = colour(QPalette::Window);
  const QColor highlight = colour(QPalette::Highlight);
  EXPECT_NEAR(Contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01) << "the guidelines' own";

  for (int bits = 0; bits < 32; ++bits) {
    const auto bit = [bits](int n) { return (bits >> n & 1) != 0; };
    const std::string state = " in state " + std::to_string(bits);
    const ControlState control{.enabled = bit(0),
                               .hovered = bit(1),
                               .pressed = bit(2),
                               .on = bit(3),
                               .waiting = bit(3) && bit(4)};
    const double text = control.enabled ? kText : kDisabledText;
    const ControlColours button = ButtonColoursOf(control, palette);
    Check("button's caption" + state, button.text, button.face, text);
    Check("switch's word" + state, button.word, button.face, text);
    for (const bool display : {false, true}) {
      const ControlColours field = FieldColoursOf(control, display, palette);
      Check("field's text" + state, field.text, field.face, text);
    }
    if (control.enabled) {
      Check("lamp" + state, button.rim, button.face, kMark);
      Check("edge on the window" + state, button.edge, window, kMark);
      Check("edge on a panel" + state, button.edge, card, kMark);
    }
    const LineState line_state{bit(0), bit(1), bit(2), bit(3), bit(4)};
    const LineColours line = ColoursOf(line_state, palette);
    Check("line" + state, line.text, line.ground, kText);
    Check("\"BREAK!\"" + state, line.strong, line.ground, kText);
    Check("line's number" + state, line.number, line.ground, kText);
    Check("number as in the line above" + state, line.repeated, line.ground, kText);
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
      {"entry without a port", DropDownList::PaleColour(palette), colour(QPalette::Base), kText},
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
  for (const auto& [what, mark, ground, floor] : cases) Check(what, mark, ground, floor);
}

class Look : public WindowTest {
 protected:
  QImage Drawn(const QString& control) {
    QTest::mouseMove(&hands->Window(), QPoint(1, 1));
    return hands->Find<QWidget>(control).grab().toImage();
  }
};

// The table above says what the colours are worth; these are drawn.
TEST_F(Look, ControlsAreDrawnInTheirColours) {
  const QPalette palette = ProgramPalette();
  const ControlColours button = ButtonColoursOf({}, palette);
  const ControlColours on = ButtonColoursOf({.on = true}, palette);
  const ControlColours field = FieldColoursOf({}, false, palette);
  const ControlColours display = FieldColoursOf({}, true, palette);
  const SlideColours fader = SlideColoursOf({}, palette);
  EXPECT_NE(display.face, field.face) << "a display looks like a field to type in";
  EXPECT_NE(ButtonColoursOf({.hovered = true}, palette).edge, button.edge);
  EXPECT_NE(ColoursOf({.selected = true, .halted = true}, palette).ground,
            ColoursOf({.selected = true}, palette).ground);
  EXPECT_EQ(qApp->style()->pixelMetric(QStyle::PM_MessageBoxIconSize), 32);
  EXPECT_EQ(qApp->style()->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons), 0);
  SetSlider(3, 200);
  const auto pixels = [](const QImage& image, const QColor& colour) {
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) found += image.pixelColor(x, y) == colour;
    }
    return found;
  };
  const auto expect_drawn = [&](const char* control, const std::vector<QColor>& colours) {
    for (const QColor& colour : colours) {
      EXPECT_GE(pixels(Drawn(control), colour), 8) << control << colour.name().toStdString();
    }
  };
  expect_drawn("CommandAdd", {button.face, button.edge});
  expect_drawn("ComboPort", {button.face, button.edge});
  expect_drawn("CWButtonMainOnOff", {button.face, button.edge});
  expect_drawn("Text1_3", {field.face, field.edge});
  expect_drawn("Text1_15", {display.face});
  expect_drawn("CWNumEditTimeStep", {field.face, field.edge});
  expect_drawn("CWSlide1_3", {fader.tick, fader.major_tick, fader.groove, fader.groove_edge,
                              fader.accent, fader.handle, fader.handle_edge});
  const auto word = [&] { return Drawn("CWButtonMainOnOff").copy(155, 0, 38, 37); };
  const int off = pixels(word(), button.word);
  Connect();
  expect_drawn("ComboPort", {on.face, on.edge});
  Press("CWButtonMainOnOff");
  EXPECT_GT(off, pixels(word(), on.word)) << "\"OFF\" takes more ink than \"ON\"";
}

TEST_F(Look, FadersStandOverTheMiddleOfTheirFields) {
  const QColor groove = SlideColoursOf({}, ProgramPalette()).groove;
  for (const QString channel : {"0", "5", "11"}) {
    const QImage image = Drawn("CWSlide1_" + channel);
    const int row = image.height() / 4 + 3;  // between two ticks
    std::vector<int> columns;
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, row) == groove) columns.push_back(x);
    }
    ASSERT_FALSE(columns.empty());
    const int axis =
        hands->Find<QWidget>("CWSlide1_" + channel).x() + (columns.front() + columns.back()) / 2;
    EXPECT_EQ(axis, hands->Find<QWidget>("Text1_" + channel).geometry().center().x());
  }
}

TEST_F(Look, OpenPortListIsPaleWhereThereIsNoPort) {
  auto& combo = hands->Find<QComboBox>("ComboPort");
  combo.showPopup();
  EXPECT_FALSE(combo.itemData(0, Qt::ForegroundRole).isValid());
  const QColor pale = DropDownList::PaleColour(combo.palette());
  EXPECT_EQ(combo.itemData(1, Qt::ForegroundRole).value<QColor>(), pale);
  EXPECT_NE(combo.model()->flags(combo.model()->index(1, 0)) & Qt::ItemIsEnabled, 0);
  const QWidget& open = *combo.view()->viewport();
  EXPECT_EQ(open.palette().color(open.backgroundRole()), Qt::white);
  combo.hidePopup();
}

}  // namespace
}  // namespace pelmora
