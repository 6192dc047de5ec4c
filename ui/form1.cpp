#include "ui/form1.h"

#include <QCloseEvent>
#include <QLayout>
#include <QLocale>
#include <QMenuBar>
#include <QShortcut>
#include <QStyle>
#include <QWindow>
#include <utility>

#include "edit/dialog_interp.h"
#include "edit/edited_sequence.h"
#include "edit/step_clipboard.h"
#include "edit/step_fields.h"
#include "edit/step_list.h"
#include "files/buffer_commands.h"
#include "flash/erase_flash.h"
#include "flash/program_sequences.h"
#include "flash/read_back.h"
#include "link/board_control.h"
#include "link/board_link.h"
#include "link/debug_panel.h"
#include "link/serial_port.h"
#include "movement/movement_window.h"
#include "platform/serial/ms_comm.h"
#include "playback/pc_emulator.h"
#include "ui/controls.h"
#include "ui/fit_font.h"
#include "ui/inventory.h"
#include "ui/list_menu.h"
#include "ui/set_up_controls.h"

namespace pelmora {
namespace {

using platform::CWButton;
using platform::CWSlide;
using platform::DropDownList;
using platform::ListBox;
using platform::ProgressBar;
using platform::PushButton;
using platform::TextField;

}  // namespace

// The handlers, in the order in which they need each other.
struct Form1::Handlers {
  const Surroundings& around;
  const Controls& controls;

  platform::MSComm comm{around.ports};
  SerialPort serial_port{comm, around.message_box};
  DebugPanel debug_panel{comm};
  BoardLink link{comm, serial_port, debug_panel, around.main_loop, around.message_box};

  EditedSequence edited{
      {*controls.ListSequence, *controls.LabelSeq, *controls.LabelSeqEmu, *controls.LabelStep,
       *controls.LabelByte, *controls.CommandOffset, *controls.LabelOffset},
      around.message_box,
      QLocale().decimalPoint().toStdString()};
  BoardControl control{serial_port, link, edited.Data()};
  StepFields step_fields{
      edited, control, {controls.CWSlide1, controls.Text1, controls.CWNumEditTimeStep}};
  StepList step_list{edited, step_fields, link, around.message_box};
  StepClipboard step_clipboard{edited, around.message_box};

  PcEmulator pc_emulator{edited, step_list, around.timer, control};

  BufferCommands buffer_commands{edited, around.file_dialog, around.message_box};
};

Form1::Form1(const Surroundings& surroundings)
    : surroundings_(surroundings), wiring_(std::make_unique<QObject>()) {
  setObjectName(QStringLiteral("Form1"));
  setWindowTitle(QString::fromLatin1(kFormCaption));
  setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                 Qt::WindowCloseButtonHint);
  auto* client = new QWidget(this);
  client->setFixedSize(Pixels(kFormWidth), Pixels(kFormHeight));
  setCentralWidget(client);
  controls_ = std::make_unique<Controls>(MakeControls(*client, *menuBar()));
  FitFont(*client);
  SetUpControls(*controls_, surroundings_.ports);
  SetRestingControl(*controls_->ListSequence);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  handlers_.reset(new Handlers{surroundings_, *controls_});
  ConnectEditing();
  ConnectLink();
  ConnectFlash();
  ConnectPlayback();
  ConnectMenus();
  Form_Load();
}

Form1::~Form1() {
  movement_.reset();
  wiring_.reset();
}

const EditedSequence& Form1::Edited() const {
  return handlers_->edited;
}

const BoardLink& Form1::Link() const {
  return handlers_->link;
}

const PcEmulator& Form1::Playback() const {
  return handlers_->pc_emulator;
}

void Form1::PlaceOn(const QRect& screen) {
  screen_ = screen;
  PlaceInFrame();
}

void Form1::PlaceInFrame() {
  const QRect room = screen_.marginsRemoved(frame_);
  QSize limit = room.size();
  limit.rheight() -= menuBar()->sizeHint().height();
  const QSize client = centralWidget()->size();
  if (view_) {
    view_->SetLimit(limit);
  } else if (client.width() > limit.width() || client.height() > limit.height()) {
    view_ = new platform::ScrollView(takeCentralWidget(), limit, this);
    setCentralWidget(view_);
    view_->show();
  }
  layout()->activate();
  setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, sizeHint(), room));
}

// A window manager puts its frame around the window before the first painting, and some change it
// when they move the window.
bool Form1::event(QEvent* event) {
  const bool may_have_frame = event->type() == QEvent::Paint || event->type() == QEvent::Move;
  if (may_have_frame && screen_.isValid() && windowHandle() && isVisible()) {
    const QMargins frame = windowHandle()->frameMargins();
    if (std::exchange(frame_, frame) != frame) {
      QMetaObject::invokeMethod(this, &Form1::PlaceInFrame, Qt::QueuedConnection);
    }
  }
  return MainWindow::event(event);
}

