// The groups of figures.
#pragma once

#include <QString>

#include "bench/report.h"

namespace bench {

// The first painted window and the peak memory of this program's window, and of one with as many of
// the toolkit's own controls, each in a process of its own.
void AddStartUpRows(Report& report);
// What such a process does; returns its exit status. `kind` is one of the two that AddStartUpRows
// passes behind "--paint".
int PaintOneWindow(const QString& kind, int argc, char** argv);

// A slider's move until its bytes are at the other end.
void AddLinkRows(Report& report);

// A full flash in both directions on the line at its real pace, and a wait for a silent board.
void AddFlashRows(Report& report);

// Playback at 20 ms a step.
void AddPlaybackRows(Report& report);

// The window "Movement": painting it, and dragging in it.
void AddMovementRows(Report& report);

// The commands of the step list.
void AddEditingRows(Report& report);

// Undo of the largest change, and what the history costs.
void AddHistoryRows(Report& report);

// The largest buffer file.
void AddFileRows(Report& report);

}  // namespace bench
