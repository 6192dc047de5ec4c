#include "demo/tour.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QProgressBar>
#include <QScreen>
#include <QTextStream>
#include <QToolTip>
#include <QtTest/QTest>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace demo {
namespace {

// Steps as a spreadsheet gives them: waves in nine channels, the others at rest. Two steps are
// shorter than the line needs for them.
QString WaveSteps() {
  QString steps;
  for (int step = 0; step < 24; ++step) {
    for (int channel = 0; channel < 12; ++channel) {
      const double swing = channel % 4 == 3 ? 0 : 40 - 2 * channel;
      steps += QString::number(qRound(swing * std::sin(step * 0.4 + channel * 0.7)));
      steps += QLatin1Char('\t');
    }
    steps += QStringLiteral("%1\n").arg(step % 12 == 5 ? 20 : 200 + step % 3 * 100);
  }
  return steps;
}

}  // namespace

Tour::Tour(rig::ProgramWithBoard& program, QWidget& board_window, const QDir& folder)
    : program_(program),
      window_(*program.form),
      board_window_(board_window),
      board_(program.board),
      folder_(folder),
      operator_(*program.hands) {}

void Tour::Go() {
  operator_.Wait(300);
  Picture("start");
  TryAnEmptyPort();
  Connect();
  MoveServos();
  Compose();
  ChangeSequence();
  UndoAndPaste();
  ShapeTheMovement();
  Interpolate();
  Program();
  ReadBack();
  PlayFromPc();
  PlayOnBoard();
  SaveAndLoad();
  Erase();
  PullTheAdapter();
  Quit();
}

void Tour::TryAnEmptyPort() {
  Say("picks \"Comm8\", where nothing is plugged in");
  AnswerNextMessage(QString(), "port refused");
  operator_.Choose("ComboPort", "Comm8");
  Expect(operator_.Find<QWidget>("ComboPort").isEnabled(), "another port can be chosen");
}

void Tour::Connect() {
  Say("picks \"Comm1\", where the simulated board is");
  auto& combo = operator_.Find<QComboBox>("ComboPort");
  operator_.When([&combo] { return combo.view()->isVisible(); },
                 [this, &combo] {
                   QAbstractItemView& list = *combo.view();
                   const QRect entry = list.visualRect(combo.model()->index(0, 0));
                   QTest::mouseMove(list.viewport(), entry.center());
                   Expect(operator_.WaitUntil([] { return QToolTip::isVisible(); }),
                          "the entry's tool tip comes up");
                   Picture("port list");
                 });
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
  Say("sets a duration of 2000 ms and adds the step");
  operator_.Type("CWNumEditTimeStep", "2000");
  operator_.Click("CommandAdd");
  Say("moves on and adds three more steps of 500 ms");
  operator_.Type("CWNumEditTimeStep", "500");
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
  Picture("next sequence");
  operator_.Click("CommandLessSeq");
  const QStringList after = operator_.ReadLines("ListSequence");
  Expect(after.size() == before.size(), "sequence 0 has its four steps again");
  SayReceived();
  Picture("sequence 0 again");
}

void Tour::UndoAndPaste() {
  auto& list = operator_.Find<QListWidget>("ListSequence");
  const QStringList before = operator_.ReadLines("ListSequence");
  Say("copies a step, pastes it below the last one, removes another, and looks into the list's "
      "menu");
  operator_.ClickLine("ListSequence", 0);
  operator_.Keys(list, "Ctrl+C");
  operator_.ClickLine("ListSequence", 3);
  operator_.Keys(list, "Ctrl+V");
  operator_.ClickLine("ListSequence", 1);
  operator_.Click("CommandRem");
  Expect(operator_.ReadLines("ListSequence").size() == 4, "one step came and one went");
  QTest::mouseClick(list.viewport(), Qt::RightButton, {},
                    list.visualItemRect(list.item(1)).center());
  auto& menu = operator_.Find<QMenu>("ListMenu");
  Expect(operator_.WaitUntil([&menu] { return menu.isVisible(); }), "the list has a menu");
  Picture("list menu");
  menu.close();
  Say("undoes both changes");
  operator_.Wait(100);
  operator_.Keys(list, "Ctrl+Z Ctrl+Z");
  Expect(operator_.ReadLines("ListSequence") == before, "the steps are what they were");
}