void Form1::PressByKey(const QKeySequence& keys, PushButton& button) {
  auto* shortcut = new QShortcut(keys, &button);
  shortcut->setAutoRepeat(false);
  On(shortcut, &QShortcut::activated, [&button] {
    button.setFocus(Qt::ShortcutFocusReason);  // a text field commits its entry first
    button.click();
  });
}

void Form1::ConnectEditing() {
  Handlers& h = *handlers_;
  for (int i = 0; i < kChannels; ++i) {
    On(controls_->CWSlide1[static_cast<std::size_t>(i)], &CWSlide::valueChanged,
       [&h, i](int value) { h.step_fields.CWSlide1_ValueChanged(i, value); });
    controls_->CWSlide1[static_cast<std::size_t>(i)]->MayChange = [&h] {
      return h.control.ReadyForPosition();
    };
  }
  for (int i = 0; i < 2 * kChannels; ++i) {
    TextField& field = *controls_->Text1[static_cast<std::size_t>(i)];
    field.KeyPress = [&h, i](int& key) { h.step_fields.Text1_KeyPress(i, key); };
    On(&field, &TextField::LostFocus, [&h, i] { h.step_fields.Text1_LostFocus(i); });
  }
  for (const PushButton* button : findChildren<PushButton*>()) {
    On(button, &QAbstractButton::pressed, [&h] { h.step_fields.CommitPending(); });
  }
  for (const auto signal : {&EditedSequence::SelectionChanged, &EditedSequence::SequenceChanged}) {
    On(&h.edited, signal, [this] { MarkSelectedStep(); });
  }
  for (const auto signal :
       {&EditedSequence::SelectionChanged, &EditedSequence::BreakpointsChanged}) {
    On(&h.edited, signal, [this] { DescribeBreakpoint(); });
  }
  OnClick(controls_->CommandUpdate, [&h] { h.step_fields.CommandUpdate_Click(); });
  OnClick(controls_->CommandAdd, [&h] { h.step_list.CommandAdd_Click(); });
  OnClick(controls_->CommandRem, [&h] { h.step_list.CommandRem_Click(); });
  OnClick(controls_->CommandReplace, [&h] { h.step_list.CommandReplace_Click(); });
  OnClick(controls_->CommandClear, [&h] { h.step_list.CommandClear_Click(); });
  OnClick(controls_->CommandClearAll, [&h] { h.step_list.CommandClearAll_Click(); });
  OnClick(controls_->CommandUp, [&h] { h.step_list.CommandUp_Click(); });
  OnClick(controls_->CommandDwn, [&h] { h.step_list.CommandDwn_Click(); });
  OnClick(controls_->CommandMoreSeq, [&h] { h.step_list.CommandMoreSeq_Click(); });
  OnClick(controls_->CommandLessSeq, [&h] { h.step_list.CommandLessSeq_Click(); });
  OnClick(controls_->CommandInterpolate, [this, &h] {
    CommandInterpolate_Click(h.edited, surroundings_.message_box, surroundings_.main_loop,
                             {this, controls_->FrameBuffEdit, controls_->FrameMan,
                              controls_->FramePCEmu, controls_->ListSequence});
  });
  ListBox* list = controls_->ListSequence;
  On(list, &ListBox::MouseDown, [&h](int line) { h.step_list.ListSequence_MouseDown(line); });
  On(list, &ListBox::MouseUp, [&h](int line) { h.step_list.ListSequence_MouseUp(line); });
  On(list, &ListBox::DblClick, [&h] { h.step_list.ListSequence_DblClick(); });
  On(list, &ListBox::MoveLine,
     [&h](int from, int to) { h.step_list.ListSequence_MoveLine(from, to); });
  On(list, &ListBox::RemoveLine, [&h] { h.step_list.CommandRem_Click(); });
  list_menu_ = new ListMenu(*list, h.edited, h.step_clipboard, h.step_list, wiring_.get());
  On(list_menu_, &ListMenu::MovementWanted, [this](bool shown) { ShowMovement(shown); });
  PressByKey(Qt::ALT | Qt::Key_Right, *controls_->CommandUp);
  PressByKey(Qt::ALT | Qt::Key_Left, *controls_->CommandDwn);
}

