#include "ui/inventory.h"

namespace pelmora {
namespace {

// The name of a member of `Controls`, as text and as the member.
#define NAMED(member) #member, &Controls::member

// clang-format off
constexpr ControlRow kControls[] = {
  {NAMED(FrameMan),            {},                     "",                      "Channel editor",          120,    0,  7455, 6195},
  {NAMED(CommandMoreSeq),      {NAMED(FrameMan)},      "+",                     "Next sequence",           120,  180,   495,  375},
  {NAMED(CommandLessSeq),      {NAMED(FrameMan)},      "-",                     "Previous sequence",       600,  180,   495,  375},
  {NAMED(LabelSeq),            {NAMED(FrameMan)},      "Sequence N\u00B0 0",    "",                       1320,  240,  2295,  375},
  {NAMED(LabelStep),           {NAMED(FrameMan)},      "Step N\u00B0 ...",      "",                       5640,  240,  1575,  375},
  {NAMED(CWSlide1),            {NAMED(FrameMan)},      "Ch%1",                  "Ch%1 position",           120,  720,   495, 4095, Start::kVisible, kChannels, 600, 0},
  {NAMED(Text1),               {NAMED(FrameMan)},      "0 \u00B0",              "Ch%1 angle",              120, 4980,   615,  285, Start::kReadOnly, kChannels, 600, kChannels},
  {NAMED(Text1),               {NAMED(FrameMan)},      "0",                     "Ch%1 offset",             120, 5280,   615,  285, Start::kVisible, kChannels, 600, 0},
  {NAMED(CommandUpdate),       {NAMED(FrameMan)},      "Rese&t",                "Centre all channels",     120, 5640,  1815,  375},
  {NAMED(Label1),              {NAMED(FrameMan)},      "Step Duration",         "",                       4320, 5760,  1095,  255},
  {NAMED(CWNumEditTimeStep),   {NAMED(FrameMan)},      "",                      "Step Duration",          5520, 5700,  1815,  315},

  {NAMED(Label2),              {},                     "Serial Comm Port:",     "",                       7680,  240,  1335,  375},
  {NAMED(ComboPort),           {},                     "",                      "Serial Comm Port",       7680,  480,  1935,  315},
  {NAMED(CWButtonMainOnOff),   {},                     "PC C&ontrol Enable",    "",                       9720,  240,  2895,  555},

  {NAMED(FrameSer),            {},                     "Serial Comm Debug",     "",                       7680, 1020,  1935, 1155, Start::kHidden},
  {NAMED(Echo),                {NAMED(FrameSer)},      "",                      "Last received",           240,  360,  1275,  285, Start::kReadOnly},
  {NAMED(CommandInBuff),       {NAMED(FrameSer)},      "InBuff",                "Bytes waiting",           240,  720,  1335,  315},

  {NAMED(FrameInfo),           {},                     "Flash Data Information", "",                       9720, 1020,  2895, 1155, Start::kHidden},
  {NAMED(LabelByteCapt),       {NAMED(FrameInfo)},     "Flash Data",            "",                        240,  420,   855,  255},
  {NAMED(LabelByte),           {NAMED(FrameInfo)},     "0 bytes",               "",                       1440,  360,  1215,  315},
  {NAMED(CommandOffset),       {NAMED(FrameInfo)},     "OffSet Seq. 0",         "",                        240,  780,  1095,  255},
  {NAMED(LabelOffset),         {NAMED(FrameInfo)},     "0 bytes",               "",                       1440,  720,  1215,  315},

  {NAMED(FrameFlash),          {},                     "Flash Program",         "",                       7680, 2280,  4935, 1395, Start::kHidden},
  {NAMED(CommandFlash),        {NAMED(FrameFlash)},    "Pro&gram  Seq.",        "",                        120,  300,  1215,  375},
  {NAMED(CommandRead),         {NAMED(FrameFlash)},    "Rea&d Seq.",            "",                       1320,  300,  1215,  375},
  {NAMED(Command1),            {NAMED(FrameFlash)},    "A&bort",                "",                       2760,  300,   855,  375, Start::kDisabled},
  {NAMED(CommandErase),        {NAMED(FrameFlash)},    "&Erease",               "",                       3840,  300,   855,  375},
  {NAMED(ProgressBarFlash),    {NAMED(FrameFlash)},    "",                      "Flash transfer",          120,  840,  4575,  375, Start::kHidden},

  {NAMED(FrameRealEmu),        {},                     "Real Emulator",         "",                       7680, 3780,  4935,  915, Start::kHidden},
  {NAMED(CWButtonRealEmu),     {NAMED(FrameRealEmu)},  "Real Em&u",             "",                        240,  360,  1455,  375},
  {NAMED(LabelSeqEmu),         {NAMED(FrameRealEmu)},  "Sequence N\u00B0 0",    "",                       1920,  420,  1695,  375},

  {NAMED(FramePCEmu),          {},                     "PC Sequence Emulator",  "",                       7680, 4800,  4935, 1395},
  {NAMED(CWButtonEmuPC),       {NAMED(FramePCEmu)},    "PC E&mu",               "",                        240,  360,  1455,  375},
  {NAMED(CommandContinue),     {NAMED(FramePCEmu)},    "Co&ntinue",             "",                       1800,  360,  1455,  375},
  {NAMED(CommandRepeat),       {NAMED(FramePCEmu)},    "Re&peat",               "",                       3360,  360,  1455,  375},
  {NAMED(CommandBrk),          {NAMED(FramePCEmu)},    "&Set/Reset Break",      "",                       1800,  840,  1455,  375},
  {NAMED(CommandResBrk),       {NAMED(FramePCEmu)},    "Reset  All Brea&k",     "",                       3360,  840,  1455,  375},

  {NAMED(ListSequence),        {},                     "",                      "Steps of the sequence",   120, 6240, 10695, 3765},

  {NAMED(FrameBuffEdit),       {},                     "Buffer Editing",        "",                      10920, 6240,  1695, 3735},
  {NAMED(CommandAdd),          {NAMED(FrameBuffEdit)}, "&Add",                  "",                        120,  300,  1455,  375},
  {NAMED(CommandRem),          {NAMED(FrameBuffEdit)}, "&Remove",               "",                        120,  660,  1455,  375},
  {NAMED(CommandReplace),      {NAMED(FrameBuffEdit)}, "Repla&ce",              "",                        120, 1020,  1455,  375},
  {NAMED(CommandClear),        {NAMED(FrameBuffEdit)}, "Clear Se&quence",       "",                        120, 1560,  1455,  375},
  {NAMED(CommandClearAll),     {NAMED(FrameBuffEdit)}, "C&lear All",            "",                        120, 1920,  1455,  375},
  {NAMED(CommandInterpolate),  {NAMED(FrameBuffEdit)}, "&Interpolate",          "",                        120, 2400,  1455,  375},
  {NAMED(CommandDwn),          {NAMED(FrameBuffEdit)}, "<---",                  "Previous step",           120, 2880,   735,  735},
  {NAMED(CommandUp),           {NAMED(FrameBuffEdit)}, "--->",                  "Next step",               840, 2880,   735,  735},

  {NAMED(CommandStart),        {},                     "ON",                    "",                       2400,    0,   735,  495, Start::kHidden},
  {NAMED(CommandStop),         {},                     "OFF",                   "",                       3120,    0,   735,  495, Start::kHidden},
};

constexpr MenuRow kMenus[] = {
  {"&File",     {NAMED(SaveBuffer)}, "&Save Buffer",                  "Ctrl+S", false},
  {"&File",     {NAMED(LoadBuffer)}, "&Load Buffer",                  "Ctrl+L", false},
  {"&File",     {NAMED(Quit)},       "&Quit",                         "Ctrl+Q", false},
  {"Ad&vanced", {NAMED(FreshProg)},  "&Flash Progr",                  "",       true},
  {"Ad&vanced", {NAMED(Emu)},        "&Real Emulator",                "",       true},
  {"Ad&vanced", {NAMED(Serial)},     "Advanced &Debug Informations",  "",       true},
  {"Ad&vanced", {NAMED(Resetting)},  "R&eset",                        "",       false},
};
// clang-format on

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
