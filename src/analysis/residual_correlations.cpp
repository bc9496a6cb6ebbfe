#include "analysis/residual_correlations.h"

namespace vardento {

const std::vector<ResidualCorrelation>& LargestCorrelations(Run& run, Facet facet) {
  return run.stores.CorrelationsOf(facet).largest;
}

}  // namespace vardento