void Form1::ConnectLink() {
  Handlers& h = *handlers_;
  DropDownList& combo_port = *controls_->ComboPort;
  On(&combo_port, &DropDownList::Click, [&h, &combo_port](const QString& device) {
    h.serial_port.ComboPort_Click(combo_port.currentData().toInt(), device);
  });
  On(&h.serial_port, &SerialPort::Changed, [&h, &combo_port] {
    const bool connected = h.serial_port.Connected();
    combo_port.setEnabled(!connected);
    if (!connected) combo_port.setCurrentIndex(-1);
  });
  On(&h.comm, &platform::MSComm::OnComm, [&h] { h.link.MSComm1_OnComm(); });
  On(&h.comm, &platform::MSComm::PortLost, [&h] { h.control.MSComm1_PortLost(); });
  On(controls_->CWButtonMainOnOff, &CWButton::toggled,
     [&h](bool on) { h.control.CWButtonMainOnOff_ValueChanged(on); });
  On(controls_->CWButtonRealEmu, &CWButton::toggled,
     [&h](bool on) { h.control.CWButtonRealEmu_ValueChanged(on); });
  On(controls_->CWButtonEmuPC, &CWButton::toggled,
     [&h](bool on) { h.control.CWButtonEmuPC_ValueChanged(on); });
  On(&h.control, &BoardControl::Changed, [this] { ShowSwitches(); });
  OnClick(controls_->CommandInBuff, [&h] { h.debug_panel.CommandInBuff_Click(); });
  On(controls_->Echo, &TextField::Click, [&h] { h.debug_panel.Echo_Click(); });
  connect(&h.debug_panel, &DebugPanel::EchoChanged, controls_->Echo, &TextField::setText);
}

void Form1::ShowSwitches() {
  const BoardControl& control = handlers_->control;
  controls_->CWButtonMainOnOff->setChecked(control.PcControl());
  controls_->CWButtonRealEmu->setChecked(control.BoardPlays());
  controls_->CWButtonRealEmu->setEnabled(!control.PcPlays());
  controls_->CWButtonEmuPC->setChecked(control.PcPlays());
  controls_->CWButtonEmuPC->setEnabled(!control.BoardPlays());
}

void Form1::ConnectFlash() {
  Handlers& h = *handlers_;
  OnClick(controls_->CommandErase, [&h] { CommandErase_Click(h.link); });
  OnClick(controls_->CommandFlash, [&h] { CommandFlash_Click(h.link, h.debug_panel, h.edited); });
  OnClick(controls_->CommandRead, [&h] { CommandRead_Click(h.link, h.debug_panel, h.edited); });
  OnClick(controls_->Command1, [&h] { h.link.Command1_Click(); });
  On(&h.link, &BoardLink::ModeChanged, [this, &h] { ShowErasing(h.link.EraseMode()); });
  On(&h.link, &BoardLink::ModeChanged, [this] { ShowWhetherStored(); });
  connect(&h.link, &BoardLink::AbortOffered, controls_->Command1, &QWidget::setEnabled);
  ProgressBar* bar = controls_->ProgressBarFlash;
  connect(&h.link, &BoardLink::BarShown, bar, &QWidget::setVisible);
  On(&h.link, &BoardLink::BarShown, [this] { ShowWhetherStored(); });
  On(&h.edited, &EditedSequence::SequenceChanged, [this] { ShowWhetherStored(); });
  connect(&h.link, &BoardLink::BarScaled, bar, &ProgressBar::SetScaleMaximum);
  connect(&h.link, &BoardLink::BarMoved, bar, &ProgressBar::SetValue);
}

// An erase has no bar: without this nothing would show that the program waits for the board.
void Form1::ShowErasing(bool erasing) {
  controls_->LabelErase->setVisible(erasing);
  erasing ? setCursor(Qt::BusyCursor) : unsetCursor();
}

// The table is programmed, not the list. "Erasing..." and the bar stand at the same place and come
// first.
void Form1::ShowWhetherStored() {
  const bool free = !handlers_->link.EraseMode() && controls_->ProgressBarFlash->isHidden();
  const int sequence = handlers_->edited.Data().CurSeq;
  QString text = QString::fromUtf8(kNotStoredCaption).arg(sequence);
  if (sequence == kSequences - 1) text.replace("+ and -", "- and +");
  controls_->LabelNotStored->setText(text);
  controls_->LabelNotStored->setVisible(free && !handlers_->edited.Stored());
}

// Where the selected step has each channel: that is what "Replace" would change.
void Form1::MarkSelectedStep() {
  const EditedSequence& edited = handlers_->edited;
  const int line = edited.ListIndex();
  for (std::size_t ch = 0; ch < kChannels; ++ch) {
    controls_->CWSlide1[ch]->SetMark(line < 0 ? CWSlide::kNoMark : edited.Row(line)[ch]);
  }
}

// Pressing the button by a key takes the focus there, away from the line that shows the breakpoint.
void Form1::DescribeBreakpoint() {
  const EditedSequence& edited = handlers_->edited;
  const int line = edited.ListIndex();
  QString description;
  if (line >= 0) {
    description = QStringLiteral("Step %1 has %2 breakpoint")
                      .arg(line)
                      .arg(QLatin1String(edited.Row(line)[kBreakColumn] != 0 ? "a" : "no"));
  }
  controls_->CommandBrk->setAccessibleDescription(description);
}

