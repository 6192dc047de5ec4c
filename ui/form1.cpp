#include "ui/form1.h"

#include <QCloseEvent>
#include <QFrame>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QScreen>
#include <QStyle>
#include <string>

#include "edit/dialog_interp.h"
#include "edit/edited_sequence.h"
#include "edit/sequence_navigation.h"
#include "edit/step_fields.h"
#include "edit/step_list.h"
#include "files/buffer_commands.h"
#include "flash/erase_flash.h"
#include "flash/program_sequences.h"
#include "flash/read_back.h"
#include "link/board_operation.h"
#include "link/connected_switch.h"
#include "link/debug_panel.h"
#include "link/live_control.h"
#include "link/receive_handler.h"
#include "link/serial_port.h"
#include "platform/cw_button.h"
#include "platform/cw_num_edit.h"
#include "platform/cw_slide.h"
#include "platform/drop_down_list.h"
#include "platform/list_box.h"
#include "platform/ms_comm.h"
#include "platform/push_button.h"
#include "platform/text_field.h"
#include "playback/board_playback.h"
#include "playback/breakpoints.h"
#include "playback/pc_emulator.h"
#include "ui/controls.h"
#include "ui/inventory.h"

namespace pelmora {
namespace {

using platform::CWButton;
using platform::CWNumEdit;
using platform::CWSlide;
using platform::DropDownList;
using platform::ListBox;
using platform::PushButton;
using platform::TextField;

constexpr int kPorts = 8;
constexpr int kStartInterval = 20;    // ms, of the playback timer
constexpr int kStartDuration = 1000;  // ms, of the step being composed
constexpr int kShortestDuration = 20;
constexpr int kLongestDuration = 32767;  // what the sequence table can hold
constexpr int kDurationStep = 20;        // one tick of the board
constexpr int kFastDurationStep = 200;

EditorControls FindEditorControls(const Controls& controls) {
  EditorControls editor{};
  for (int i = 0; i < kChannels; ++i) {
    editor.CWSlide1[static_cast<std::size_t>(i)] = &controls.Get<CWSlide>("CWSlide1", i);
  }
  for (int i = 0; i < 2 * kChannels; ++i) {
    editor.Text1[static_cast<std::size_t>(i)] = &controls.Get<TextField>("Text1", i);
  }
  editor.CWNumEditTimeStep = &controls.Get<CWNumEdit>("CWNumEditTimeStep");
  return editor;
}

SequenceControls FindSequenceControls(const Controls& controls) {
  return {controls.Get<ListBox>("ListSequence"), controls.Get<QLabel>("LabelSeq"),
          controls.Get<QLabel>("LabelSeqEmu"),   controls.Get<QLabel>("LabelStep"),
          controls.Get<QLabel>("LabelByte"),     controls.Get<QLabel>("CommandOffset"),
          controls.Get<QLabel>("LabelOffset")};
}

void Colour(QLabel& label, const QColor& colour) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, colour);
  label.setPalette(palette);
}

}  // namespace

// The handlers, in the order in which they need each other.
struct Form1::Handlers {
  Handlers(const Surroundings& around, const Controls& controls, QWidget& form)
      : comm(around.ports),
        serial_port(comm, controls.Get<DropDownList>("ComboPort"), around.message_box),
        link({comm, serial_port, around.events, around.message_box,
              controls.Get<QPushButton>("Command1"), controls.Get<QProgressBar>("ProgressBarFlash"),
              controls.Get<TextField>("Echo")}),
        receive(comm, link),
        debug_panel(comm, controls.Get<TextField>("Echo")),
        main_on_off(controls.Get<CWButton>("CWButtonMainOnOff"), serial_port),
        real_emu(controls.Get<CWButton>("CWButtonRealEmu"), serial_port),
        emu_pc(controls.Get<CWButton>("CWButtonEmuPC"), serial_port),
        live_control(serial_port, main_on_off, real_emu.Button(), emu_pc.Button()),
        edited(FindSequenceControls(controls), around.message_box,
               QLocale().decimalPoint().toStdString()),
        step_fields(edited, live_control, FindEditorControls(controls)),
        step_list(edited, step_fields, around.message_box),
        navigation(edited),
        interpolation(
            {edited, around.message_box, around.events},
            {&form, &controls.Get<QWidget>("FrameBuffEdit"), &controls.Get<QWidget>("FrameMan"),
             &controls.Get<QWidget>("FramePCEmu"), &controls.Get<ListBox>("ListSequence")}),
        erase(link),
        program(link, erase, edited),
        read(link, edited),
        pc_emulator(edited, step_list, around.timer, emu_pc, real_emu.Button()),
        breakpoints(edited, step_fields, pc_emulator),
        board_playback(edited, serial_port, real_emu, emu_pc.Button()),
        buffer_commands(edited, around.file_dialog, around.message_box) {}

