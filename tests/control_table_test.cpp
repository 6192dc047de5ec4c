// Every control and every menu item at start-up, beside figures that are written down here.
#include <QAccessible>
#include <QGroupBox>
#include <QMenuBar>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class ControlTable : public WindowTest {
 protected:
  QString Shown(const QString& name) const {
    QWidget& control = hands->Find<QWidget>(name);
    if (auto* button = qobject_cast<QPushButton*>(&control)) return button->text().remove('&');
    if (auto* panel = qobject_cast<QGroupBox*>(&control)) return panel->title();
    if (auto* slide = qobject_cast<platform::CWSlide*>(&control)) return slide->Caption();
    const bool has_no_text = control.inherits("QAbstractItemView") || name == "ProgressBarFlash";
    return has_no_text ? QString() : hands->Read(name);
  }
};

struct Control {
  const char* name;
  const char* parent;
  const char* text;
  int left, top, width, height;  // pixels, within the parent
  const char* start = "";
  const char* told = nullptr;  // its name for assistive technology where that is not the text
};

// Of an array the first and the last element.
// clang-format off
constexpr Control kControls[] = {
    {"FrameMan", "Form1", "", 8, 0, 497, 413, "", "Channel editor"},
    {"CommandMoreSeq", "FrameMan", "+", 8, 12, 33, 25, "", "Next sequence"},
    {"CommandLessSeq", "FrameMan", "-", 40, 12, 33, 25, "", "Previous sequence"},
    {"LabelSeq", "FrameMan", "Sequence N° 0", 88, 16, 153, 25},
    {"LabelStep", "FrameMan", "Step N° ...", 376, 16, 105, 25},
    {"CWSlide1_0", "FrameMan", "Ch0", 8, 48, 33, 273, "", "Ch0 position"},
    {"CWSlide1_11", "FrameMan", "Ch11", 448, 48, 33, 273, "", "Ch11 position"},
    {"Text1_12", "FrameMan", "0 °", 8, 332, 41, 19, "read only", "Ch0 angle"},
    {"Text1_23", "FrameMan", "0 °", 448, 332, 41, 19, "read only", "Ch11 angle"},
    {"Text1_0", "FrameMan", "0", 8, 352, 41, 19, "", "Ch0 offset"},
    {"Text1_11", "FrameMan", "0", 448, 352, 41, 19, "", "Ch11 offset"},
    {"CommandUpdate", "FrameMan", "Reset", 8, 376, 121, 25},
    {"Label1", "FrameMan", "Step Duration", 288, 384, 73, 17},
    {"CWNumEditTimeStep", "FrameMan", "1000 ms", 368, 380, 121, 21, "", "Step Duration"},
    {"Label2", "Form1", "Serial Comm Port:", 512, 16, 89, 25},
    {"ComboPort", "Form1", "", 512, 32, 129, 21, "", "Serial Comm Port"},
    {"CWButtonMainOnOff", "Form1", "PC Control Enable", 648, 16, 193, 37},
    {"FrameSer", "Form1", "Serial Comm Debug", 512, 68, 129, 77, "hidden"},
    {"Echo", "FrameSer", "", 16, 24, 85, 19, "read only", "Last received"},
    {"CommandInBuff", "FrameSer", "InBuff", 16, 48, 89, 21, "", "Bytes waiting"},
    {"FrameInfo", "Form1", "Flash Data Information", 648, 68, 193, 77, "hidden"},
    {"LabelByteCapt", "FrameInfo", "Flash Data", 16, 28, 57, 17},
    {"LabelByte", "FrameInfo", "0 bytes", 96, 24, 81, 21},
    {"CommandOffset", "FrameInfo", "OffSet Seq. 0", 16, 52, 73, 17},
    {"LabelOffset", "FrameInfo", "0 bytes", 96, 48, 81, 21},
    {"FrameFlash", "Form1", "Flash Program", 512, 152, 329, 93, "hidden"},
    {"CommandFlash", "FrameFlash", "Program  Seq.", 8, 20, 81, 25},
    {"CommandRead", "FrameFlash", "Read Seq.", 88, 20, 81, 25},
    {"Command1", "FrameFlash", "Abort", 184, 20, 57, 25, "disabled"},
    {"CommandErase", "FrameFlash", "Erease", 256, 20, 57, 25},
    {"ProgressBarFlash", "FrameFlash", "", 8, 56, 305, 25, "hidden", "Flash transfer"},
    {"FrameRealEmu", "Form1", "Real Emulator", 512, 252, 329, 61, "hidden"},
    {"CWButtonRealEmu", "FrameRealEmu", "Real Emu", 16, 24, 97, 25},
    {"LabelSeqEmu", "FrameRealEmu", "Sequence N° 0", 128, 28, 113, 25},
    {"FramePCEmu", "Form1", "PC Sequence Emulator", 512, 320, 329, 93},
    {"CWButtonEmuPC", "FramePCEmu", "PC Emu", 16, 24, 97, 25},
    {"CommandContinue", "FramePCEmu", "Continue", 120, 24, 97, 25},
    {"CommandRepeat", "FramePCEmu", "Repeat", 224, 24, 97, 25},
    {"CommandBrk", "FramePCEmu", "Set/Reset Break", 120, 56, 97, 25},
    {"CommandResBrk", "FramePCEmu", "Reset  All Break", 224, 56, 97, 25},
    {"ListSequence", "Form1", "", 8, 416, 713, 251, "", "Steps of the sequence"},
    {"FrameBuffEdit", "Form1", "Buffer Editing", 728, 416, 113, 249},
    {"CommandAdd", "FrameBuffEdit", "Add", 8, 20, 97, 25},
    {"CommandRem", "FrameBuffEdit", "Remove", 8, 44, 97, 25},
    {"CommandReplace", "FrameBuffEdit", "Replace", 8, 68, 97, 25},
    {"CommandClear", "FrameBuffEdit", "Clear Sequence", 8, 104, 97, 25},
    {"CommandClearAll", "FrameBuffEdit", "Clear All", 8, 128, 97, 25},
    {"CommandInterpolate", "FrameBuffEdit", "Interpolate", 8, 160, 97, 25},
    {"CommandDwn", "FrameBuffEdit", "<---", 8, 192, 49, 49, "", "Previous step"},
    {"CommandUp", "FrameBuffEdit", "--->", 56, 192, 49, 49, "", "Next step"},
    {"CommandStart", "Form1", "ON", 160, 0, 49, 33, "hidden"},
    {"CommandStop", "Form1", "OFF", 208, 0, 49, 33, "hidden"},
};
// clang-format on

