#include "rig/program_with_board.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QProgressBar>
#include <QTemporaryDir>

#include "platform/controls/cw_slide.h"
#include "platform/controls/list_box.h"
#include "ui/look.h"

namespace rig {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLineLimit{5000};  // until bytes that were sent have arrived
constexpr milliseconds kQuietLine{30};    // after which nothing more is on its way
constexpr int kTick = 20;                 // ms

using FlashBar = QProgressBar;
constexpr char kFlashBar[] = "ProgressBarFlash";

}  // namespace

ProgramWithBoard::ProgramWithBoard(Complaint complain, simboard::Pace pace, RealParts real)
    : board(pace),
      box(main_loop, complain),
      complain_(std::move(complain)),
      real_box_(main_loop),
      real_files_(main_loop) {
  pelmora::SetUpLook(*qApp);
  Restart(real);
}

ProgramWithBoard::~ProgramWithBoard() {
  hands.reset();
  form.reset();
}

void ProgramWithBoard::Restart(RealParts real) {
  hands.reset();
  form.reset();
  ports_ =
      std::make_unique<FirstPort>([this] { return QString::fromStdString(board.DevicePath()); },
                                  real.other_ports ? &machine_ports_ : nullptr);
  platform::MessageBox* message_box = &box;
  if (real.message_boxes) message_box = &real_box_;
  platform::FileDialog* file_dialog = &files;
  if (real.file_dialogs) file_dialog = &real_files_;
  platform::HiTimer* hi_timer = &timer;
  if (real.timer) hi_timer = &real_timer;
  form = std::make_unique<pelmora::Form1>(
      pelmora::Surroundings{main_loop, *message_box, *file_dialog, *hi_timer, *ports_});
  real_box_.SetParent(form.get());
  real_files_.SetParent(form.get());
  hands = std::make_unique<Operator>(*form);
  if (real.screen.isValid()) form->PlaceOn(real.screen);
  form->show();
  form->activateWindow();
}

void ProgramWithBoard::Connect() {
  auto& combo = hands->Find<QComboBox>("ComboPort");
  combo.setCurrentIndex(0);
  emit combo.activated(0);
  if (combo.isEnabled()) complain_("the simulated board's port is not open");
}

Bytes ProgramWithBoard::Sent(std::size_t count) {
  if (!board.WaitForBytes(count, kLineLimit)) {
    complain_(QString("the board misses bytes: there should be %1").arg(count));
  }
  Bytes bytes = board.Received();
  while (board.WaitForBytes(bytes.size() + 1, kQuietLine)) bytes = board.Received();
  board.ClearLog();
  return bytes;
}

void ProgramWithBoard::ExpectLoss(std::function<void()> meanwhile) {
  const QString sequences = form->Link().SequencesEmptied()
                                ? "Your sequences were cleared when the read began; undo "
                                  "(Ctrl+Z) brings them back."
                                : "Your sequences are untouched.";
  ExpectMessage("The connection on Comm1 (" + QString::fromStdString(board.DevicePath()) +
                    ") is lost: the adapter was pulled or the line hung up.\n\n" + sequences +
                    " Choose a port to connect again.",
                std::move(meanwhile));
}

void ProgramWithBoard::SetSlider(int channel, int position) {
  hands->Find<platform::CWSlide>(QStringLiteral("CWSlide1_%1").arg(channel)).setValue(position);
}

void ProgramWithBoard::AddStep(int channel, int position, int duration_ms) {
  SetSlider(channel, position);
  hands->Type("CWNumEditTimeStep", QString::number(duration_ms));
  hands->Click("CommandAdd");
}

void ProgramWithBoard::Trigger(const QString& item) {
  hands->Find<QAction>(item).trigger();
}

void ProgramWithBoard::Load(const Sequences& sequences) {
  const QTemporaryDir folder;
  files.answer = folder.filePath("sequences.dat");
  WriteFile(*files.answer, QByteArray::fromStdString(FileOf(sequences)));
  box.Expect("Load", "Data Loaded!");
  Trigger("LoadBuffer");
  if (Table() != sequences) complain_("the program does not hold what it has loaded");
}

Sequences ProgramWithBoard::Table() const {
  Sequences sequences;
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    const pelmora::SequenceRecord& record = Data().SeqTable[i];
    for (std::size_t s = 0; s < static_cast<std::size_t>(Data().SeqSteps[i]); ++s) {
      if (record.Duration[s] % kTick != 0) complain_("a duration is no whole number of ticks");
      sequences[i].push_back({record.Position[s], record.Duration[s] / kTick});
    }
  }
  return sequences;
}

platform::ListBox& ProgramWithBoard::List() const {
  return hands->Find<platform::ListBox>("ListSequence");
}

bool ProgramWithBoard::Enabled(const QString& control) const {
  return hands->Find<QWidget>(control).isEnabled();
}

int ProgramWithBoard::Bar() const {
  return hands->Find<FlashBar>(kFlashBar).value();
}

int ProgramWithBoard::BarMaximum() const {
  return hands->Find<FlashBar>(kFlashBar).maximum();
}

bool ProgramWithBoard::BarShown() const {
  return !hands->Find<FlashBar>(kFlashBar).isHidden();
}

void ProgramWithBoard::WatchBar(std::function<void(int)> changed) {
  QObject::connect(&hands->Find<FlashBar>(kFlashBar), &FlashBar::valueChanged, form.get(),
                   std::move(changed));
}

}  // namespace rig