  platform::MSComm comm;
  SerialPort serial_port;
  BoardLink link;
  ReceiveHandler receive;
  DebugPanel debug_panel;
  ConnectedSwitch main_on_off;
  ConnectedSwitch real_emu;
  ConnectedSwitch emu_pc;
  LiveControl live_control;

  EditedSequence edited;
  StepFields step_fields;
  StepList step_list;
  SequenceNavigation navigation;
  Interpolation interpolation;

  EraseFlash erase;
  ProgramSequences program;
  ReadBack read;

  PcEmulator pc_emulator;
  Breakpoints breakpoints;
  BoardPlayback board_playback;

  BufferCommands buffer_commands;
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
  BuildMenus();
  controls_ = std::make_unique<Controls>(*client);
  controls_->FitFont(*client);
  DressControls();
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  handlers_ = std::make_unique<Handlers>(surroundings_, *controls_, *this);
  ConnectEditing();
  ConnectLink();
  ConnectFlash();
  ConnectPlayback();
  ConnectMenus();
  Form_Load();
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, sizeHint(), screen));
}

Form1::~Form1() {
  wiring_.reset();
  for (int i = 0; i < 2 * kChannels; ++i) {
    TextField& field = controls_->Get<TextField>("Text1", i);
    field.KeyPress = nullptr;
    field.LostFocus = nullptr;
  }
  surroundings_.timer.SetEnabled(false);
  surroundings_.timer.Timer = nullptr;
}

const EditedSequence& Form1::Edited() const {
  return handlers_->edited;
}

const BoardLink& Form1::Link() const {
  return handlers_->link;
}

void Form1::BuildMenus() {
  QHash<QString, QMenu*> menus;
  for (const MenuRow& row : Menus()) {
    QMenu*& menu = menus[QString::fromLatin1(row.menu)];
    if (!menu) menu = menuBar()->addMenu(QString::fromLatin1(row.menu));
    QAction* item = menu->addAction(QString::fromLatin1(row.caption));
    item->setObjectName(QString::fromLatin1(row.name));
    item->setCheckable(row.checkable);
    if (*row.shortcut) item->setShortcut(QKeySequence(QString::fromLatin1(row.shortcut)));
    menu_items_.insert(item->objectName(), item);
  }
}

// What the inventory does not say: colours, scales, columns, entries.
void Form1::DressControls() {
  Colour(controls_->Get<QLabel>("LabelSeq"), QColor(0xC8, 0x10, 0x10));
  Colour(controls_->Get<QLabel>("LabelStep"), QColor(0x00, 0x00, 0x80));
  Colour(controls_->Get<QLabel>("Label1"), QColor(0x00, 0x00, 0x80));
  for (int i = 0; i < kChannels; ++i) {
    CWSlide& slide = controls_->Get<CWSlide>("CWSlide1", i);
    slide.SetScaleMaximum(255);
    slide.SetValue(kCentre);
  }
  CWNumEdit& duration = controls_->Get<CWNumEdit>("CWNumEditTimeStep");
  duration.SetScale(kShortestDuration, kLongestDuration, kDurationStep, kFastDurationStep);
  duration.SetUnit(QStringLiteral(" ms"));
  duration.SetValue(kStartDuration);

  DropDownList& combo_port = controls_->Get<DropDownList>("ComboPort");
  for (int number = 1; number <= kPorts; ++number) {
    combo_port.AddItem(QStringLiteral("Comm%1").arg(number), number);
  }
  combo_port.SetListIndex(-1);
  combo_port.ToolTip = [this](int number) {
    const QString device = surroundings_.ports.DeviceFor(number);
    return device.isEmpty() ? QStringLiteral("No serial port for this entry now") : device;
  };

  // A step reads as twelve channels under the sliders above; duration and break mark stand at the
  // right. Lines from the table have an empty field between those two.
  const QRect list = controls_->Get<ListBox>("ListSequence").geometry();
  std::vector<platform::ListColumn> columns;
  for (int i = 0; i < kChannels; ++i) {
    const TextField& angle = controls_->Get<TextField>("Text1", kChannels + i);
    columns.push_back({angle.mapTo(centralWidget(), QPoint()).x() - list.left(), angle.width() - 1,
                       Qt::AlignHCenter});
  }
  const int right = columns.back().left + columns.back().width;
  const platform::ListColumn mark = {right + 110, 70, Qt::AlignLeft};
  columns.push_back({right + 10, 80, Qt::AlignRight});
  columns.push_back(mark);
  columns.push_back(mark);
  controls_->Get<ListBox>("ListSequence").SetColumns(std::move(columns));
}

