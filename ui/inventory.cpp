#include "ui/inventory.h"

#include <array>
#include <type_traits>
#include <utility>

#include "edit/edited_sequence.h"

namespace pelmora {
namespace {

template <class Control>
Control*& ElementOf(Control*& member, std::size_t) {
  return member;
}
template <class Control, std::size_t count>
Control*& ElementOf(std::array<Control*, count>& members, std::size_t index) {
  return members.at(index);
}

template <auto member>
using KindOf = std::remove_pointer_t<
    std::remove_reference_t<decltype(ElementOf(std::declval<Controls&>().*member, 0))>>;

template <auto member>
QWidget* Make(Controls& controls, std::size_t index, const QString& caption, QWidget* parent) {
  auto*& control = ElementOf(controls.*member, index);
  if constexpr (std::is_constructible_v<KindOf<member>, const QString&, QWidget*>) {
    control = new KindOf<member>(caption, parent);
  } else {
    control = new KindOf<member>(parent);
  }
  return control;
}

template <auto member>
constexpr NamedControl Named(const char* name) {
  return {name, &KindOf<member>::staticMetaObject, &Make<member>};
}

// A member of `Controls` and its name as one word. One that doesn't exist, or is no panel or menu
// item where one is wanted, doesn't compile.
#define CONTROL(member) Named<&Controls::member>(#member)
#define NAMED(member) \
  { #member, &Controls::member }

// clang-format off
constexpr ControlRow kControls[] = {
  {CONTROL(FrameMan),            {},                    "",                      "Channel editor",          120,    0,  7455, 6195, ""},
  {CONTROL(CommandMoreSeq),      NAMED(FrameMan),       "+",                     "Next sequence",           120,  180,   495,  375, "Goes to the next sequence"},
  {CONTROL(CommandLessSeq),      NAMED(FrameMan),       "-",                     "Previous sequence",       600,  180,   495,  375, "Goes to the previous sequence"},
  {CONTROL(LabelSeq),            NAMED(FrameMan),       kSequenceCaption,        "",                       1320,  240,  2295,  375, ""},
  {CONTROL(LabelStep),           NAMED(FrameMan),       kNoStepCaption,          "",                       5640,  240,  1575,  375, ""},
  {CONTROL(CWSlide1),            NAMED(FrameMan),       "Ch%1",                  "Ch%1 position",           120,  720,   495, 4095, "", Start::kVisible, kChannels, 600, 0},
  {CONTROL(Text1),               NAMED(FrameMan),       "0 \u00B0",              "Ch%1 angle",              120, 4980,   615,  285, "Angle of Ch%1 in degrees; shown, not typed", Start::kReadOnly, kChannels, 600, kChannels},
  {CONTROL(Text1),               NAMED(FrameMan),       "0",                     "Ch%1 offset",             120, 5280,   615,  285, "Offset of Ch%1 from its centre in half degrees, -128 to 127; Enter sets it", Start::kVisible, kChannels, 600, 0},
  {CONTROL(CommandUpdate),       NAMED(FrameMan),       "Rese&t",                "",                        120, 5640,  1815,  375, "Centres all twelve channels; the servos whose channel was off centre follow"},
  {CONTROL(Label1),              NAMED(FrameMan),       "Step Duration",         "",                       4320, 5760,  1095,  255, ""},
  {CONTROL(CWNumEditTimeStep),   NAMED(FrameMan),       "",                      "Step Duration",          5520, 5700,  1815,  315, "How long the step lasts, 20 to 32767 ms; arrows go by 20, Page Up and Page Down by 200"},

  {CONTROL(Label2),              {},                    "Serial Comm Port:",     "",                       7680,  240,  1335,  375, ""},
  {CONTROL(ComboPort),           {},                    "",                      "Serial Comm Port",       7680,  480,  1935,  315, ""},
  {CONTROL(CWButtonMainOnOff),   {},                    "PC C&ontrol Enable",    "",                       9720,  240,  2895,  555, "Tells the board to listen to the PC, or no longer"},

  {CONTROL(FrameSer),            {},                    "Serial Comm Debug",     "",                       7680, 1020,  1935, 1155, "", Start::kHidden},
  {CONTROL(Echo),                NAMED(FrameSer),       "",                      "Last received",           240,  360,  1275,  285, "The last byte or word from the line; a click empties it and drops the bytes that wait", Start::kReadOnly},
  {CONTROL(CommandInBuff),       NAMED(FrameSer),       "InBuff",                "Bytes waiting",           240,  720,  1335,  315, "Shows how many received bytes wait to be taken"},

  {CONTROL(FrameInfo),           {},                    "Flash Data Information", "",                       9720, 1020,  2895, 1155, "", Start::kHidden},
  {CONTROL(LabelByteCapt),       NAMED(FrameInfo),      "Flash Data",            "",                        240,  420,   855,  255, ""},
  {CONTROL(LabelByte),           NAMED(FrameInfo),      kBytesCaption,           "",                       1440,  360,  1215,  315, ""},
  {CONTROL(CommandOffset),       NAMED(FrameInfo),      kOffsetCaption,          "",                        240,  780,  1095,  255, ""},
  {CONTROL(LabelOffset),         NAMED(FrameInfo),      kBytesCaption,           "",                       1440,  720,  1215,  315, ""},

  {CONTROL(FrameFlash),          {},                    "Flash Program",         "",                       7680, 2280,  4935, 1395, "", Start::kHidden},
  {CONTROL(CommandFlash),        NAMED(FrameFlash),     "Program  Seq.",         "",                        120,  300,  1215,  375, "Erases the board, then writes all 16 sequences into it"},
  {CONTROL(CommandRead),         NAMED(FrameFlash),     "Read Seq.",             "",                       1320,  300,  1215,  375, "Empties the program first, then reads all 16 sequences from the board"},
  {CONTROL(Command1),            NAMED(FrameFlash),     "A&bort",                "",                       2760,  300,   855,  375, "Ends the transfer that is running", Start::kDisabled},
  {CONTROL(CommandErase),        NAMED(FrameFlash),     "Erease",                "",                       3840,  300,   855,  375, "Empties the board's memory and waits until the board has done it"},
  {CONTROL(LabelErase),          NAMED(FrameFlash),     "Erasing...",            "",                        120,  840,  4575,  375, "", Start::kHidden},
  {CONTROL(LabelNotStored),      NAMED(FrameFlash),     kNotStoredCaption,       "",                        120,  840,  4575,  375, "\"Program  Seq.\" writes what is stored; going to another sequence stores the list", Start::kHidden},
  {CONTROL(ProgressBarFlash),    NAMED(FrameFlash),     "",                      "Flash transfer",          120,  840,  4575,  375, "", Start::kHidden},

  {CONTROL(FrameRealEmu),        {},                    "Real Emulator",         "",                       7680, 3780,  4935,  915, "", Start::kHidden},
  {CONTROL(CWButtonRealEmu),     NAMED(FrameRealEmu),   "Real Em&u",             "",                        240,  360,  1455,  375, "Lets the board play the current sequence from its memory, or stops it"},
  {CONTROL(LabelSeqEmu),         NAMED(FrameRealEmu),   kSequenceCaption,        "",                       1920,  420,  1695,  375, ""},

  {CONTROL(FramePCEmu),          {},                    "PC Sequence Emulator",  "",                       7680, 4800,  4935, 1395, ""},
  {CONTROL(CWButtonEmuPC),       NAMED(FramePCEmu),     "PC E&mu",               "",                        240,  360,  1455,  375, "Plays the list on the PC from the selected step, or stops"},
  {CONTROL(CommandContinue),     NAMED(FramePCEmu),     "Co&ntinue",             "",                       1800,  360,  1455,  375, "Goes on from the breakpoint"},
  {CONTROL(CommandRepeat),       NAMED(FramePCEmu),     "Re&peat",               "",                       3360,  360,  1455,  375, "Goes back to the breakpoint before this one and plays from there"},
  {CONTROL(CommandBrk),          NAMED(FramePCEmu),     "&Set/Reset Break",      "",                       1800,  840,  1455,  375, "Sets a breakpoint on the selected step, or removes it"},
  {CONTROL(CommandResBrk),       NAMED(FramePCEmu),     "Reset  All Brea&k",     "",                       3360,  840,  1455,  375, "Removes all breakpoints"},

  {CONTROL(ListSequence),        {},                    "",                      "Steps of the sequence",   120, 6240, 10695, 3765, ""},

  {CONTROL(FrameBuffEdit),       {},                    "Buffer Editing",        "",                      10920, 6240,  1695, 3735, ""},
  {CONTROL(CommandAdd),          NAMED(FrameBuffEdit),  "&Add",                  "",                        120,  300,  1455,  375, "Inserts the pose and duration above as a step below the selected one"},
  {CONTROL(CommandRem),          NAMED(FrameBuffEdit),  "&Remove",               "",                        120,  660,  1455,  375, "Removes the selected step, as Delete in the list does"},
  {CONTROL(CommandReplace),      NAMED(FrameBuffEdit),  "Repla&ce",              "",                        120, 1020,  1455,  375, "Puts the pose and duration above in place of the selected step"},
  {CONTROL(CommandClear),        NAMED(FrameBuffEdit),  "Clear Se&quence",       "",                        120, 1560,  1455,  375, "Empties the list of this sequence"},
  {CONTROL(CommandClearAll),     NAMED(FrameBuffEdit),  "C&lear All",            "",                        120, 1920,  1455,  375, "Empties all 16 sequences; can be undone with Ctrl+Z"},
  {CONTROL(CommandInterpolate),  NAMED(FrameBuffEdit),  "&Interpolate",          "",                        120, 2400,  1455,  375, "Puts several steps on the way to its neighbour in place of a step"},
  {CONTROL(CommandDwn),          NAMED(FrameBuffEdit),  "<---",                  "Previous step",           120, 2880,   735,  735, "Shows the previous step (Alt+Left)"},
  {CONTROL(CommandUp),           NAMED(FrameBuffEdit),  "--->",                  "Next step",               840, 2880,   735,  735, "Shows the next step (Alt+Right)"},

  {CONTROL(CommandStart),        {},                    "ON",                    "",                       2400,    0,   735,  495, "", Start::kHidden},
  {CONTROL(CommandStop),         {},                    "OFF",                   "",                       3120,    0,   735,  495, "", Start::kHidden},
};

constexpr MenuRow kMenus[] = {
  {"&File",     NAMED(SaveBuffer), "&Save Buffer",                  "Ctrl+S", false, "Writes all 16 sequences into a file"},
  {"&File",     NAMED(LoadBuffer), "&Load Buffer",                  "Ctrl+L", false, "Empties the program first, then reads all 16 sequences from a file"},
  {"&File",     NAMED(Quit),       "&Quit",                         "Ctrl+Q", false, "Ends the program; nothing is saved"},
  {"Ad&vanced", NAMED(FreshProg),  "&Flash Progr",                  "",       true, "Shows or hides the panel that programs, reads and erases the board"},
  {"Ad&vanced", NAMED(Emu),        "&Real Emulator",                "",       true, "Shows or hides the panel that lets the board play by itself"},
  {"Ad&vanced", NAMED(Serial),     "Advanced &Debug Informations",  "",       true, "Shows or hides what the board sends and how many bytes the steps take"},
  {"Ad&vanced", NAMED(Resetting),  "R&eset",                        "",       false, "Resets the board and turns all three switches Off"},
};
// clang-format on

#undef CONTROL
#undef NAMED

}  // namespace

std::span<const ControlRow> Inventory() {
  return kControls;
}

std::span<const MenuRow> Menus() {
  return kMenus;
}

QString ElementName(const ControlRow& row, int element) {
  const QString name = QString::fromLatin1(row.control.name);
  return row.count == 1 ? name : QStringLiteral("%1_%2").arg(name).arg(row.first + element);
}

}  // namespace pelmora
