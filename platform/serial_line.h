// What the toolkit's serial port leaves to its user: line settings as text, output that never
// blocks without end, and a close that loses nothing.
#pragma once

#include <QString>

class QSerialPort;

namespace platform {

// Reads "9600,N,8,2" (baud rate, parity N, E or O, data bits 5..8, stop bits 1 or 2) into a port
// that is not open yet, with flow control off. False when the text is something else.
bool ApplyLineSettings(QSerialPort& port, const QString& settings);

// True when the operating system takes at least one byte for the open port now.
bool AcceptsBytes(QSerialPort& port);

// Lets everything written leave the machine, for one second at the most, and closes the port.
void DrainAndClose(QSerialPort& port);

}  // namespace platform
