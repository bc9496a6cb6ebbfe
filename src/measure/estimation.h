// The phases of the measurement, in the order in which they run. Each fills the arrays and
// run.results; what is said of them is said by their caller.
//
// The model: log(P(x) / P(x - 1)) = B - D - F(x) for a person of measure B who answers an item of
// difficulty D in category x, behind its step calibration F(x) (Rasch 1960; Andrich 1978, rating
// scale; Masters 1982, partial credit; measure/category_model.h has the sequential forms). All
// measures are logits.
//
// The road: normal approximation (Cohen 1979) for start values and the structure of the scales;
// joint maximum likelihood (Wright & Panchapakesan 1969; Wright & Masters 1982) for the measures;
// one pass for errors and fit (Wright & Masters 1982, ch. 5). Files that fail end the run in their
// words.
#pragma once

#include "measure/estimation_listener.h"
#include "run/run.h"

namespace vardento {

// Bytes that the phases must have for so many persons, beyond the arrays of the run: the joint
// iteration's or the fit pass's, whichever is more, as they run one after the other.
std::size_t NeededByPhases(const Run& run, int persons);

// Puts the run where the estimation begins: statuses, measures, steps as the user gave them,
// nothing found yet. Done before every estimation, so that a run can be measured again.
void BeginEstimation(Run& run);

// The normal-approximation phase ("PROX"; Cohen 1979, Wright & Stone 1979): settles extreme entries
// and the structure of the scales, leaves B and D (NPERS, NI) and steps (NCATS) in logits, scores
// and counts of the entries, and the complete flag on persons who have answered everything. False
// when no active person or item is left. Run once more after observations were dropped it goes on
// from the statuses and scales that the first phase left.
bool EstimateStartValues(Run& run, EstimationListener& listener);
// Makes the responses of active persons to active items missing where the person is further below
// the item than CUTLO= or further above it than CUTHI= (user units, by the start values); a
// distance equal to the limit stays. results.rangeCut tells how many.
void DropOutOfRange(Run& run, EstimationListener& listener);
// Looks for subsets of persons and items that nothing in the data ties to each other, into
// results.subsets: between them the likelihood has no one finite maximum (Haberman 1977; Fischer
// 1981). Nothing when there is no memory for it or the user stops it.
void CheckConnectivity(Run& run);
// The joint maximum likelihood iteration ("UCON"; Wright & Panchapakesan 1969): moves measures and
// steps until expected scores meet the observed ones, into results.iterations and results.outcome.
// Not converging is an outcome, no failure: the measures stand as the last iteration left them.
void EstimateJoint(Run& run, EstimationListener& listener);

// Standard errors and displacements (logits), mean-squares and correlations of every entry, the
// statistics of every category; results.fit. Ends the run when its sums find no memory or the file
// of residuals fails.
void ComputeFit(Run& run);

// The landmarks of every category as differences from the item, logits: half points, score points,
// Thurstone thresholds. The two adjustments are HIADJ= and LOWADJ= or what a Table request puts in
// their place, score points held within 0.001 to 0.5. Groups that were dropped have none; those of
// "S" and "F" are of the whole distribution, an approximation.
void ComputeCategoryPoints(Run& run, float highAdjustment, float lowAdjustment);

}  // namespace vardento
