// What the phases of a run find, from the first iteration to the summary. The convergence table,
// the report, messages and tests read the same records; a run that is measured again begins with
// empty ones. Persons, items and categories stand by entry in RunArrays.
#pragma once

#include <string>
#include <vector>

namespace vardento {

// One pass of the normal-approximation phase.
struct ProxRecord {
  int iteration = 0;
  int activePersons = 0, activeItems = 0, activeCategories = 0;  // as they were before the pass
  float personRange = 0, itemRange = 0;                          // extreme-5 ranges, logits
  float measureChange = 0;  // largest change of a measure, signed, logits
  float stepChange = 0;     // largest change of a step, signed; 0: none changed
};

// One joint maximum likelihood iteration.
struct UconRecord {
  int iteration = 0;
  float scoreResidual = 0;     // the larger of the person and item residuals, score points
  float measureChange = 0;     // logits
  int person = 0, item = 0;    // the least converged ones
  bool personIsWorse = true;   // the star stands behind the person's number, else the item's
  int categoryCode = 0;        // code of the largest category residual
  float categoryResidual = 0;  // counts; 0 when no step changed
  float stepChange = 0;        // logits; exactly 0: the row has no step columns
};

// How the joint iteration ended. Skipped: MUCON= asked for none; LimitReached: the one that the
// system sets.
enum class Outcome { Skipped, Converged, MuconReached, LimitReached, StoppedByUser };

// A subset of persons and items that nothing in the data ties to the others: its first entries; an
// item of 0: none belongs to it alone.
struct Subset {
  int firstPerson = 0, firstItem = 0;
};

// A most unexpected person or item: its number and the largest |z| of its responses.
struct WorstEntry {
  int number = 0;
  float z = 0;
};

// What the fit pass found beside the statistics of each entry.
struct FitOutcome {
  std::vector<WorstEntry> worstItems, worstPersons;  // at most 50, largest first
  double residualMean = 0, residualSD = 0;           // of the standardised residuals
  double itemVariance = 0, personVariance = 0, residualVariance = 0;  // totals for components
  bool ItemDisplaced = false, PersonDisplaced = false;  // a displacement shows as printed
};

// Mean, S.D. over the population, largest and smallest value of one statistic.
struct Statistic {
  float mean = 0, sd = 0, maximum = 0, minimum = 0;
};

// How well measures are told apart: root mean square error, S.D. of the measures adjusted for
// error, their ratio, and the share of the observed variance that is not error.
struct SeparationValues {
  double RMSE = 0, AdjustedSD = 0, SeparationIndex = 0, Reliability = 0;
};

// The summary of one side of the data, in user units; the entries count by their weights.
struct FacetSummary {
  int measured = 0;                                        // active or anchored, not extreme
  int maximum = 0, minimum = 0, lacking = 0, deleted = 0;  // entries by how they ended
  Statistic score, count, measure, error, realError;       // of those measured
  Statistic infit, infitZ, outfit, outfitZ;                // mean-squares and standardised
  SeparationValues separation, realSeparation;             // by model and by real errors
  double meanError = 0;                                    // S.E. of the mean measure
  Statistic allMeasure, allError, allRealError;            // with the extreme entries
  SeparationValues allSeparation, allRealSeparation;
  int Extreme() const { return maximum + minimum; }
};

struct Summary {
  FacetSummary persons, items;
  int beyondCapacity = 0;  // persons read and not held
  // Responses among those there could be, percent, at most 99.9; 0: all are there, or weights make
  // the count mean something else.
  double validResponses = 0;
  double cutBelow = 0, cutAbove = 0;  // RangeCut in user units, signed by USCALE=
};

// Responses that CUTLO= and CUTHI= made missing.
struct RangeCut {
  float below = 0, above = 0;  // distances between person and item, logits; 0: no limit
  long long dropped = 0;
};

struct Results {
  std::vector<std::vector<ProxRecord>> startValues;  // one list each time the phase ran
  RangeCut rangeCut;
  std::vector<UconRecord> iterations;
  Outcome outcome = Outcome::Skipped;
  std::vector<Subset> subsets;  // in the order of their first persons; at most one: connected
  FitOutcome fit;
  Summary summary;
  std::string RunDigest;         // up to 100 characters for the page heads
  std::string connectivityText;  // up to 80 characters for the page heads

  int ActivePersons = 0, ActiveItems = 0, ActiveCategories = 0;
  int PersonsReported = 0, ItemsReported = 0;  // with a measure
  int largestGroupTop = 0;
  bool ItemAnchored = false, PersonAnchored = false;  // an anchored one was met
  float PersonBias = 1, ItemBias = 1;                 // factors of reported measures
};

}  // namespace vardento
