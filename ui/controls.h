// The window's controls and menu items, each under its name, and the making of them from the
// inventory.
#pragma once

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QWidget>
#include <array>

#include "core/declaration.h"
#include "platform/controls/cw_button.h"
#include "platform/controls/cw_num_edit.h"
#include "platform/controls/cw_slide.h"
#include "platform/controls/drop_down_list.h"
#include "platform/controls/list_box.h"
#include "platform/controls/panel.h"
#include "platform/controls/progress_bar.h"
#include "platform/controls/push_button.h"
#include "platform/controls/text_field.h"

namespace pelmora {

// A label in large bold text.
class Heading : public QLabel {
  Q_OBJECT
 public:
  using QLabel::QLabel;
};

// The type of a member is the kind of the control. None is null once the window is built.
struct Controls {
  platform::Panel* FrameMan = nullptr;
  platform::PushButton* CommandMoreSeq = nullptr;
  platform::PushButton* CommandLessSeq = nullptr;
  Heading* LabelSeq = nullptr;
  Heading* LabelStep = nullptr;
  std::array<platform::CWSlide*, kChannels> CWSlide1{};
  // 0..11: position fields; 12..23: angle displays.
  std::array<platform::TextField*, 2 * kChannels> Text1{};
  platform::PushButton* CommandUpdate = nullptr;
  QLabel* Label1 = nullptr;
  platform::CWNumEdit* CWNumEditTimeStep = nullptr;

  QLabel* Label2 = nullptr;
  platform::DropDownList* ComboPort = nullptr;
  platform::CWButton* CWButtonMainOnOff = nullptr;

  platform::Panel* FrameSer = nullptr;
  platform::TextField* Echo = nullptr;
  platform::PushButton* CommandInBuff = nullptr;

  platform::Panel* FrameInfo = nullptr;
  QLabel* LabelByteCapt = nullptr;
  QLabel* LabelByte = nullptr;
  QLabel* CommandOffset = nullptr;
  QLabel* LabelOffset = nullptr;

  platform::Panel* FrameFlash = nullptr;
  platform::PushButton* CommandFlash = nullptr;
  platform::PushButton* CommandRead = nullptr;
  platform::PushButton* Command1 = nullptr;
  platform::PushButton* CommandErase = nullptr;
  QLabel* LabelErase = nullptr;      // at the bar's place, shown while an erase waits
  QLabel* LabelNotStored = nullptr;  // there, too, when neither of the two is shown
  platform::ProgressBar* ProgressBarFlash = nullptr;

  platform::Panel* FrameRealEmu = nullptr;
  platform::CWButton* CWButtonRealEmu = nullptr;
  QLabel* LabelSeqEmu = nullptr;

  platform::Panel* FramePCEmu = nullptr;
  platform::CWButton* CWButtonEmuPC = nullptr;
  platform::PushButton* CommandContinue = nullptr;
  platform::PushButton* CommandRepeat = nullptr;
  platform::PushButton* CommandBrk = nullptr;
  platform::PushButton* CommandResBrk = nullptr;

  platform::ListBox* ListSequence = nullptr;

  platform::Panel* FrameBuffEdit = nullptr;
  platform::PushButton* CommandAdd = nullptr;
  platform::PushButton* CommandRem = nullptr;
  platform::PushButton* CommandReplace = nullptr;
  platform::PushButton* CommandClear = nullptr;
  platform::PushButton* CommandClearAll = nullptr;
  platform::PushButton* CommandInterpolate = nullptr;
  platform::PushButton* CommandDwn = nullptr;
  platform::PushButton* CommandUp = nullptr;

  platform::PushButton* CommandStart = nullptr;
  platform::PushButton* CommandStop = nullptr;

  QAction* SaveBuffer = nullptr;
  QAction* LoadBuffer = nullptr;
  QAction* Quit = nullptr;
  QAction* FreshProg = nullptr;
  QAction* Emu = nullptr;
  QAction* Serial = nullptr;
  QAction* Resetting = nullptr;
};

// Makes every control of the inventory as a descendant of `client`, and every menu item in
// `menu_bar`. Each has its name as its object name (an array element's is "CWSlide1_3").
Controls MakeControls(QWidget& client, QMenuBar& menu_bar);

}  // namespace pelmora