template <class Handler>
void Form1::OnClick(const char* button, Handler handler) {
  connect(&controls_->Get<PushButton>(button), &QPushButton::clicked, wiring_.get(), handler);
}

void Form1::ConnectEditing() {
  Handlers& h = *handlers_;
  for (int i = 0; i < kChannels; ++i) {
    connect(&controls_->Get<CWSlide>("CWSlide1", i), &CWSlide::ValueChanged, wiring_.get(),
            [&h, i](int value) { h.step_fields.CWSlide1_ValueChanged(i, value); });
  }
  for (int i = 0; i < 2 * kChannels; ++i) {
    TextField& field = controls_->Get<TextField>("Text1", i);
    field.KeyPress = [&h, i](int& key) { h.step_fields.Text1_KeyPress(i, key); };
    field.LostFocus = [&h, i] { h.step_fields.Text1_LostFocus(i); };
  }
  OnClick("CommandUpdate", [&h] { h.step_fields.CommandUpdate_Click(); });
  OnClick("CommandAdd", [&h] { h.step_list.CommandAdd_Click(); });
  OnClick("CommandRem", [&h] { h.step_list.CommandRem_Click(); });
  OnClick("CommandReplace", [&h] { h.step_list.CommandReplace_Click(); });
  OnClick("CommandClear", [&h] { h.step_list.CommandClear_Click(); });
  OnClick("CommandClearAll", [&h] { h.step_list.CommandClearAll_Click(); });
  OnClick("CommandUp", [&h] { h.step_list.CommandUp_Click(); });
  OnClick("CommandDwn", [&h] { h.step_list.CommandDwn_Click(); });
  OnClick("CommandMoreSeq", [&h] { h.navigation.CommandMoreSeq_Click(); });
  OnClick("CommandLessSeq", [&h] { h.navigation.CommandLessSeq_Click(); });
  OnClick("CommandInterpolate", [&h] { h.interpolation.CommandInterpolate_Click(); });
  ListBox& list = controls_->Get<ListBox>("ListSequence");
  connect(&list, &ListBox::MouseDown, wiring_.get(),
          [&h](int line) { h.step_list.ListSequence_MouseDown(line); });
  connect(&list, &ListBox::MouseUp, wiring_.get(),
          [&h](int line) { h.step_list.ListSequence_MouseUp(line); });
  connect(&list, &ListBox::DblClick, wiring_.get(), [&h] { h.step_list.ListSequence_DblClick(); });
}

void Form1::ConnectLink() {
  Handlers& h = *handlers_;
  connect(&controls_->Get<DropDownList>("ComboPort"), &DropDownList::Click, wiring_.get(),
          [&h] { h.serial_port.ComboPort_Click(); });
  connect(&h.comm, &platform::MSComm::OnComm, wiring_.get(), [&h] { h.receive.MSComm1_OnComm(); });
  // The message comes last: nothing stands On or locked while it is open.
  connect(&h.comm, &platform::MSComm::PortLost, wiring_.get(), [&h] {
    h.pc_emulator.MSComm1_PortLost();
    h.board_playback.MSComm1_PortLost();
    h.live_control.MSComm1_PortLost();
    h.serial_port.MSComm1_PortLost();
  });
  connect(&h.main_on_off.Button(), &CWButton::ValueChanged, wiring_.get(),
          [&h](bool on) { h.live_control.CWButtonMainOnOff_ValueChanged(on); });
  OnClick("CommandInBuff", [&h] { h.debug_panel.CommandInBuff_Click(); });
  connect(&controls_->Get<TextField>("Echo"), &TextField::Click, wiring_.get(),
          [&h] { h.debug_panel.Echo_Click(); });
}

