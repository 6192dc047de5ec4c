// The program's own look, the same on every desktop.
#pragma once

#include <QApplication>

namespace pelmora {

// Style, colours and font family of the whole program. Called once, before any window is made.
void SetUpLook(QApplication& application);

}  // namespace pelmora
