#include "demo/tour.h"

#include <QPixmap>
#include <QTextStream>
#include <stdexcept>
#include <vector>

namespace demo {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLineTime{3000};

}  // namespace

Tour::Tour(QWidget& window, QWidget& board_window, simboard::SimulatedBoard& board,
           const QDir& folder)
    : window_(window),
      board_window_(board_window),
      board_(board),
      folder_(folder),
      operator_(window) {}

void Tour::Go() {
  operator_.Wait(300);
  Picture("start");
  Connect();
  MoveServos();
  Compose();
  ChangeSequence();
}

void Tour::Connect() {
  Say("picks \"Comm1\", where the simulated board is");
  operator_.Choose("ComboPort", "Comm1");
  Expect(!operator_.Find<QWidget>("ComboPort").isEnabled(), "the port is open and the list locked");
  Say("turns \"PC Control Enable\" On");
  operator_.Click("CWButtonMainOnOff");
  SayReceived();
  Picture("connected");
}

void Tour::MoveServos() {
  Say("drags three sliders and types an offset for the fourth");
  operator_.MoveSlider("CWSlide1_0", 200);
  operator_.MoveSlider("CWSlide1_4", 40);
  operator_.MoveSlider("CWSlide1_9", 230);
  operator_.Type("Text1_6", "-50");
  SayReceived();
  const simboard::State state = board_.Snapshot();
  Expect(state.positions[0] == 200 && state.positions[4] == 40 && state.positions[9] == 230 &&
             state.positions[6] == 78,
         "the servos of the board stand where the sliders do");
  Picture("servos moved");
}

void Tour::Compose() {
  Say("sets a duration of 500 ms and adds the step");
  operator_.Type("CWNumEditTimeStep", "500");
  operator_.Click("CommandAdd");
  Say("moves on and adds three more steps");
  const std::vector<std::pair<QString, int>> moves = {
      {"CWSlide1_0", 60}, {"CWSlide1_9", 90}, {"CWSlide1_4", 220}};
  for (const auto& [slide, position] : moves) {
    operator_.MoveSlider(slide, position);
    operator_.Click("CommandAdd");
  }
  Say("drags the last step up to the second place");
  operator_.DragLine("ListSequence", 3, 1);
  Expect(operator_.ReadLines("ListSequence").size() == 4, "the list holds four steps");
  SayReceived();
  Picture("steps composed");
}

void Tour::ChangeSequence() {
  Say("goes to sequence 1, adds a step there, and comes back");
  const QStringList before = operator_.ReadLines("ListSequence");
  operator_.Click("CommandMoreSeq");
  operator_.Click("CommandUpdate");
  operator_.Click("CommandAdd");
  Picture("sequence 1");
  operator_.Click("CommandLessSeq");
  const QStringList after = operator_.ReadLines("ListSequence");
  Expect(after.size() == before.size(), "sequence 0 has its four steps again");
  SayReceived();
  Picture("sequence 0 again");
}

void Tour::Say(const QString& what) {
  QTextStream(stdout) << "The operator " << what << ".\n";
}

void Tour::SayReceived() {
  // The line is slow; what was sent is there once the board has been quiet for a while.
  std::size_t received = 0;
  do {
    received = board_.Received().size();
    operator_.Wait(100);
  } while (board_.Received().size() != received);
  QTextStream out(stdout);
  out << "  the board received " << received << " bytes:";
  constexpr std::size_t kShown = 24;
  const std::vector<std::uint8_t> bytes = board_.Received();
  for (std::size_t i = 0; i < bytes.size() && i < kShown; ++i) {
    out << ' ' << QString::number(bytes[i], 16).rightJustified(2, '0').toUpper();
  }
  if (bytes.size() > kShown) out << " ...";
  out << '\n';
  board_.ClearLog();
}

void Tour::Picture(const QString& name) {
  operator_.Wait(120);
  ++pictures_;
  const QString number = QStringLiteral("%1").arg(pictures_, 2, 10, QLatin1Char('0'));
  const QString stem = number + QLatin1Char(' ') + name;
  const bool saved = window_.grab().save(folder_.filePath(stem + ".png")) &&
                     board_window_.grab().save(folder_.filePath(stem + ", board.png"));
  Expect(saved, "the pictures can be written to " + folder_.path());
}

void Tour::Expect(bool holds, const QString& what) {
  if (!holds) throw std::runtime_error("it should be so that " + what.toStdString());
}

}  // namespace demo
