// Hears of the passes of the estimation while they run, so that the user can watch it converge.
// What they found is in the run's results too.
#pragma once

#include <cstddef>

#include "run/results.h"

namespace vardento {

class EstimationListener {
 public:
  virtual ~EstimationListener() = default;
  virtual void BeginProx() = 0;  // a new page, the title and the PROX head
  // There is no memory for point-biserial correlations: the run goes on without them.
  virtual void MissBiserial(std::size_t bytes) = 0;
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
