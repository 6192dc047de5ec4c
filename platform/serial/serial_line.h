// What the toolkit's serial port leaves to its user: line settings as text, output that never
// blocks without end, and a close that loses nothing.
#pragma once

#include <QString>
#include <optional>

#include "platform/serial/line_backlog.h"

class QSerialPort;

namespace platform {

// Reads "9600,N,8,2" (baud rate, parity N, E or O, data bits 5..8, stop bits 1 or 2) into a port
// that is not open yet, with flow control off. Returns how long the line takes for a byte; nothing
// when the text is something else.
[[nodiscard]] std::optional<LineBacklog::Clock::duration> ApplyLineSettings(
    QSerialPort& port, const QString& settings);

// True when the operating system takes at least one byte for the open port now.
[[nodiscard]] bool AcceptsBytes(QSerialPort& port);

// Bytes that the open port or the operating system still holds, as far as the system knows.
int UnsentBytes(const QSerialPort& port);

// Lets everything written leave the machine, as long as bytes are leaving, and closes the port;
// gives up when none has left for a second. The time that the line needs by its speed counts as
// leaving.
void DrainAndClose(QSerialPort& port, const LineBacklog& backlog);

}  // namespace platform
