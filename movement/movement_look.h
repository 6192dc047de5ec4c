// The drawing of the movement: a ruler, the channels' names, and their angles over time.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <QString>
#include <optional>
#include <string>

#include "movement/lanes.h"

namespace pelmora {

// Made of the palette's active colours and of those of the list's lines.
struct MovementColours {
  QColor window;  // the ground of ruler and names
  QColor lane;
  QColor odd_lane;
  QColor selected;  // the ground of the selected step
  QColor halted;    // the same when playback has halted on it
  QColor text;
  QColor pale_text;  // of channels that never move
  QColor number;     // of the selected step
  QColor curve;
  QColor pale_curve;
  QColor zero;  // the line at 0 degrees
  QColor tick;
  QColor grid;   // from the ticks of the steps down through the lanes
  QColor brk;    // a breakpoint
  QColor slow;   // the mark of a step that the serial line can't carry in time
  QColor amber;  // inside of it
  QColor head;   // the playhead
  QColor bubble;
  QColor bubble_text;
};

MovementColours MovementColoursOf(const QPalette& palette);

// What is drawn.
struct MovementScene {
  const ShownSteps& steps;
  const StepTimes& times;
  const Places& places;
  const std::string& decimal_point;
  QSize size;                     // of the view
  int selected = -1;              // step
  bool halted = false;            // on the selected step
  int named = -1;                 // the step whose angles stand at the names
  bool focused = false;           // the keyboard acts on the chosen lane
  std::optional<double> head;     // the playhead's time in ms
  std::optional<QPointF> handle;  // the place that a drag has taken hold of
  QString bubble;                 // beside it
};

// Draws what is inside `clip`.
void DrawMovement(QPainter& painter, const QRect& clip, const MovementScene& scene,
                  const QPalette& palette);

// What has to be drawn anew when a playhead goes to or from this time.
QRect HeadArea(const Places& places, double ms, int height);

// The area of a bubble and of the handle that it belongs to.
QRect BubbleArea(const QString& text, const QPointF& handle, const QSize& size,
                 const QFontMetrics& font);

}  // namespace pelmora
