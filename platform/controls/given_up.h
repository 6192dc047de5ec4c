// Presses that are given up because the pointer is taken away from the control: a message or a
// dialog has come up in front of its window, or it has been disabled. The toolkit keeps the control
// pressed, and the release, if it ever comes, is a click.
#pragma once

#include <QMouseEvent>
#include <QWidget>

namespace platform {

// Whether the pointer is taken from the control by this event of its own.
bool TakesPointer(const QEvent& event, const QWidget& control);

// A release of the left button beside the control, which ends a press without a click. The control
// gives it to its own handler: a disabled one is sent no input.
QMouseEvent ReleaseBeside(const QWidget& control);

}  // namespace platform
