// The program's own look, the same on every desktop.
#pragma once

#include <QApplication>
#include <QColor>
#include <QPalette>

namespace pelmora {

inline constexpr QColor kSequenceColour(0xC8, 0x10, 0x10);  // the label of the current sequence
inline constexpr QColor kStepColour(0x00, 0x00, 0x80);      // the labels of the step being composed

QPalette ProgramPalette();

// Style, colours and font family of the whole program. Called once, before any window is made.
void SetUpLook(QApplication& application);

}  // namespace pelmora
