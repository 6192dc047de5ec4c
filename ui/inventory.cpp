#include "ui/inventory.h"

namespace pelmora {
namespace {

// clang-format off
constexpr ControlRow kControls[] = {
  {Kind::kPanel,      "FrameMan",          "",             "",                    "Channel editor",      120,    0, 7455, 6195},
  {Kind::kPushButton, "CommandMoreSeq",    "FrameMan",     "+",                   "Next sequence",       120,  180,  495,  375},
  {Kind::kPushButton, "CommandLessSeq",    "FrameMan",     "-",                   "Previous sequence",   600,  180,  495,  375},
  {Kind::kHeading,    "LabelSeq",          "FrameMan",     "Sequence N\u00B0 0",  "",                   1320,  240, 2295,  375},
  {Kind::kHeading,    "LabelStep",         "FrameMan",     "Step N\u00B0 ...",    "",                   5640,  240, 1575,  375},
  {Kind::kFader,      "CWSlide1",          "FrameMan",     "Ch%1",                "Ch%1 position",       120,  720,  495, 4095, Start::kVisible, 12, 600, 0},
  {Kind::kDisplay,    "Text1",             "FrameMan",     "0 \u00B0",            "Ch%1 angle",          120, 4980,  615,  285, Start::kVisible, 12, 600, 12},
  {Kind::kTextField,  "Text1",             "FrameMan",     "0",                   "Ch%1 offset",         120, 5280,  615,  285, Start::kVisible, 12, 600, 0},
  {Kind::kPushButton, "CommandUpdate",     "FrameMan",     "Rese&t",              "Centre all channels", 120, 5640, 1815,  375},
  {Kind::kLabel,      "Label1",            "FrameMan",     "Step Duration",       "",                   4320, 5760, 1095,  255},
  {Kind::kNumEdit,    "CWNumEditTimeStep", "FrameMan",     "",                    "Step Duration",      5520, 5700, 1815,  315},

  {Kind::kLabel,      "Label2",            "",             "Serial Comm Port:",   "",                   7680,  240, 1335,  375},
  {Kind::kDropDown,   "ComboPort",         "",             "",                    "Serial Comm Port",   7680,  480, 1935,  315},
  {Kind::kSwitch,     "CWButtonMainOnOff", "",             "PC C&ontrol Enable",  "",                   9720,  240, 2895,  555},

  {Kind::kPanel,      "FrameSer",          "",             "Serial Comm Debug",   "",                   7680, 1020, 1935, 1155, Start::kHidden},
  {Kind::kDisplay,    "Echo",              "FrameSer",     "",                    "Last received",       240,  360, 1275,  285},
  {Kind::kPushButton, "CommandInBuff",     "FrameSer",     "InBuff",              "Bytes waiting",       240,  720, 1335,  315},

  {Kind::kPanel,      "FrameInfo",         "",             "Flash Data Information", "",                9720, 1020, 2895, 1155, Start::kHidden},
  {Kind::kLabel,      "LabelByteCapt",     "FrameInfo",    "Flash Data",          "",                    240,  420,  855,  255},
  {Kind::kLabel,      "LabelByte",         "FrameInfo",    "0 bytes",             "",                   1440,  360, 1215,  315},
  {Kind::kLabel,      "CommandOffset",     "FrameInfo",    "OffSet Seq. 0",       "",                    240,  780, 1095,  255},
  {Kind::kLabel,      "LabelOffset",       "FrameInfo",    "0 bytes",             "",                   1440,  720, 1215,  315},

  {Kind::kPanel,      "FrameFlash",        "",             "Flash Program",       "",                   7680, 2280, 4935, 1395, Start::kHidden},
  {Kind::kPushButton, "CommandFlash",      "FrameFlash",   "Pro&gram  Seq.",      "",                    120,  300, 1215,  375},
  {Kind::kPushButton, "CommandRead",       "FrameFlash",   "Rea&d Seq.",          "",                   1320,  300, 1215,  375},
  {Kind::kPushButton, "Command1",          "FrameFlash",   "A&bort",              "",                   2760,  300,  855,  375, Start::kDisabled},
  {Kind::kPushButton, "CommandErase",      "FrameFlash",   "&Erease",             "",                   3840,  300,  855,  375},
  {Kind::kBar,        "ProgressBarFlash",  "FrameFlash",   "",                    "Flash transfer",      120,  840, 4575,  375, Start::kHidden},

  {Kind::kPanel,      "FrameRealEmu",      "",             "Real Emulator",       "",                   7680, 3780, 4935,  915, Start::kHidden},
  {Kind::kSwitch,     "CWButtonRealEmu",   "FrameRealEmu", "Real Em&u",           "",                    240,  360, 1455,  375},
  {Kind::kLabel,      "LabelSeqEmu",       "FrameRealEmu", "Sequence N\u00B0 0",  "",                   1920,  420, 1695,  375},

  {Kind::kPanel,      "FramePCEmu",        "",             "PC Sequence Emulator", "",                  7680, 4800, 4935, 1395},
  {Kind::kSwitch,     "CWButtonEmuPC",     "FramePCEmu",   "PC E&mu",             "",                    240,  360, 1455,  375},
  {Kind::kPushButton, "CommandContinue",   "FramePCEmu",   "Co&ntinue",           "",                   1800,  360, 1455,  375},
  {Kind::kPushButton, "CommandRepeat",     "FramePCEmu",   "Re&peat",             "",                   3360,  360, 1455,  375},
  {Kind::kPushButton, "CommandBrk",        "FramePCEmu",   "&Set/Reset Break",    "",                   1800,  840, 1455,  375},
  {Kind::kPushButton, "CommandResBrk",     "FramePCEmu",   "Reset  All Brea&k",   "",                   3360,  840, 1455,  375},

  {Kind::kListBox,    "ListSequence",      "",             "",                    "Steps of the sequence", 120, 6240, 10695, 3765},

  {Kind::kPanel,      "FrameBuffEdit",     "",              "Buffer Editing",     "",                  10920, 6240, 1695, 3735},
  {Kind::kPushButton, "CommandAdd",        "FrameBuffEdit", "&Add",               "",                    120,  300, 1455,  375},
  {Kind::kPushButton, "CommandRem",        "FrameBuffEdit", "&Remove",            "",                    120,  660, 1455,  375},
  {Kind::kPushButton, "CommandReplace",    "FrameBuffEdit", "Repla&ce",           "",                    120, 1020, 1455,  375},
  {Kind::kPushButton, "CommandClear",      "FrameBuffEdit", "Clear Se&quence",    "",                    120, 1560, 1455,  375},
  {Kind::kPushButton, "CommandClearAll",   "FrameBuffEdit", "C&lear All",         "",                    120, 1920, 1455,  375},
  {Kind::kPushButton, "CommandInterpolate", "FrameBuffEdit", "&Interpolate",      "",                    120, 2400, 1455,  375},
  {Kind::kPushButton, "CommandDwn",        "FrameBuffEdit", "<---",               "Previous step",       120, 2880,  735,  735},
  {Kind::kPushButton, "CommandUp",         "FrameBuffEdit", "--->",               "Next step",           840, 2880,  735,  735},

  {Kind::kPushButton, "CommandStart",      "",             "ON",                  "",                   2400,    0,  735,  495, Start::kHidden},
  {Kind::kPushButton, "CommandStop",       "",             "OFF",                 "",                   3120,    0,  735,  495, Start::kHidden},
};

constexpr MenuRow kMenus[] = {
  {"&File",     "SaveBuffer", "&Save Buffer",                  "Ctrl+S", false},
  {"&File",     "LoadBuffer", "&Load Buffer",                  "Ctrl+L", false},
  {"&File",     "Quit",       "&Quit",                         "Ctrl+Q", false},
  {"Ad&vanced", "FreshProg",  "&Flash Progr",                  "",       true},
  {"Ad&vanced", "Emu",        "&Real Emulator",                "",       true},
  {"Ad&vanced", "Serial",     "Advanced &Debug Informations",  "",       true},
  {"Ad&vanced", "Resetting",  "R&eset",                        "",       false},
};
// clang-format on

}  // namespace

std::span<const ControlRow> Inventory() {
  return kControls;
}

std::span<const MenuRow> Menus() {
  return kMenus;
}

}  // namespace pelmora
