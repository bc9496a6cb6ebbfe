// The convergence table, on the report and on the console, from the records of the two phases.
#pragma once

#include "measure/estimation_listener.h"
#include "run/run.h"

namespace vardento {

class ConvergenceTable : public EstimationListener {
 public:
  explicit ConvergenceTable(Run& run) : run_(run) {}
  void BeginProx() override;
  void MissBiserial(std::size_t bytes) override;
  void BeginProxPass() override;
  void EndProxPass(const ProxRecord& record) override;
  void BeginRangeCut(float low, float high) override;
  void EndRangeCut(long long dropped) override;
  void BeginUcon() override;
  void BeginUconIteration() override;
  void EndUconIteration(const UconRecord& record) override;
  void EndTable() override;

 private:
  Run& run_;
};

}  // namespace vardento
