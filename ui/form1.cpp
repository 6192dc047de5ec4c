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
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <string>

#include "core/declaration.h"
#include "edit/dialog_interp.h"
#include "edit/sequence_data.h"
#include "edit/sequence_navigation.h"
#include "edit/step_fields.h"
#include "edit/step_list.h"
#include "files/buffer_commands.h"
#include "flash/erase_flash.h"
#include "flash/program_sequences.h"
#include "flash/read_back.h"
#include "link/board_protocol.h"
#include "link/connected_switch.h"
#include "link/debug_panel.h"
#include "link/live_control.h"
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
  editor.LabelStep = &controls.Get<QLabel>("LabelStep");
  return editor;
}

SequenceLabels FindLabels(const Controls& controls) {
  return {&controls.Get<QLabel>("LabelSeq"), &controls.Get<QLabel>("LabelSeqEmu"),
          &controls.Get<QLabel>("LabelStep"), &controls.Get<QLabel>("CommandOffset"),
          &controls.Get<QLabel>("LabelOffset")};
}

void Colour(QLabel& label, const QColor& colour) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, colour);
  label.setPalette(palette);
}

}  // namespace

// The shared data and the handlers that work on it, in the order in which they need each other.
struct Form1::Handlers {
  Handlers(const Surroundings& around, const Controls& controls, QWidget& form)
      : comm(around.ports),
        decimal_point(QLocale().decimalPoint().toStdString()),
        list(controls.Get<ListBox>("ListSequence")),
        labels(FindLabels(controls)),
        editor(FindEditorControls(controls)),
        serial_port(comm, controls.Get<DropDownList>("ComboPort"), around.message_box),
        board(data, comm, around.events, around.message_box, controls.Get<TextField>("Echo"),
              controls.Get<CWSlide>("ProgressBarFlash")),
        debug_panel(comm, controls.Get<TextField>("Echo")),
        main_on_off(controls.Get<CWButton>("CWButtonMainOnOff"), serial_port),
        real_emu(controls.Get<CWButton>("CWButtonRealEmu"), serial_port),
        emu_pc(controls.Get<CWButton>("CWButtonEmuPC"), serial_port),
        live_control(board, main_on_off, real_emu.Button(), emu_pc.Button()),
        sequence_data(data, list, controls.Get<QLabel>("LabelByte"), around.message_box,
                      decimal_point),
        step_fields(data, live_control, editor, list, decimal_point),
        step_list(data, sequence_data, step_fields, list, labels, around.message_box),
        navigation(data, sequence_data, list, labels),
        interpolation(
            {sequence_data, list, *labels.LabelStep, around.message_box, around.events},
            {&form, &controls.Get<QWidget>("FrameBuffEdit"), &controls.Get<QWidget>("FrameMan"),
             &controls.Get<QWidget>("FramePCEmu"), &list}),
        flash_parts{data,
                    comm,
                    around.events,
                    around.message_box,
                    serial_port,
                    board,
                    controls.Get<TextField>("Echo"),
                    controls.Get<CWSlide>("ProgressBarFlash"),
                    controls.Get<PushButton>("Command1")},
        erase(flash_parts),
        program(flash_parts, erase),
        read(flash_parts, sequence_data, step_list, list, *labels.LabelSeq),
        pc_emulator(data, step_list, list, around.timer, emu_pc, real_emu.Button()),
        breakpoints(data, sequence_data, step_fields, list, pc_emulator),
        board_playback(data, board, real_emu, emu_pc.Button()),
        buffer_commands(data, sequence_data, step_list, list, *labels.LabelSeq, around.file_dialog,
                        around.message_box) {}

  Declaration data;
  platform::MSComm comm;
  const std::string decimal_point;
  ListBox& list;
  const SequenceLabels labels;
  const EditorControls editor;

  SerialPort serial_port;
  BoardProtocol board;
  DebugPanel debug_panel;
  ConnectedSwitch main_on_off;
  ConnectedSwitch real_emu;
  ConnectedSwitch emu_pc;
  LiveControl live_control;

  SequenceData sequence_data;
  StepFields step_fields;
  StepList step_list;
  SequenceNavigation navigation;
  Interpolation interpolation;

  const FlashParts flash_parts;
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

const Declaration& Form1::Data() const {
  return handlers_->data;
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
  const platform::ListColumn mark = {right + 110, 70, Qt::AlignLeft, true};
  columns.push_back({right + 10, 80, Qt::AlignRight});
  columns.push_back(mark);
  columns.push_back(mark);
  controls_->Get<ListBox>("ListSequence").SetColumns(std::move(columns));
  controls_->Get<ListBox>("ListSequence").SetLineNumbers(true);
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
  connect(&h.list, &ListBox::MouseDown, wiring_.get(),
          [&h](int line) { h.step_list.ListSequence_MouseDown(line); });
  connect(&h.list, &ListBox::MouseUp, wiring_.get(),
          [&h](int line) { h.step_list.ListSequence_MouseUp(line); });
  connect(&h.list, &ListBox::DblClick, wiring_.get(),
          [&h] { h.step_list.ListSequence_DblClick(); });
  connect(&h.list, &ListBox::MoveLine, wiring_.get(), [&h](int from, int to) {
    h.step_list.ListSequence_MouseDown(from);
    h.step_list.ListSequence_MouseUp(to);
  });
  const auto press_by_key = [this](Qt::Key key, const char* button) {
    auto* target = &controls_->Get<PushButton>(button);
    auto* shortcut = new QShortcut(Qt::ALT | key, target);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, wiring_.get(), [target] {
      target->setFocus(Qt::ShortcutFocusReason);  // a text field commits its entry first
      target->click();
    });
  };
  press_by_key(Qt::Key_Right, "CommandUp");
  press_by_key(Qt::Key_Left, "CommandDwn");
}

void Form1::ConnectLink() {
  Handlers& h = *handlers_;
  connect(&controls_->Get<DropDownList>("ComboPort"), &DropDownList::Click, wiring_.get(),
          [&h] { h.serial_port.ComboPort_Click(); });
  connect(&h.comm, &platform::MSComm::OnComm, wiring_.get(), [&h] { h.board.MSComm1_OnComm(); });
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
  OnClick("Command1", [&h] { h.program.Command1_Click(); });
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
  h.data.SaveCounter = 0;
  surroundings_.timer.SetInterval(kStartInterval);
  h.data.ReadMode = false;
  h.data.ProgramMode = false;
  h.data.AbortRequest = false;
  h.data.EraseMode = false;
  h.sequence_data.ResetBreakPoints();
  h.sequence_data.DataInit();
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