TEST_F(ControlTable, EveryControlStandsInItsPlaceWithItsTextAndName) {
  EXPECT_EQ(form->windowTitle(), "Pelmora V 3.0");
  EXPECT_EQ(form->centralWidget()->size(), QSize(849, 674));
  EXPECT_EQ(form->minimumSize(), form->maximumSize());
  EXPECT_EQ(timer.Interval(), 20);
  for (int i = 0; i < 12; ++i) EXPECT_EQ(hands->Read(QString("CWSlide1_%1").arg(i)), "128");
  for (const char* name : {"CWButtonMainOnOff", "CWButtonEmuPC", "CWButtonRealEmu"}) {
    EXPECT_EQ(hands->Read(name), "Off");
  }
  for (const Control& c : kControls) {
    SCOPED_TRACE(c.name);
    QWidget& control = hands->Find<QWidget>(c.name);
    const QString parent = control.parentWidget()->objectName();
    EXPECT_EQ(control.parentWidget() == form->centralWidget() ? "Form1" : parent, c.parent);
    EXPECT_EQ(Shown(c.name), c.text);
    EXPECT_EQ(control.pos(), QPoint(c.left, c.top));
    EXPECT_EQ(control.height(), c.height);
    // A label may take the room beside it.
    EXPECT_EQ(control.inherits("QLabel") ? c.width : control.width(), c.width);
    EXPECT_GE(control.width(), c.width);
    auto* field = qobject_cast<QLineEdit*>(&control);
    const QString start = control.isHidden()                             ? "hidden"
                          : !control.isEnabledTo(control.parentWidget()) ? "disabled"
                          : field && field->isReadOnly()                 ? "read only"
                                                                         : "";
    EXPECT_EQ(start, c.start);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&control)->text(QAccessible::Name),
              c.told ? c.told : c.text);
  }
}

TEST_F(ControlTable, TheWindowsButtonsAndItsColouredLabels) {
  const auto buttons = Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                       Qt::WindowCloseButtonHint | Qt::WindowContextHelpButtonHint;
  EXPECT_EQ(form->windowFlags() & buttons,
            Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
  const std::tuple<const char*, QColor, bool> labels[] = {
      {"LabelSeq", {0xC8, 0x10, 0x10}, true},
      {"LabelStep", {0, 0, 0x80}, true},
      {"Label1", {0, 0, 0x80}, false},
  };
  for (const auto& [name, colour, heading] : labels) {
    const auto& label = hands->Find<QLabel>(name);
    EXPECT_EQ(label.palette().color(label.foregroundRole()), colour) << name;
    EXPECT_EQ(label.font().bold(), heading) << name;
    EXPECT_EQ(label.fontInfo().pixelSize() == 16, heading) << name << label.fontInfo().pixelSize();
  }
}

TEST_F(ControlTable, TheDialogOfTheInterpolation) {
  for (int i = 0; i < 2; ++i) Press("CommandAdd");
  Press("CommandInterpolate");
  const auto& dialog = hands->Find<QDialog>("DialogInterp");
  EXPECT_EQ(dialog.windowTitle(), "Interpolation");
  EXPECT_EQ(dialog.size(), QSize(375, 138));
  const std::pair<const char*, QRect> places[] = {
      {"OptionINterp_0", {24, 8, 201, 29}},  {"OptionINterp_1", {24, 36, 201, 29}},
      {"OKButton", {272, 8, 81, 25}},        {"CancelButton", {272, 36, 81, 25}},
      {"CWNumEditInterp", {24, 76, 73, 21}}, {"Label1", {112, 80, 153, 21}}};
  for (const auto& [name, place] : places) {
    QRect shown = dialog.findChild<QWidget*>(name)->geometry();
    if (shown.width() > place.width() && *name == 'L') shown.setWidth(place.width());
    EXPECT_EQ(shown, place) << name;
  }
}

TEST_F(ControlTable, MenuItems) {
  QString menus;
  for (const QAction* menu : form->menuBar()->actions()) {
    for (const QAction* item : menu->menu()->actions()) {
      menus += menu->text() + '/' + item->text() + ' ' + item->shortcut().toString();
      menus += item->isChecked() ? "[x]\n" : item->isCheckable() ? "[ ]\n" : "\n";
    }
  }
  EXPECT_EQ(menus.remove('&').toStdString(),
            "File/Save Buffer Ctrl+S\n"
            "File/Load Buffer Ctrl+L\n"
            "File/Quit Ctrl+Q\n"
            "Advanced/Flash Progr [ ]\n"
            "Advanced/Real Emulator [ ]\n"
            "Advanced/Advanced Debug Informations [ ]\n"
            "Advanced/Reset \n");
}

}  // namespace
}  // namespace pelmora
