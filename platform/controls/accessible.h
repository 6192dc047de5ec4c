// What assistive technology is told of the controls where the toolkit would tell something else: a
// fader's value as the operator reads it, and a drop-down list by its name and its entry.
#pragma once

namespace platform {

// To be called before assistive technology asks for the first control; again does no harm.
void InstallAccessibility();

}  // namespace platform
