// Captions that hold a number, "%1": what the labels say of sequence, step and bytes, at the start
// with the number 0 and later with others.
#pragma once

namespace pelmora {

inline constexpr char kSequenceCaption[] = "Sequence N\u00B0 %1";
inline constexpr char kStepCaption[] = "Step N\u00B0 %1";
inline constexpr char kNoStepCaption[] = "Step N\u00B0 ...";
inline constexpr char kOffsetCaption[] = "OffSet Seq. %1";
inline constexpr char kBytesCaption[] = "%1 bytes";

}  // namespace pelmora
