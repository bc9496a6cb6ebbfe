// The phases of the measurement, in the order in which they run. Each fills the arrays and
// run.results; what is said of them is said by their caller.
//
// The model: log(P(x) / P(x - 1)) = B - D - F(x) for a person of measure B who answers an item of
// difficulty D in category x, behind its step calibration F(x) (Rasch 1960; Andrich 1978, rating
// scale; Masters 1982, partial credit). All measures are logits.
#pragma once

#include "measure/estimation_listener.h"
#include "run/run.h"

namespace vardento {

// Bytes that the phases must have for so many persons, beyond the arrays of the run.
std::size_t NeededByPhases(const Run& run, int persons);

// Puts the run where the estimation begins: statuses, measures, steps as the user gave them,
// nothing found yet. Done before every estimation, so that a run can be measured again.
void BeginEstimation(Run& run);

// The normal-approximation phase ("PROX"): settles extreme entries and the structure of the scales,
// leaves measures in logits. False when no active person or item is left. Run once more after
// observations were dropped it goes on from the statuses and scales that the first phase left.
bool EstimateStartValues(Run& run, EstimationListener& listener);
// Makes the responses of active persons to active items missing where the person is further below
// the item than CUTLO= or further above it than CUTHI=; results.rangeCut tells how many.
void DropOutOfRange(Run& run, EstimationListener& listener);
// Looks for subsets of persons and items that nothing in the data ties to each other, into
// results.subsets. Nothing when there is no memory for it or the user stops it.
void CheckConnectivity(Run& run);
// The joint maximum likelihood iteration ("UCON"), into results.iterations and results.outcome.
void EstimateJoint(Run& run, EstimationListener& listener);

// Fit statistics, standard errors, displacements of every entry; results.fit.
void ComputeFit(Run& run);

// The landmarks of every category: half points, score points, Thurstone thresholds. The two
// adjustments are HIADJ= and LOWADJ= or what a Table request puts in their place.
void ComputeCategoryPoints(Run& run, float highAdjustment, float lowAdjustment);

}  // namespace vardento