void Form1::ConnectFlash() {
  Handlers& h = *handlers_;
  OnClick("CommandErase", [&h] { h.erase.CommandErase_Click(); });
  OnClick("CommandFlash", [&h] { h.program.CommandFlash_Click(); });
  OnClick("CommandRead", [&h] { h.read.CommandRead_Click(); });
  OnClick("Command1", [&h] { h.link.Command1_Click(); });
}

void Form1::ConnectPlayback() {
  Handlers& h = *handlers_;
  connect(&h.emu_pc.Button(), &CWButton::ValueChanged, wiring_.get(),
          [&h](bool on) { h.pc_emulator.CWButtonEmuPC_ValueChanged(on); });
  connect(&h.real_emu.Button(), &CWButton::ValueChanged, wiring_.get(),
          [&h](bool on) { h.board_playback.CWButtonRealEmu_ValueChanged(on); });
  surroundings_.timer.Timer = [&h] { h.pc_emulator.HiTimer1_Timer(); };
  OnClick("CommandBrk", [&h] { h.breakpoints.CommandBrk_Click(); });
  OnClick("CommandResBrk", [&h] { h.breakpoints.CommandResBrk_Click(); });
  OnClick("CommandContinue", [&h] { h.breakpoints.CommandContinue_Click(); });
  OnClick("CommandRepeat", [&h] { h.breakpoints.CommandRepeat_Click(); });
}

void Form1::ConnectMenus() {
  Handlers& h = *handlers_;
  const auto choose = [this](const char* name, auto handler) {
    connect(menu_items_.value(QLatin1String(name)), &QAction::triggered, wiring_.get(), handler);
  };
  choose("SaveBuffer", [&h] { h.buffer_commands.SaveBuffer_Click(); });
  choose("LoadBuffer", [&h] { h.buffer_commands.LoadBuffer_Click(); });
  choose("Quit", [this] { Quit_Click(); });
  choose("Resetting", [&h] { h.live_control.Resetting_Click(); });
  ConnectPanelToggle("FreshProg", {&controls_->Get<QWidget>("FrameFlash")});
  ConnectPanelToggle("Emu", {&controls_->Get<QWidget>("FrameRealEmu")});
  ConnectPanelToggle("Serial",
                     {&controls_->Get<QWidget>("FrameSer"), &controls_->Get<QWidget>("FrameInfo")});
}

// The item's check mark always mirrors the panels' visibility.
void Form1::ConnectPanelToggle(const char* item, std::vector<QWidget*> panels) {
  connect(menu_items_.value(QLatin1String(item)), &QAction::toggled, wiring_.get(),
          [panels = std::move(panels)](bool checked) {
            for (QWidget* panel : panels) panel->setVisible(checked);
          });
}

void Form1::Form_Load() {
  Handlers& h = *handlers_;
  h.buffer_commands.Form_Load();
  surroundings_.timer.SetInterval(kStartInterval);
  h.link.Form_Load();
  h.edited.Form_Load();
}

void Form1::closeEvent(QCloseEvent* event) {
  event->accept();
  if (surroundings_.events.Ending()) return;
  Form_Unload();
  Form_Terminate();
  EndProgram();
}

void Form1::Form_Unload() {
  handlers_->live_control.CommandStop_Click();
}

void Form1::Form_Terminate() {
  handlers_->live_control.CommandStop_Click();
}

void Form1::Quit_Click() {
  handlers_->live_control.CommandStop_Click();
  EndProgram();
}

// Nothing more is sent: the port closes once the stop bytes have left. Every wait ends.
void Form1::EndProgram() {
  surroundings_.timer.SetEnabled(false);
  handlers_->comm.Close();
  surroundings_.events.End();
}

}  // namespace pelmora
