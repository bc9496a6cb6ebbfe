#include "report/phase_lines.h"

#include <string>

#include "measure/entry_values.h"
#include "platform/standard_streams.h"
#include "report/report_columns.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kHeadTextLength = 80;

void Tell(Run& run, const std::string& line) {
  WriteConsole(run, line);
  WriteReportText(run, line);
}

// A warning that nobody may miss: a batch run has no console.
void TellWarning(Run& run, const std::string& line) {
  if (run.batch) WriteToStandardError(line + "\n");
  Tell(run, line);
}

void TellMember(Run& run, int subset, Facet facet, int entry) {
  if (entry < 1) return;
  Tell(run, " SUBSET " + IntegerText(subset) + ":  " +
                std::string(Trim(SingularLabel(run.settings, facet))) + ":  " + IntegerText(entry) +
                "  " + LabelOfEntry(run, facet, entry));
}

std::string WordsOfEnd(const Run& run) {
  if (run.results.outcome == Outcome::StoppedByUser) return "STOPPED BY THE USER";
  if (run.results.outcome == Outcome::LimitReached) return "ITERATION LIMIT REACHED";
  return "MUCON=" + IntegerText(run.settings.MUCON) + " REACHED";
}

}  // namespace

void TellConnectivity(Run& run) {
  const std::vector<Subset>& subsets = run.results.subsets;
  if (subsets.size() <= 1) return;
  const std::string warning =
      " WARNING: DATA AMBIGUOUSLY CONNECTED. THERE ARE " + std::to_string(subsets.size());
  TellWarning(run, warning + " SUBSETS.");
  Tell(run, " These are members of different subsets:");
  int number = 0;
  for (const Subset& subset : subsets) {
    ++number;
    TellMember(run, number, Facet::Persons, subset.firstPerson);
    TellMember(run, number, Facet::Items, subset.firstItem);
    if (run.StopRequest == 1) break;  // the user has seen enough of a long list
  }
  run.results.connectivityText = (warning + " SUBSETS LISTED ABOVE.").substr(0, kHeadTextLength);
  Tell(run, run.results.connectivityText);
}

void TellConvergence(Run& run) {
  const Outcome outcome = run.results.outcome;
  if (outcome == Outcome::Converged || outcome == Outcome::Skipped) return;
  const UconRecord& last = run.results.iterations.back();
  const std::string line = " NOT CONVERGED: " + WordsOfEnd(run) + ". LARGEST RESIDUAL " +
                           PlainNumber(last.scoreResidual, 13, 2) + " SCORE POINTS, CHANGE " +
                           PlainNumber(last.measureChange, 12, 4) + " LOGITS";
  if (run.batch) WriteToStandardError(line + "\n");
  WriteConsole(run, line);
  WriteReportText(run, " " + line);  // the report shows the blank too
}

void TellResiduals(Run& run) {
  const auto text = [](double value) {
    return std::string(Trim(FixedText(static_cast<float>(value), "(F10.2)", 10)));
  };
  Tell(run, " Standardized Residuals N(0,1)  Mean: " + text(run.results.fit.residualMean) +
                " S.D.: " + text(run.results.fit.residualSD));
}

}  // namespace vardento
