#include "data/score_tables.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "control/item_specifications.h"
#include "run/messages.h"

namespace vardento {

ScoreTable::ScoreTable(const ControlSettings& settings, const ScoringInForce& scoring)
    : columnLength_(static_cast<std::size_t>(settings.CATEGS) + 1) {
  std::unordered_map<std::string, std::size_t> known;
  std::string column(columnLength_, '\0');
  columnStart_.reserve(static_cast<std::size_t>(settings.NI));
  for (int item = 1; item <= settings.NI; ++item) {
    for (int c = 0; c <= settings.CATEGS; ++c) {
      column[static_cast<std::size_t>(c)] =
          static_cast<char>(ScoreResponse(settings, scoring, c, item));
    }
    const auto [place, isNew] = known.try_emplace(column, scores_.size());
    if (isNew) scores_.insert(scores_.end(), column.begin(), column.end());
    columnStart_.push_back(place->second);
  }
}

int ScoreTable::TopScore(int item) const {
  const std::uint8_t* column = Column(item);
  int top = -1;
  for (std::size_t c = 1; c < columnLength_; ++c) {
    if (column[c] != kMissingScore) top = std::max(top, static_cast<int>(column[c]));
  }
  return top;
}

void SizeCategories(Run& run) {
  const ScoreTable scores(run.settings, run.inForce.scoring);
  RunArrays& arrays = run.arrays;
  const int missing = run.settings.MISSING;
  const int lowest = missing >= 0 && missing < kMissingScore ? missing : -1;
  for (int g = 1; g <= run.NGROUPS; ++g) run.given.GroupTop[g] = lowest;
  for (int item = 1; item <= run.settings.NI; ++item) {
    std::int32_t& top = run.given.GroupTop[arrays.ItemGroup[item]];
    top = std::max(top, scores.TopScore(item));
  }
  run.NCATS = 0;
  run.MAXCAT = -1;
  for (int g = 1; g <= run.NGROUPS; ++g) {
    const int top = run.given.GroupTop[g];
    run.MAXCAT = std::max(run.MAXCAT, top);
    arrays.GroupStart[g] = run.NCATS + 1;
    run.NCATS += 1 + std::max(top, 1);
  }
  if (run.MAXCAT < 1) {
    ReportMessage(run, " NONE OF YOUR RESPONSES ARE SCORED 1 OR ABOVE.");
    FailRun(run, " CHECK VARIABLES: CODES=, RESCOR=, NEWSCR=, KEY1=, IVALUE?=");
  }
}

}  // namespace vardento
