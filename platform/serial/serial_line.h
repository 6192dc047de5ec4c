// What the toolkit's serial port leaves to its user: output that never blocks without end, and a
// close that loses nothing.
#pragma once

#include "platform/serial/line_backlog.h"

class QSerialPort;

namespace platform {

// Gives a port that is not open yet its speed and stop bits (1 or 2). Returns how long the line
// takes for a byte.
LineBacklog::Clock::duration ApplyLineSettings(QSerialPort& port, int baud, int stop_bits);

// True when the operating system takes at least one byte for the open port now.
[[nodiscard]] bool AcceptsBytes(QSerialPort& port);

// Bytes that the open port or the operating system still holds, as far as the system knows.
int UnsentBytes(const QSerialPort& port);

// Lets everything written leave the machine, as long as bytes are leaving, and closes the port;
// gives up when none has left for a second. The time that the line needs by its speed counts as
// leaving.
void DrainAndClose(QSerialPort& port, const LineBacklog& backlog);

}  // namespace platform
