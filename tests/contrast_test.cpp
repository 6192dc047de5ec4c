// Whether what the window shows stands out from its ground: the contrast of the colours that texts
// and marks are really drawn in, by the Web Content Accessibility Guidelines.
#include <QAbstractItemView>
#include <QComboBox>
#include <QImage>
#include <QtTest/QTest>
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "platform/control_look.h"
#include "platform/drop_down_list.h"
#include "platform/list_look.h"
#include "platform/slide_style.h"
#include "tests/window_fixture.h"
#include "ui/look.h"

namespace pelmora {
namespace {

using platform::ButtonColoursOf;
using platform::ControlColours;
using platform::ControlState;
using platform::FieldColoursOf;
using platform::SlideColours;
using platform::SlideColoursOf;

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
  const double contrast = Contrast(mark, ground);
  EXPECT_GE(contrast, floor) << what;
  testing::Test::RecordProperty(what, std::to_string(contrast));
}

TEST(Contrast, OfTextsAndMarksIsHighEnough) {
  const QPalette palette = ProgramPalette();
  const QColor window = palette.color(QPalette::Window);
  const QColor card = palette.color(QPalette::Light);
  const QColor text = palette.color(QPalette::WindowText);
  const QColor base = palette.color(QPalette::Base);
  const QColor highlight = palette.color(QPalette::Highlight);
  const auto faded = [&](QPalette::ColorRole role) {
    return palette.color(QPalette::Disabled, role);
  };

  const ControlColours button = ButtonColoursOf({}, palette);
  const ControlColours hovered = ButtonColoursOf({.hovered = true}, palette);
  const ControlColours pressed = ButtonColoursOf({.pressed = true}, palette);
  const ControlColours off = ButtonColoursOf({.enabled = false}, palette);
  const ControlColours on = ButtonColoursOf({.on = true}, palette);
  const ControlColours on_hovered = ButtonColoursOf({.hovered = true, .on = true}, palette);
  const ControlColours locked_on = ButtonColoursOf({.enabled = false, .on = true}, palette);
  const ControlColours waiting = ButtonColoursOf({.on = true, .waiting = true}, palette);
  const ControlColours field = FieldColoursOf({}, false, palette);
  const ControlColours display = FieldColoursOf({}, true, palette);
  const ControlColours locked_field = FieldColoursOf({.enabled = false}, false, palette);
  const SlideColours fader = SlideColoursOf({}, palette);
  const SlideColours locked_fader = SlideColoursOf({.enabled = false}, palette);

  struct Case {
    const char* what;
    QColor mark;
    QColor ground;
    double floor;
  };
  const Case cases[] = {
      {"label, on the window", text, window, kText},
      {"label, on a panel", text, card, kText},
      {"label of the sequence", kSequenceColour, card, kText},
      {"label of the step", kStepColour, card, kText},
      {"label, disabled, on the window", faded(QPalette::WindowText), window, kDisabledText},
      {"label, disabled, on a panel", faded(QPalette::WindowText), card, kDisabledText},
      {"button's caption", button.text, button.face, kText},
      {"button's caption, hovered", hovered.text, hovered.face, kText},
      {"button's caption, pressed", pressed.text, pressed.face, kText},
      {"button's caption, disabled", off.text, off.face, kDisabledText},
      {"button's edge, on the window", button.edge, window, kMark},
      {"button's edge, on a panel", button.edge, card, kMark},
      {"button's edge, hovered", hovered.edge, card, kMark},
      {"switch: \"OFF\"", button.word, button.face, kText},
      {"switch: \"OFF\", disabled", off.word, off.face, kDisabledText},
      {"switch: lamp, Off", button.rim, button.face, kMark},
      {"switch: \"ON\"", on.word, on.face, kText},
      {"switch: \"ON\", hovered", on_hovered.word, on_hovered.face, kText},
      {"switch: \"ON\", disabled", locked_on.word, locked_on.face, kDisabledText},
      {"switch: caption, On", on.text, on.face, kText},
      {"switch: caption, On, disabled", locked_on.text, locked_on.face, kDisabledText},
      {"switch: edge of the lamp, On", on.rim, on.face, kMark},
      {"switch: edge, On, on the window", on.edge, window, kMark},
      {"switch: caption, waiting", waiting.text, waiting.face, kText},
      {"switch: edge of the lamp, waiting", waiting.rim, waiting.face, kMark},
      {"switch: edge, waiting, on a panel", waiting.edge, card, kMark},
      {"port list, locked on its entry", on.text, on.face, kText},
      {"port list: entry with a port", palette.color(QPalette::Text), base, kText},
      {"port list: entry without a port", platform::DropDownList::PaleColour(palette), base, kText},
      {"field's text", field.text, field.face, kText},
      {"field's text, disabled", locked_field.text, locked_field.face, kDisabledText},
      {"field's edge, on a panel", field.edge, card, kMark},
      {"angle display", display.text, display.face, kText},
      {"angle display, disabled", locked_field.text, display.face, kDisabledText},
      {"selected text", palette.color(QPalette::HighlightedText), highlight, kText},
      {"edge of what has the focus", highlight, card, kMark},
      {"bar: text on the empty part", palette.color(QPalette::Text), base, kText},
      {"bar: text on the full part", palette.color(QPalette::HighlightedText), highlight, kText},
      {"bar: full part beside the empty one", highlight, base, kMark},
      {"bar's edge, on a panel", field.edge, card, kMark},
      {"fader's caption", fader.text, card, kText},
      {"fader's caption, disabled", locked_fader.text, card, kDisabledText},
      {"fader: tick", fader.tick, card, kMark},
      {"fader: tick at an end or the centre", fader.major_tick, card, kMark},
      {"fader: edge of the groove", fader.groove_edge, card, kMark},
      {"fader: way from the centre, in the groove", fader.accent, fader.groove, kMark},
      {"fader: edge of the handle", fader.handle_edge, card, kMark},
      {"fader: line on the handle", fader.accent, fader.handle, kMark},
      {"tool tip", palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase),
       kText},
  };
  for (const Case& c : cases) Check(c.what, c.mark, c.ground, c.floor);

