// What assistive technology is told of a step in the list.
#pragma once

#include <QString>

namespace pelmora {

// "Step 3: Ch0 10 °, Ch1 0 °, ..., Ch11 0 °, 1000 ms", and then "breakpoint" if the line's text has
// its mark, and "halted" if playback is halted there.
QString SpokenStep(int line, const QString& text, bool halted);

}  // namespace pelmora