void Tour::ShapeTheMovement() {
  Say("goes to sequence 2, pastes 24 steps computed elsewhere, and looks at them over time");
  operator_.Click("CommandMoreSeq");
  operator_.Click("CommandMoreSeq");
  QApplication::clipboard()->setText(WaveSteps());
  auto& list = operator_.Find<QListWidget>("ListSequence");
  operator_.Keys(list, "Ctrl+V");
  Expect(operator_.ReadLines("ListSequence").size() == 24, "24 steps have come");
  for (const int line : {8, 16}) {
    operator_.ClickLine("ListSequence", line);
    operator_.Click("CommandBrk");
  }
  operator_.ClickLine("ListSequence", 11);
  operator_.Keys(list, "Ctrl+M");
  auto& movement = operator_.Find<QWidget>("Movement");
  auto& canvas = operator_.Find<QWidget>("MovementCanvas");
  movement.resize(1000, 620);
  Expect(QTest::qWaitForWindowActive(&movement), "the movement is shown");
  PictureOf(movement, "movement");
  Say("drags a level up, which moves the servo, and then gives the step more time");
  movement.activateWindow();
  operator_.Wait(100);
  Expect(QApplication::activeWindow() == &movement, "the movement has the keyboard");
  QWindow* window = movement.windowHandle();
  const auto find = [&](const QPoint& from, const QPoint& way, Qt::CursorShape shape) {
    QPoint place = from;
    do {
      place += way;
      QTest::mouseMove(window, place);
    } while (canvas.cursor().shape() != shape && canvas.rect().contains(place));
    Expect(canvas.cursor().shape() == shape, "there is something to take hold of");
    return place;
  };
  const auto drag = [&](const QPoint& from, const QPoint& to, const QString& picture) {
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    QTest::mouseMove(window, (from + to) / 2);
    QTest::mouseMove(window, to);
    PictureOf(movement, picture);
    QTest::mouseRelease(window, Qt::LeftButton, {}, to);
  };
  const QStringList before = operator_.ReadLines("ListSequence");
  const QPoint level = find({canvas.width() / 2, 50}, {0, 1}, Qt::SplitVCursor);
  drag(level, level + QPoint(12, -70), "shaping an angle");
  const QPoint end = find(level, {1, 0}, Qt::SplitHCursor);
  drag(end, end + QPoint(60, 0), "shaping a duration");
  Expect(operator_.ReadLines("ListSequence") != before, "the step has changed");
  SayReceived();
  Say("undoes both, and the paste, and hides the movement");
  operator_.Keys(canvas, "Ctrl+Z Ctrl+Z");
  Expect(operator_.ReadLines("ListSequence") == before, "the step is what it was");
  operator_.Keys(canvas, "Ctrl+Z");
  Expect(operator_.ReadLines("ListSequence").isEmpty(), "the steps have gone");
  operator_.Keys(canvas, "Escape");
  operator_.Click("CommandLessSeq");
  operator_.Click("CommandLessSeq");
}

void Tour::Interpolate() {
  Say("selects the second step and opens the interpolation, without choosing a neighbour yet");
  operator_.ClickLine("ListSequence", 1);
  operator_.Click("CommandInterpolate");
  operator_.Type("CWNumEditInterp", "5", false);
  Picture("interpolation dialog");
  operator_.Click("CancelButton");
  Say("selects the first step and splits it into 80 towards the next one");
  operator_.ClickLine("ListSequence", 0);
  operator_.Click("CommandInterpolate");
  operator_.Type("CWNumEditInterp", "80", false);
  operator_.Click("OKButton");
  Expect(operator_.ReadLines("ListSequence").size() == 83, "80 steps stand in the place of one");
  Picture("interpolated");
}

void Tour::Program() {
  Say("shows the panels of the menu \"Advanced\"");
  for (const char* item : {"FreshProg", "Emu", "Serial"}) operator_.ChooseMenu(item);
  Expect(operator_.Find<QLabel>("LabelNotStored").isVisible(), "the list is ahead of the table");
  Picture("not stored");
  Say("goes to sequence 1 and back, which stores sequence 0");
  operator_.Click("CommandMoreSeq");
  operator_.Click("CommandLessSeq");
  board_.Send({65});
  Expect(operator_.WaitUntil([this] { return operator_.Read("Echo") == "65"; }),
         "a byte from the board is shown");
  Picture("debug panels");
  Say("presses \"Program  Seq.\"");
  AnswerNextMessage("Data Flash Erased");
  operator_.When(
      [this] { return program_.BarShown() && program_.Bar() > program_.BarMaximum() / 2; },
      [this] { Picture("programming"); });
  operator_.When(
      [this] { return program_.BarShown() && program_.Bar() > program_.BarMaximum() * 2 / 3; },
      [this] { AnswerNextMessage("Data Flash Programmed!", "programmed"); });
  operator_.Click("CommandFlash");
  SayReceived();
  Expect(board_.Snapshot().sequence_steps[0] == 83, "the board holds the 83 steps of sequence 0");
}