void Form1::ConnectPlayback() {
  Handlers& h = *handlers_;
  On(&surroundings_.timer, &platform::HiTimer::Timer, [&h] { h.pc_emulator.HiTimer1_Timer(); });
  On(&h.pc_emulator, &PcEmulator::StateChanged, [this] { ShowHalted(); });
  On(&h.edited, &EditedSequence::SelectionChanged, [this] { ShowHalted(); });
  OnClick(controls_->CommandBrk, [&h] { h.step_list.CommandBrk_Click(); });
  OnClick(controls_->CommandResBrk, [&h] { h.step_list.CommandResBrk_Click(); });
  OnClick(controls_->CommandContinue, [&h] { h.pc_emulator.CommandContinue_Click(); });
  OnClick(controls_->CommandRepeat, [&h] { h.pc_emulator.CommandRepeat_Click(); });
}

void Form1::ShowHalted() {
  const PcEmulator& playback = handlers_->pc_emulator;
  const int line = handlers_->edited.ListIndex();
  controls_->CWButtonEmuPC->SetWaiting(playback.Halted());
  controls_->ListSequence->SetHalted(playback.Halted());
  controls_->CWButtonEmuPC->setAccessibleDescription(
      playback.Halted() && line >= 0 ? QStringLiteral("Halted at step %1").arg(line) : QString());
}

void Form1::ConnectMenus() {
  Handlers& h = *handlers_;
  const auto choose = [this](QAction* item, auto handler) {
    On(item, &QAction::triggered, handler);
  };
  choose(controls_->SaveBuffer, [&h] { h.buffer_commands.SaveBuffer_Click(); });
  choose(controls_->LoadBuffer, [&h] { h.buffer_commands.LoadBuffer_Click(); });
  choose(controls_->Quit, [this] { Quit_Click(); });
  addAction(controls_->Quit);  // for the dialogs, which look for it among the window's own actions
  choose(controls_->Resetting, [&h] { h.control.Resetting_Click(); });
  choose(controls_->FreshProg, [this](bool checked) { FreshProg_Click(checked); });
  choose(controls_->Emu, [this](bool checked) { Emu_Click(checked); });
  choose(controls_->Serial, [this](bool checked) { Serial_Click(checked); });
}

// The click has changed the item's check mark; its panel follows.
void Form1::FreshProg_Click(bool checked) {
  controls_->FrameFlash->setVisible(checked);
}

void Form1::Emu_Click(bool checked) {
  controls_->FrameRealEmu->setVisible(checked);
}

void Form1::Serial_Click(bool checked) {
  controls_->FrameSer->setVisible(checked);
  controls_->FrameInfo->setVisible(checked);
}

// It costs no start that doesn't show it.
void Form1::ShowMovement(bool shown) {
  if (!movement_ && shown) {
    Handlers& h = *handlers_;
    const auto played = [&h]() -> std::optional<PlayedStep> {
      const std::optional<HeldStep> held = h.pc_emulator.Held();
      if (!held) return std::nullopt;
      return PlayedStep{held->line, held->since, h.pc_emulator.Halted()};
    };
    movement_ = std::make_unique<MovementWindow>(
        MovementParts{h.edited, h.step_list, controls_->CWSlide1, played}, *this);
    list_menu_->ShareKeysWith(*movement_);
    movement_->addActions({controls_->SaveBuffer, controls_->LoadBuffer});
    connect(movement_.get(), &MovementWindow::Shown, list_menu_, &ListMenu::SetMovementShown);
    connect(&h.pc_emulator, &PcEmulator::StateChanged, movement_.get(),
            &MovementWindow::PlaybackChanged);
    connect(&surroundings_.main_loop, &platform::MainLoop::Ended, movement_.get(), &QWidget::hide);
  }
  if (shown) {
    movement_->Open();
  } else if (movement_) {
    movement_->hide();
  }
}

void Form1::Form_Load() {
  handlers_->pc_emulator.Form_Load();
  handlers_->edited.Form_Load();
}

void Form1::closeEvent(QCloseEvent* event) {
  event->accept();
  if (surroundings_.main_loop.Ending()) return;
  Form_Unload();
  Form_Terminate();
  EndProgram();
}

void Form1::Form_Unload() {
  handlers_->control.CommandStop_Click();
}

void Form1::Form_Terminate() {
  handlers_->control.CommandStop_Click();
}

void Form1::Quit_Click() {
  handlers_->control.CommandStop_Click();
  EndProgram();
}

// Nothing more is sent: the port closes once the stop bytes have left. Every wait ends.
void Form1::EndProgram() {
  handlers_->pc_emulator.End();
  handlers_->serial_port.Close();
  surroundings_.main_loop.End();
}

}  // namespace pelmora
