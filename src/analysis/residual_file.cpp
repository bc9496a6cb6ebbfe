#include "analysis/residual_file.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "data/work_files.h"
#include "measure/category_model.h"
#include "measure/observations.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr double kFull = 32767.0;

// Stored in 16 bits as it falls.
std::int16_t Wrap(double value) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(std::llround(value)));
}

std::int16_t Limit(double value) {
  return static_cast<std::int16_t>(std::llround(std::clamp(value, -kFull, kFull)));
}

// Fills the rows of active persons, one after the other.
class ResidualRows {
 public:
  explicit ResidualRows(Run& run)
      : run_(run),
        walk_(MakeEstimatedItemWalk(run)),
        powers_(walk_.largestTop),
        p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0),
        row_(static_cast<std::size_t>(run.settings.NI)) {}

  const std::int16_t* Fill(int person) {
    std::fill(row_.begin(), row_.end(), kNoResidual);
    const std::uint8_t* scores = ReadScoredRow(run_, person);
    powers_.Set(run_.arrays.PersonMeasure[person]);
    for (const ItemInHand& hand : walk_.active) {
      const auto place = static_cast<std::size_t>(hand.item - 1);
      const int x = hand.CategoryOf(scores[place]);
      if (x >= 0) row_[place] = EntryOf(hand, x);
    }
    return row_.data();
  }

 private:
  std::int16_t EntryOf(const ItemInHand& hand, int x) {
    Evaluation model = powers_.Evaluate(hand, x, p_.data());
    model.variance = std::max(model.variance, kTiny);
    const double y = ModelScore(x, hand.tables.top, hand.tables.model).score - model.expected;
    return ResidualEntry(run_.inForce.PRCOMP, {x, hand.tables.top, y, y / std::sqrt(model.variance),
                                               model.variance, p_[static_cast<std::size_t>(x)]});
  }

  Run& run_;
  ItemWalk walk_;
  PersonPowers powers_;
  std::vector<double> p_;          // categories 0..MAXCAT of the pair in hand
  std::vector<std::int16_t> row_;  // of the person in hand, items 1..NI from place 0
};

IoStatus WriteRows(Run& run, int& record) {
  DirectFile& file = run.stores.residuals;
  const auto items = static_cast<std::size_t>(run.settings.NI);
  const IoStatus created =
      file.Create(run.workDirectory.NameOf("ZUU"), items * sizeof(std::int16_t));
  if (created != kIoOk) return created;
  ResidualRows rows(run);
  for (int n = 1; n <= run.NPERS; ++n) {
    if (!IsActive(OwnStatus(run.arrays.PersonStatus[n]))) continue;
    record = n;
    const IoStatus written = file.Write(n, rows.Fill(n));
    if (written != kIoOk) return written;
  }
  return file.Flush();
}

}  // namespace

std::int16_t ResidualEntry(char kind, const ResidualTerms& terms) {
  const double p = std::max(terms.probability, kTiny);
  switch (kind) {
    case 'R':
      return Wrap(kFull * terms.y / terms.top);
    case 'L':
      return Limit(100.0 * terms.y / terms.variance);
    case 'O':
      return Wrap(terms.x);
    case 'K':
      return Wrap(kFull * p);
    case 'H':
      return Wrap(kFull * std::min(-NaturalLog(p) / NaturalLog(0.002), 1.0));
    case 'G':
      return Wrap(kFull * std::clamp(SafeLogOdds(p, 1.0 - p) / NaturalLog(499.0), -1.0, 1.0));
    default:
      return Limit(1500.0 * terms.z);
  }
}

void TellResidualFailure(Run& run, int person, char operation) {
  run.outputFailed = true;
  WriteConsole(run, " STANDARDIZED RESIDUAL WORK FILE FAILURE AT RECORD =" + IntegerText(person));
  ReportFileFailure(run, "STANDARDIZED RESIDUAL WORK FILE", operation);
}

bool MakeResidualFile(Run& run) {
  if (run.stores.residualsMade) return true;
  int record = 0;
  run.RunIoStatus = WriteRows(run, record);
  run.stores.residualsMade = run.RunIoStatus == kIoOk;
  if (run.stores.residualsMade) return true;
  static_cast<void>(run.stores.residuals.Close());
  run.workDirectory.Remove("ZUU");
  TellResidualFailure(run, record, record == 0 ? 'O' : 'W');
  ReportMessage(run,
                "  No Information for Correlations. PRCOMP=" + std::string(1, run.inForce.PRCOMP));
  run.inForce.PRCOMP = 'N';
  return false;
}

}  // namespace vardento
