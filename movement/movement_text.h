// What the movement's window says in words. Numbers have the decimal point of the user's locale.
#pragma once

#include <QString>
#include <string>

#include "movement/lanes.h"
#include "movement/shown_steps.h"

namespace pelmora {

// The title of the window: "Movement - Sequence N° 3".
QString MovementTitle(int sequence);

// Stands in the place of lanes without steps.
QString NoStepsText();

// "14 steps, 4.82 s".
QString TotalText(const ShownSteps& steps, const StepTimes& times, const std::string& point);

// "Step 7, 3.42 s to 3.82 s, 400 ms, Ch3 12.5 °", without the last part when `channel` is -1.
QString StepText(const ShownSteps& steps, const StepTimes& times, int step, int channel,
                 const std::string& point);

// "12.5 °".
QString PositionText(int position, const std::string& point);

// A mark of the ruler: "0.5 s", with as many decimals as marks so far apart need.
QString RulerText(int ms, int distance, const std::string& point);

// What a drag does, beside the pointer: "Ch4: -4 ° → 12.5 °" or "Step 4: 400 ms → 620 ms".
QString ChangeText(const Preview& preview, int original, const std::string& point);

// Why a step is marked on the ruler.
QString OutrunsSerialLineText(const ShownSteps& steps, int step, const std::string& point);

}  // namespace pelmora