void Tour::ReadBack() {
  const QStringList before = operator_.ReadLines("ListSequence");
  Say("presses \"Clear All\", and then \"Read Seq.\"");
  operator_.Click("CommandClearAll");
  Expect(operator_.ReadLines("ListSequence").isEmpty(), "the list is empty");
  operator_.When(
      [this] { return program_.BarShown() && program_.Bar() > program_.BarMaximum() / 2; },
      [this] { Picture("reading back"); });
  operator_.When([this] { return rig::OpenMessage() != nullptr; },
                 [this] { AnswerNextMessage("Data Flash Read!", "read back"); });
  operator_.Click("CommandRead");
  Expect(operator_.ReadLines("ListSequence") == before, "the same steps have come back");
  SayReceived();
}

void Tour::PlayFromPc() {
  Say("goes to sequence 2 and composes three poses of 400 ms, with breakpoints on two of them");
  operator_.Click("CommandMoreSeq");
  operator_.Click("CommandMoreSeq");
  operator_.Type("CWNumEditTimeStep", "400");
  for (const int position : {60, 128, 200}) {
    for (int channel = 0; channel < 12; ++channel) {
      operator_.Type(QStringLiteral("Text1_%1").arg(channel),
                     QString::number((channel % 2 == 0 ? position : 256 - position) - 128));
    }
    operator_.Click("CommandAdd");
  }
  for (const int line : {1, 2}) {
    operator_.ClickLine("ListSequence", line);
    operator_.Click("CommandBrk");
  }
  operator_.ClickLine("ListSequence", 0);
  SayReceived();
  Say("turns \"PC Emu\" On: playback shows step 1 and halts on its breakpoint");
  operator_.Click("CWButtonEmuPC");
  Expect(operator_.WaitUntil([this] { return operator_.Read("LabelStep").endsWith(" 1"); }),
         "step 1 is shown");
  SayReceived();
  Picture("breakpoint");
  Say("presses \"Continue\": playback goes on to step 2");
  operator_.Click("CommandContinue");
  Expect(operator_.WaitUntil([this] { return operator_.Read("LabelStep").endsWith(" 2"); }),
         "step 2 is shown");
  SayReceived();
  Picture("next breakpoint");
  operator_.Click("CWButtonEmuPC");
}

void Tour::PlayOnBoard() {
  Say("writes the new sequence into the flash");
  AnswerNextMessage("Data Flash Erased");
  operator_.When([this] { return program_.BarShown(); },
                 [this] { AnswerNextMessage("Data Flash Programmed!"); });
  operator_.Click("CommandFlash");
  Say("turns \"Real Emu\" On: the board plays sequence 2 by itself");
  operator_.Click("CWButtonRealEmu");
  for (const int step : {1, 2}) {
    Expect(operator_.WaitUntil([this, step] {
      const simboard::State state = board_.Snapshot();
      return state.playing_sequence == 2 && state.playing_step == step;
    }),
           "the board plays");
    Picture(step == 1 ? "board playing" : "board playing on");
  }
  operator_.Click("CWButtonRealEmu");
  operator_.ChooseMenu("Resetting");
  board_.ClearLog();
}

void Tour::SaveAndLoad() {
  const QString path = folder_.filePath("sequences.dat");
  const QStringList before = operator_.ReadLines("ListSequence");
  Say("saves all sequences in a file");
  AnswerFileDialog(folder_.filePath("sequences"), "save dialog");
  operator_.When([] { return rig::OpenMessage() != nullptr; },
                 [this] { AnswerNextMessage("Data Saved!"); });
  operator_.ChooseMenu("SaveBuffer");
  Expect(QFile::exists(path), "the file is there");
  Say("clears everything and loads the file");
  operator_.Click("CommandClearAll");
  AnswerFileDialog(path, "load dialog");
  operator_.When([] { return rig::OpenMessage() != nullptr; },
                 [this] { AnswerNextMessage("Data Loaded!"); });
  operator_.ChooseMenu("LoadBuffer");
  operator_.Click("CommandMoreSeq");
  operator_.Click("CommandMoreSeq");
  Expect(operator_.ReadLines("ListSequence").size() == before.size(), "the sequences are back");
  Picture("loaded");
}

