// How a number is read that the operator types or pastes into a field.
#pragma once

#include <QString>
#include <optional>

namespace platform {

// The whole number nearest to the text's, halves to the even one, cut to `minimum` .. `maximum`.
// Of separators only the locale's decimal one is taken: in "1.000" the point may be meant for
// thousands. Nothing when the text is no number.
std::optional<int> TypedNumber(const QString& text, int minimum, int maximum);

}  // namespace platform
