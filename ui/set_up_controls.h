// What the inventory does not say of the controls: colours, scales, columns, entries, spoken steps.
#pragma once

#include "platform/serial/port_directory.h"
#include "ui/controls.h"

namespace pelmora {

// Called once, when the controls have their font. `ports` outlives them.
void SetUpControls(const Controls& controls, const platform::PortDirectory& ports);

}  // namespace pelmora