  struct LineCase {
    const char* what;
    platform::LineState state;
  };
  const LineCase lines[] = {
      {"plain", {}},
      {"striped", {.odd = true}},
      {"dragged", {.dragged = true}},
      {"selected", {.selected = true}},
      {"halted", {.selected = true, .halted = true}},
      {"disabled", {.odd = true, .enabled = false}},
      {"selected, disabled", {.selected = true, .enabled = false}},
      {"halted, disabled", {.selected = true, .halted = true, .enabled = false}},
  };
  for (const LineCase& c : lines) {
    const platform::LineColours line = ColoursOf(c.state, palette);
    const std::string name = std::string("line of the list, ") + c.what;
    Check(name + ": text", line.text, line.ground, kText);
    Check(name + ": \"BREAK!\"", line.strong, line.ground, kText);
    Check(name + ": number", line.number, line.ground, kText);
  }
}

class Look : public WindowTest {
 protected:
  QImage Drawn(const QString& control) {
    QWidget& widget = hands->Find<QWidget>(control);
    QTest::mouseMove(&hands->Window(), QPoint(1, 1));
    return widget.grab().toImage();
  }

  void ExpectDrawn(const QString& control, const std::vector<QColor>& colours) {
    const QImage image = Drawn(control);
    for (const QColor& colour : colours) {
      int pixels = 0;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) pixels += image.pixelColor(x, y) == colour;
      }
      EXPECT_GE(pixels, 8) << control.toStdString() << ' ' << colour.name().toStdString();
    }
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
  SetSlider(3, 200);
  ExpectDrawn("CommandAdd", {button.face, button.edge});
  ExpectDrawn("ComboPort", {button.face, button.edge});
  ExpectDrawn("CWButtonMainOnOff", {button.face, button.edge});
  ExpectDrawn("Text1_3", {field.face, field.edge});
  ExpectDrawn("Text1_15", {display.face});
  EXPECT_NE(display.face, field.face) << "a display looks like a field to type in";
  ExpectDrawn("CWNumEditTimeStep", {field.face, field.edge});
  ExpectDrawn("CWSlide1_3", {fader.tick, fader.major_tick, fader.groove, fader.groove_edge,
                             fader.accent, fader.handle, fader.handle_edge});
  Connect();
  ExpectDrawn("ComboPort", {on.face, on.edge});
}

TEST_F(Look, FadersStandOverTheMiddleOfTheirFields) {
  const SlideColours fader = SlideColoursOf({}, ProgramPalette());
  for (const int channel : {0, 5, 11}) {
    const QString number = QString::number(channel);
    const QImage image = Drawn("CWSlide1_" + number);
    const int row = image.height() / 4 + 3;  // between two ticks
    int first = image.width();
    int last = -1;
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, row) != fader.groove) continue;
      first = std::min(first, x);
      last = std::max(last, x);
    }
    ASSERT_GE(last, first);
    const int axis = hands->Find<QWidget>("CWSlide1_" + number).x() + (first + last) / 2;
    EXPECT_EQ(axis, hands->Find<QWidget>("Text1_" + number).geometry().center().x()) << channel;
  }
}

TEST_F(Look, OpenPortListIsPaleWhereThereIsNoPort) {
  auto& combo = hands->Find<QComboBox>("ComboPort");
  combo.showPopup();
  EXPECT_FALSE(combo.itemData(0, Qt::ForegroundRole).isValid());
  const QColor pale = platform::DropDownList::PaleColour(combo.palette());
  EXPECT_EQ(combo.itemData(1, Qt::ForegroundRole).value<QColor>(), pale);
  EXPECT_NE(combo.model()->flags(combo.model()->index(1, 0)) & Qt::ItemIsEnabled, 0);
  const QWidget& open = *combo.view()->viewport();
  EXPECT_EQ(open.palette().color(open.backgroundRole()), Qt::white);
  combo.hidePopup();
}

}  // namespace
}  // namespace pelmora
