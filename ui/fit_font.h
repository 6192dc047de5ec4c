// The size of the window's text, which depends on the machine's fonts.
#pragma once

#include <QWidget>

namespace pelmora {

// Sets the largest font size of `client`, from 12 pixels down, at which every caption of the
// controls in it can be read in full; a caption that misses it by little is narrowed instead.
// Labels are widened where there is room before the next control.
void FitFont(QWidget& client);

}  // namespace pelmora
