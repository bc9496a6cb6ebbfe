// The status byte of a person or an item: whether it is measured, how, and if not, why. The status
// of a category and of the step into it.
#pragma once

#include <cstdint>

namespace vardento {

using StatusByte = std::int8_t;

namespace Status {
inline constexpr StatusByte Anchored = 2;      // 2 to 8: its measure is fixed by the user
inline constexpr StatusByte Active = 1;        // estimated
inline constexpr StatusByte ExtremeHigh = 0;   // extreme, at the maximum measure
inline constexpr StatusByte ExtremeLow = -1;   // extreme, at the minimum measure
inline constexpr StatusByte NoResponses = -2;  // no usable responses
inline constexpr StatusByte Deleted = -3;      // left out by the user
inline constexpr StatusByte LostHigh = -4;     // was ExtremeHigh, then lost all its responses
inline constexpr StatusByte LostLow = -5;      // was ExtremeLow, then lost all its responses
inline constexpr StatusByte HeldBack = 10;     // taken off the own value by an in-run selection
inline constexpr StatusByte Complete = 16;     // added to a person's byte during estimation
}  // namespace Status

// Takes part in the other side's sums: active or anchored (a person's flag must be off).
inline bool IsActive(StatusByte s) { return s > Status::ExtremeHigh; }
// Has a measure: active, anchored or extreme.
inline bool IsMeasured(StatusByte s) { return s > Status::NoResponses; }
inline bool IsExtreme(StatusByte s) { return s == Status::ExtremeHigh || s == Status::ExtremeLow; }
// May move in the estimation: active or extreme, not anchored.
inline bool IsFree(StatusByte s) { return s > Status::NoResponses && s < Status::Anchored; }
inline bool IsAnchored(StatusByte s) { return s >= Status::Anchored; }
// The one test of all intake code: the entry is read.
inline bool IsRead(StatusByte s) { return s > Status::Deleted; }
inline bool IsHeldBack(StatusByte s) { return s < Status::LostLow; }
// The byte as the estimation left it, whatever a selection after the run holds back.
inline StatusByte OwnStatus(StatusByte s) {
  return IsHeldBack(s) ? static_cast<StatusByte>(s + Status::HeldBack) : s;
}
// The byte less the flag that says that all responses are present.
inline StatusByte WithoutCompleteFlag(StatusByte s) {
  return s > 8 ? static_cast<StatusByte>(s - Status::Complete) : s;
}
inline bool HasCompleteFlag(StatusByte s) { return s > 8; }

namespace StepStatus {
inline constexpr int Anchored = 2;  // the step is fixed by the user
inline constexpr int Active = 1;    // estimated
inline constexpr int Kept = 0;      // nobody used the category, yet it keeps its place; no step
inline constexpr int Unused = -1;   // nobody used it
inline constexpr int Deleted = -3;  // left out by the user
}  // namespace StepStatus

}  // namespace vardento
