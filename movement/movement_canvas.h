// The lanes of the movement: shows the steps, walks through them and shapes them, by pointer and
// keyboard. It listens to the owner of the steps and keeps none of them.
#pragma once

#include <QBasicTimer>
#include <QPointF>
#include <QWidget>
#include <chrono>
#include <functional>
#include <optional>

#include "edit/edited_sequence.h"
#include "edit/step_list.h"
#include "movement/lanes.h"
#include "movement/shaping.h"
#include "movement/shown_steps.h"

namespace pelmora {

// The step that playback from the PC holds.
struct PlayedStep {
  int step;
  std::chrono::steady_clock::time_point since;
  bool halted;  // until the operator lets it go on
};

// What the movement works on. All of it outlives the movement's window.
struct MovementParts {
  EditedSequence& edited;
  StepList& step_list;
  Faders faders;
  // Asked for what playback holds now; nothing when it is Off.
  std::function<std::optional<PlayedStep>()> Played;
};

class MovementCanvas : public QWidget {
  Q_OBJECT
 public:
  explicit MovementCanvas(const MovementParts& parts, QWidget* parent = nullptr);

  // Playback has begun, ended, halted or gone on.
  void PlaybackChanged();

  const TimeScale& Time() const { return places_.time; }
  void ScrollTo(double left_ms);

  // How many steps there are, and how long they take together.
  QString Total() const;
  // What the pointer is on; without a pointer the selected step in the chosen lane.
  QString State() const;
  // The selected step in the chosen lane; empty when none is selected.
  QString SelectedStep() const;

 signals:
  // `Total`, `State` or `SelectedStep` may have changed.
  void TextsChanged();
  // `Time` has changed.
  void TimeChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool event(QEvent* event) override;

 private:
  // A press on a step that has not been released yet.
  struct Press {
    QPointF place;
    int channel;  // -1 on the ruler
  };

  void SequenceChanged();
  void SelectionChanged();
  void TellTexts();

  ShownSteps Steps() const;
  Hit Under(const QPointF& point) const;
  int NamedStep() const;
  int LateStepAt(int x) const;
  double Grip(const Hit& hit, const QPointF& point) const;
  std::optional<QPointF> HandlePlace(const ShownSteps& steps, const StepTimes& times) const;
  QString Bubble() const;
  QRect TriedArea() const;
  std::optional<double> HeadTime() const;
  double ZoomPlace() const;

  void ChangeTime(const std::function<void(TimeScale&)>& change);
  void MoveView(const std::function<void(TimeScale&)>& change);
  void Fit();
  void Zoom(double x, double factor);
  void LayOutLanes();
  void Choose(int channel);
  void SelectStep(int step);
  void BringSelected();
  void ShowPointer(const QPointF& point);
  void SetHit(const Hit& hit);
  void FollowPointer();
  void Drag(const QPointF& point);
  void ShowTried(const Hit& hit);
  void EndDrag();
  void ShowAllAgain();
  void GiveUp();
  void ShapeBy(const std::function<void()>& change);
  bool TakeKey(const QKeyEvent& event);
  bool TakePlainKey(const QKeyEvent& event);
  bool TakeShapingKey(int key);
  bool TakeZoomKey(int key);
  bool Shape(int column, int change);
  void UpdateStep(int step);
  void UpdateNames();
  void MoveHead();

  const MovementParts parts_;
  Shaping shaping_;
  Places places_;
  int chosen_ = 0;          // channel
  bool fitted_ = true;      // all of the sequence is in view, whatever becomes of it elsewhere
  bool keep_zoom_ = false;  // while a change that was made here is announced
  int total_ = 0;           // ms, without what a drag tries out
  int selected_ = -1;       // the line that is drawn as the selected one
  std::optional<Press> press_;
  std::optional<QPointF> pointer_;
  Hit hit_;                // under the pointer; during a drag what it has taken hold of
  int clicked_step_ = -1;  // of the last press, and what was in view then
  TimeScale clicked_time_;
  QBasicTimer scroll_timer_;
  QBasicTimer head_timer_;
  std::optional<double> head_;  // where the playhead is drawn, in ms
  bool played_ = false;         // playback held a step when it was asked last
  bool halted_ = false;
  bool visible_ = false;
};

}  // namespace pelmora
