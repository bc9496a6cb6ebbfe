// CUTLO= and CUTHI=: responses of a person much below or much above an item become missing, once,
// as the start values stand.
#include <cmath>
#include <vector>

#include "data/work_files.h"
#include "measure/estimation.h"
#include "run/messages.h"

namespace vardento {

namespace {

constexpr std::uint8_t kMissingResponse = 255;

// The limits as distances in logits; 0: none.
struct RangeLimits {
  double below, above;
  bool Excludes(double d) const { return (below != 0 && d < -below) || (above != 0 && d > above); }
};

// Blanks the person's responses outside the limits; how many there were.
int BlankResponses(const Run& run, int person, const RangeLimits& limits,
                   std::vector<std::uint8_t>& row) {
  const RunArrays& arrays = run.arrays;
  const double b = arrays.PersonMeasure[person];
  int dropped = 0;
  for (int i = run.settings.NI; i >= 1; --i) {
    std::uint8_t& response = row[static_cast<std::size_t>(i - 1)];
    if (!IsActive(arrays.ItemStatus[i]) || response == kMissingResponse) continue;
    if (!limits.Excludes(b - arrays.ItemMeasure[i])) continue;
    response = kMissingResponse;
    ++dropped;
  }
  return dropped;
}

}  // namespace

bool DropOutOfRange(Run& run, EstimationListener& listener) {
  ControlSettings& settings = run.settings;
  listener.BeginRangeCut(settings.CUTLO, settings.CUTHI);
  // They stay in logits from here on, and as distances: their signs mean nothing.
  settings.CUTLO = std::fabs(settings.CUTLO / settings.USCALE);
  settings.CUTHI = std::fabs(settings.CUTHI / settings.USCALE);
  const RangeLimits limits{settings.CUTLO, settings.CUTHI};
  const auto items = static_cast<std::size_t>(settings.NI);
  std::vector<std::uint8_t> row(items);
  long long dropped = 0;
  for (int n = 1; n <= run.NPERS; ++n) {
    if (IsActive(WithoutCompleteFlag(run.arrays.PersonStatus[n]))) {
      const std::uint8_t* stored = ReadScoredRow(run, n);
      row.assign(stored, stored + items);
      const int count = BlankResponses(run, n, limits, row);
      if (count > 0) WriteScoredRow(run, n, row.data());
      dropped += count;
    }
    ShowProgress(run, n, run.NPERS);
  }
  listener.EndRangeCut(dropped);
  return dropped > 0;
}

}  // namespace vardento
