// What a screen reader is told of the lanes: the selected step, as the value of the canvas.
#pragma once

#include <QString>

namespace pelmora {

class MovementCanvas;

// From now on every canvas says which step is selected when it is asked.
void SpeakSelectedStep();
// Tells who listens that this is another text now.
void TellSelectedStep(MovementCanvas& canvas, const QString& text);

}  // namespace pelmora
