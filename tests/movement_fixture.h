// The window "Movement" beside the program's, and an operator's hands on it.
#pragma once

#include <QWheelEvent>

#include "movement/movement_look.h"
#include "movement/movement_window.h"
#include "tests/flash_fixture.h"

namespace pelmora {

class Movement : public FlashTest {
 protected:
  // Step i lasts 400 ms; channel c is at 128 + 4 i in the even channels, 128 - 4 i in the others.
  void Compose(int steps) {
    Sequences sequences;
    for (int i = 0; i < steps; ++i) {
      Step step{};
      for (std::size_t c = 0; c < kChannels; ++c) {
        step.positions[c] = static_cast<std::uint8_t>(128 + (c % 2 == 0 ? 4 : -4) * (i % 25));
      }
      step.ticks = 20;
      sequences[0].push_back(step);
    }
    Load(sequences);
  }

  // Shows the window, if it is not shown yet, and makes it the active one.
  void Open() {
    if (!Shown()) hands->Keys(*form, "Ctrl+M");
    Window().activateWindow();
    Window().resize(1200, 700);
    // To the toolkit's own test the window is active while its parent is.
    EXPECT_TRUE(hands->WaitUntil([&] { return QApplication::activeWindow() == &Window(); }));
  }
  void ComposeAndOpen(int steps) {
    Compose(steps);
    Open();
  }

  MovementWindow& Window() const { return hands->Find<MovementWindow>("Movement"); }
  MovementCanvas& Canvas() const { return hands->Find<MovementCanvas>("MovementCanvas"); }
  bool Shown() const {
    const auto* window = form->findChild<MovementWindow*>();
    return window && window->isVisible();
  }
  QString State() const { return hands->Read("MovementState"); }
  QAction& Item(const char* name = "ListMovement") const { return hands->Find<QAction>(name); }

  // Where things stand, by the same geometry.
  Places Geometry(int chosen = 0) const {
    Places places;
    places.time = Canvas().Time();
    places.lanes = Lanes(Places::kRuler, Canvas().height() - Places::kRuler, chosen);
    return places;
  }
  QPoint At(double ms, double y) const { return QPointF(Geometry().X(ms), y).toPoint(); }
  // The level of a step in a lane, while lane `chosen` is the high one.
  QPoint Level(int step, int channel, int chosen = 0) const {
    return At(MiddleOf(step), Geometry(chosen).lanes.Y(channel, Position(step, channel)));
  }
  double MiddleOf(int step) const { return EndOf(step) - 0.5 * Duration(step); }
  int EndOf(int step) const { return step < 0 ? 0 : EndOf(step - 1) + Duration(step); }
  int Duration(int step) const { return Position(step, kDurationColumn); }
  int Position(int step, int channel) const {
    return form->Edited().Row(step)[static_cast<std::size_t>(channel)];
  }

  // Real events, of the window as a whole.
  QPoint InWindow(const QPoint& point) const { return Canvas().mapTo(&Window(), point); }
  void MoveTo(const QPoint& point) {
    pointer = point;
    QTest::mouseMove(Window().windowHandle(), InWindow(point));
  }
  void PressAt(const QPoint& point) {
    MoveTo(point);
    QTest::mousePress(Window().windowHandle(), Qt::LeftButton, {}, InWindow(point));
  }
  void ReleaseAt(const QPoint& point) {
    QTest::mouseRelease(Window().windowHandle(), Qt::LeftButton, {}, InWindow(point));
  }
  void ClickAt(const QPoint& point) {
    PressAt(point);
    ReleaseAt(point);
  }
  void DragTo(const QPoint& from, const QPoint& to) {
    PressAt(from);
    MoveTo((from + to) / 2);
    MoveTo(to);
  }
  void Keys(const QString& keys) { hands->Keys(Canvas(), keys); }
  void Wheel(const QPoint& point, double notches, Qt::KeyboardModifiers modifiers = {}) {
    QWheelEvent event(point, Canvas().mapToGlobal(point), {}, {0, qRound(120 * notches)},
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Canvas(), &event);
  }
  QColor ColourAt(const QPoint& point) { return Canvas().grab().toImage().pixelColor(point); }
  MovementColours Colours() const { return MovementColoursOf(Canvas().palette()); }

  QPoint pointer;  // where it was last moved to
};

}  // namespace pelmora