void Tour::Erase() {
  Say("erases the board's flash");
  AnswerNextMessage("Data Flash Erased", "erased");
  operator_.Click("CommandErase");
  SayReceived();
  Expect(board_.Snapshot().flash_bytes == 0, "the board's flash is empty");
}

void Tour::PullTheAdapter() {
  Say("loses the adapter, which somebody pulls");
  bool told = false;
  operator_.When([] { return rig::OpenMessage() != nullptr; },
                 [this, &told] {
                   QTextStream(stdout) << "  the program says: " << rig::MessageText() << '\n';
                   Picture("adapter pulled");
                   rig::AnswerMessage();
                   told = true;
                 });
  board_.Unplug();
  Expect(operator_.WaitUntil([&told] { return told; }), "the loss is announced");
  Say("plugs it in again and picks \"Comm1\"");
  board_.Replug();
  board_.ClearLog();
  operator_.Choose("ComboPort", "Comm1");
  operator_.Click("CommandUpdate");
  SayReceived();
}

void Tour::Quit() {
  Say("chooses \"Quit\"");
  operator_.ChooseMenu("Quit");
}

void Tour::AnswerNextMessage(const QString& text, const QString& picture) {
  operator_.When([] { return rig::OpenMessage() != nullptr; },
                 [this, text, picture] {
                   QTextStream(stdout) << "  the program says: " << rig::MessageText() << '\n';
                   Expect(text.isEmpty() || rig::MessageText() == text, "the message is: " + text);
                   if (!picture.isEmpty()) Picture(picture);
                   rig::AnswerMessage();
                 });
}

void Tour::AnswerFileDialog(const QString& path, const QString& picture) {
  const auto dialog = [this] { return window_.findChild<QFileDialog*>("FileDialog"); };
  operator_.When([dialog] { return dialog() && dialog()->isVisible(); },
                 [this, dialog, path, picture] {
                   Picture(picture);
                   auto* name = dialog()->findChild<QLineEdit*>("fileNameEdit");
                   name->selectAll();
                   QTest::keyClicks(name, path);
                   QTest::keyClick(name, Qt::Key_Return);
                 });
}

void Tour::Say(const QString& what) {
  QTextStream(stdout) << "The operator " << what << ".\n";
  // A virtual display has no window manager that would give the focus back after a message.
  window_.activateWindow();
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
  // From the screen, so that an open list, dialog or message is on it.
  QRect area = window_.frameGeometry();
  for (const QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible() && widget != &board_window_) area |= widget->frameGeometry();
  }
  QPixmap picture =
      window_.screen()->grabWindow(0, area.x(), area.y(), area.width(), area.height());
  // A virtual display has no window manager that would draw a frame around a dialog.
  QPainter painter(&picture);
  painter.setPen(QColor(0x61, 0x6E, 0x7C));
  for (const QWidget* widget : QApplication::topLevelWidgets()) {
    if (!widget->isVisible() || !qobject_cast<const QDialog*>(widget)) continue;
    painter.drawRect(widget->geometry().translated(-area.topLeft()).adjusted(0, 0, -1, -1));
  }
  painter.end();
  const bool saved = picture.save(folder_.filePath(stem + ".png")) &&
                     board_window_.grab().save(folder_.filePath(stem + ", board.png"));
  Expect(saved, "the pictures can be written to " + folder_.path());
}

void Tour::PictureOf(QWidget& window, const QString& name) {
  operator_.Wait(120);
  const QString number = QStringLiteral("%1").arg(++pictures_, 2, 10, QLatin1Char('0'));
  const QString file = number + QLatin1Char(' ') + name + ".png";
  Expect(window.grab().save(folder_.filePath(file)), "the pictures can be written");
}

void Tour::Expect(bool holds, const QString& what) {
  if (holds) return;
  QTextStream(stderr) << "The tour failed: it should be so that " << what << '\n';
  // The tour may be inside an event handler, and the toolkit lets no exception pass through one.
  std::_Exit(EXIT_FAILURE);
}

}  // namespace demo
