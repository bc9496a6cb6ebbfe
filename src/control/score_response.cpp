// How a response code becomes a score: keys, new codes, value tables, alphabet, digits.
#include <algorithm>

#include "control/item_specifications.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kLargestScore = 255;

// Entry n, from 1, of a text of fields; short or empty when the text ends before.
std::string_view FieldOf(std::string_view text, int n, int xwide) {
  const std::size_t place = static_cast<std::size_t>(n - 1) * static_cast<std::size_t>(xwide);
  return text.substr(std::min(place, text.size()), static_cast<std::size_t>(xwide));
}

bool IsRescored(const ControlSettings& settings, int item) {
  const auto place = static_cast<std::size_t>(item) - 1;
  return place < settings.rescoreText.size() && settings.rescoreText[place] == '1';
}

// The score of the first key that the code fits; 0 when none does. Codes stand at the left of their
// field, so a key's are taken in the same way.
int ScoreByKeys(const ScoringInForce& scoring, int xwide, std::string_view code, int item) {
  code = Trim(code);
  for (std::size_t key = 0; key < scoring.keyScores.size(); ++key) {
    if (scoring.keyScores[key] < 0) continue;
    if (Trim(FieldOf(scoring.keyStrings[key], item, xwide)) == code) {
      return scoring.keyScores[key];
    }
  }
  return 0;
}

std::string_view CodeByTable(const ControlSettings& settings, const ScoringInForce& scoring,
                             std::string_view code, int categoryNumber, int item) {
  const auto place = static_cast<std::size_t>(item) - 1;
  if (scoring.IREFER != PerItem::Text || place >= scoring.ireferText.size()) return code;
  for (const IvalueRow& row : settings.ivalueTables) {
    if (row.tag == scoring.ireferText[place]) {
      return FieldOf(row.codes, categoryNumber, settings.XWIDE);
    }
  }
  return code;
}

// The number that the code stands for; -1 when it stands for none.
int ScoreOfCode(const ControlSettings& settings, std::string_view code) {
  if (settings.XWIDE == 1 && !settings.ALPHANUM.empty()) {
    const std::size_t place = code.empty() ? std::string::npos : settings.ALPHANUM.find(code[0]);
    return place == std::string::npos ? -1 : static_cast<int>(place);
  }
  int score = -1;
  for (char c : code) {
    if (c == ' ') continue;
    if (c < '0' || c > '9') return -1;
    score = std::min(std::max(score, 0) * 10 + (c - '0'), kLargestScore);
  }
  return score;
}

int RawScore(const ControlSettings& settings, const ScoringInForce& scoring, int categoryNumber,
             int item) {
  std::string_view code = FieldOf(settings.CODES, categoryNumber, settings.XWIDE);
  if (!scoring.rescoringActive) return ScoreOfCode(settings, code);
  const bool excepted = settings.RESCORE == PerItem::Text && !IsRescored(settings, item);
  if (scoring.NKEY > 0) {
    if (!excepted) return ScoreByKeys(scoring, settings.XWIDE, code, item);
  } else if (settings.RESCORE == PerItem::Single ||
             (settings.RESCORE == PerItem::Text && !excepted)) {
    return ScoreOfCode(settings, FieldOf(settings.NEWSCR, categoryNumber, settings.XWIDE));
  }
  return ScoreOfCode(settings, CodeByTable(settings, scoring, code, categoryNumber, item));
}

}  // namespace

int ScoreResponse(const ControlSettings& settings, const ScoringInForce& scoring,
                  int categoryNumber, int item) {
  const int score = categoryNumber < 1 || categoryNumber > settings.CATEGS
                        ? settings.MISSING
                        : RawScore(settings, scoring, categoryNumber, item);
  return score < 0 || score > kMissingScore ? kMissingScore : score;
}

}  // namespace vardento
