// What an estimation phase reports of each of its passes, as data: the convergence table and tests
// read the same records.
#pragma once

namespace vardento {

struct ProxRecord {
  int iteration = 0;
  int activePersons = 0, activeItems = 0, activeCategories = 0;  // as they were before the pass
  float personRange = 0, itemRange = 0;                          // extreme-5 ranges, logits
  float measureChange = 0;  // largest change of a measure, signed, logits
  float stepChange = 0;     // largest change of a step, signed; 0: none changed
};

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

enum class Outcome { Converged, LimitReached, StoppedByUser, Skipped };

// Hears of the passes of both phases, one call for each; prints the convergence table.
class EstimationListener {
 public:
  virtual ~EstimationListener() = default;
  virtual void BeginProx() = 0;      // a new page, the title and the PROX head
  virtual void BeginProxPass() = 0;  // a new page if one is due
  virtual void EndProxPass(const ProxRecord&) = 0;
  // Observations outside CUTLO= and CUTHI= (user units) are about to be dropped; how many were.
  virtual void BeginRangeCut(float low, float high) = 0;
  virtual void EndRangeCut(long long dropped) = 0;
  virtual void BeginUcon() = 0;           // rule and head of the UCON half
  virtual void BeginUconIteration() = 0;  // a new page if one is due
  virtual void EndUconIteration(const UconRecord&) = 0;
  virtual void EndTable() = 0;  // the closing rule
};

}  // namespace vardento
