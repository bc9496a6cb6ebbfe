// CUTLO= and CUTHI=: responses of a person much below or much above an item become missing, once,
// as the start values stand. Far from its item a person's response tells more of guessing or
// carelessness than of the measure. A settled form, without a published source.
#include <cmath>
#include <vector>

#include "data/work_files.h"
#include "measure/estimation.h"
#include "run/messages.h"
#include "run/user_scale.h"

namespace vardento {

namespace {

constexpr std::uint8_t kMissingResponse = 255;

// d = B - D and the limits in logits.
bool IsOutOfRange(const RangeCut& cut, double d) {
  return (cut.below != 0 && d < -cut.below) || (cut.above != 0 && d > cut.above);
}

// Blanks the person's responses outside the limits; how many there were.
int BlankResponses(const Run& run, int person, const RangeCut& cut,
                   std::vector<std::uint8_t>& row) {
  const RunArrays& arrays = run.arrays;
  const double b = arrays.PersonMeasure[person];
  int dropped = 0;
  for (int i = run.settings.NI; i >= 1; --i) {
    std::uint8_t& response = row[static_cast<std::size_t>(i - 1)];
    if (!IsActive(arrays.ItemStatus[i]) || response == kMissingResponse) continue;
    if (!IsOutOfRange(cut, b - arrays.ItemMeasure[i])) continue;
    response = kMissingResponse;
    ++dropped;
  }
  return dropped;
}

}  // namespace

void DropOutOfRange(Run& run, EstimationListener& listener) {
  const ControlSettings& settings = run.settings;
  listener.BeginRangeCut(settings.CUTLO, settings.CUTHI);
  // As distances in logits: the signs mean nothing, and UMEAN= falls out of a difference.
  RangeCut& cut = run.results.rangeCut;
  const UserScale distance(settings);
  cut.below = distance.DistanceToLogits(settings.CUTLO);
  cut.above = distance.DistanceToLogits(settings.CUTHI);
  const auto items = static_cast<std::size_t>(settings.NI);
  std::vector<std::uint8_t> row(items);
  for (int n = 1; n <= run.NPERS; ++n) {
    if (IsActive(WithoutCompleteFlag(run.arrays.PersonStatus[n]))) {
      const std::uint8_t* stored = ReadScoredRow(run, n);
      row.assign(stored, stored + items);
      const int count = BlankResponses(run, n, cut, row);
      if (count > 0) WriteScoredRow(run, n, row.data());
      cut.dropped += count;
    }
    ShowProgress(run, n, run.NPERS);
  }
  listener.EndRangeCut(cut.dropped);
}

}  // namespace vardento
