#include <QCoreApplication>
#include <QTest>
#include <vector>

#include "bench/connected_program.h"
#include "bench/rows.h"

namespace bench {
namespace {

constexpr int kRounds = 200;
constexpr QSize kSize(1200, 700);

template <class Action>
std::vector<double> Time(Action action) {
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = Clock::now();
    action(round);
    times.push_back(Milliseconds(Clock::now() - start));
  }
  return times;
}

// Drags with the pointer up and down from `grip`, each time until the window is painted.
std::vector<double> Drag(QWidget& control, const QPoint& grip) {
  QWindow* window = control.window()->windowHandle();
  const QPoint place = control.mapTo(control.window(), grip);
  QTest::mousePress(window, Qt::LeftButton, {}, place);
  const auto times = Time([&](int round) {
    QTest::mouseMove(window, place + QPoint(0, round % 2 == 0 ? -20 - round % 50 : 20));
    QCoreApplication::processEvents();
  });
  QTest::mouseRelease(window, Qt::LeftButton, {}, place);
  return times;
}

// Where the pointer takes hold of a level: it has another shape there.
QPoint FindLevel(QWidget& canvas) {
  const QPoint middle = canvas.mapTo(canvas.window(), canvas.rect().center());
  for (int y = canvas.height() / 2; y > 0; --y) {
    QTest::mouseMove(canvas.window()->windowHandle(), {middle.x(), y});
    if (canvas.cursor().shape() == Qt::SplitVCursor) return {middle.x(), y};
  }
  qFatal("there is no level to drag");
}

}  // namespace

void AddMovementRows(Report& report) {
  ConnectedProgram program(simboard::Pace::kUnpaced);
  program.Load(rig::FilledSequences(1, 256, 5));
  program.Select(100);
  program.Trigger("ListMovement");
  auto& window = program.hands->Find<QWidget>("Movement");
  window.resize(kSize);
  QTest::qWait(50);
  auto& canvas = program.hands->Find<QWidget>("MovementCanvas");
  const auto movement = Time([&](int) { canvas.repaint(); });
  const auto form = Time([&](int) { program.form->repaint(); });
  report.Add("painting the movement of 256 steps, 1200 x 700, median", Median(movement),
             "painting the main window", Median(form), "ms");
  report.Add("  99th percentile", Quantile(movement, 0.99), "painting the main window",
             Quantile(form, 0.99), "ms");

  const auto level = Drag(canvas, FindLevel(canvas));
  auto& slide = program.hands->Find<QWidget>("CWSlide1_4");
  program.form->activateWindow();
  program.SetSlider(4, 128);
  const auto fader = Drag(slide, {slide.width() / 2, slide.height() / 2 + 8});
  report.Add("a drag's move in it, from the event to painted, median", Median(level),
             "dragging a fader", Median(fader), "ms");
  report.Add("  99th percentile", Quantile(level, 0.99), "dragging a fader", Quantile(fader, 0.99),
             "ms");
}

}  // namespace bench
