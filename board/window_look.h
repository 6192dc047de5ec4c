// The colours and letters of the board's window. They are its own, whatever the desktop's theme.
#pragma once

#include <QColor>
#include <QFont>

namespace simboard::look {

inline const QColor kBackground(0xF3, 0xF5, 0xF8);
inline const QColor kCard(0xFF, 0xFF, 0xFF);
inline const QColor kCardEdge(0xDF, 0xE4, 0xEB);
inline const QColor kText(0x22, 0x2E, 0x3C);
inline const QColor kQuietText(0x5F, 0x6D, 0x7E);
inline const QColor kAccent(0x2B, 0x74, 0xC7);
inline const QColor kAccentPale(0xDC, 0xE9, 0xF7);
inline const QColor kTrack(0xE6, 0xEA, 0xF0);
inline const QColor kServoBody(0x3B, 0x48, 0x5A);
inline const QColor kServoEdge(0x29, 0x34, 0x43);
inline const QColor kLampOn(0x2E, 0xAF, 0x67);
inline const QColor kLampOff(0xC3, 0xCB, 0xD5);

inline QFont Letters(int pixels, QFont::Weight weight = QFont::Normal) {
  QFont font("Liberation Sans");
  font.setPixelSize(pixels);
  font.setWeight(weight);
  return font;
}

}  // namespace simboard::look
