// Where every estimation begins, and the memory that its phases can't do without.
#include <algorithm>
#include <initializer_list>

#include "data/data_reader.h"
#include "measure/estimation.h"
#include "measure/fit_pass.h"
#include "measure/joint_iteration.h"

namespace vardento {

namespace {

template <class T>
void Copy(const Array1<T>& from, const Array1<T>& to) {
  std::copy(from.begin(), from.end(), to.begin());
}

template <class T>
void Clear(std::initializer_list<Array1<T>> arrays) {
  for (const Array1<T>& array : arrays) std::fill(array.begin(), array.end(), T());
}

// Who is not anchored begins at 0: without a spread to expand by, the first pass gives plain
// log-odds.
void Begin(const Array1<StatusByte>& given, const std::vector<Anchor>& anchors,
           const Array1<StatusByte>& status, const Array1<float>& measures) {
  Copy(given, status);
  Clear({measures});
  for (const Anchor& anchor : anchors) {
    if (status[anchor.entry] != Status::Active) continue;
    status[anchor.entry] = Status::Anchored;
    measures[anchor.entry] = anchor.measure;
  }
}

void ClearFound(RunArrays& a) {
  Clear({a.ItemScore,
         a.ItemCount,
         a.ItemModelScore,
         a.ItemModelMax,
         a.ItemTotalScore,
         a.ItemTotalCount,
         a.ItemInfit,
         a.ItemOutfit,
         a.ItemInfitZ,
         a.ItemOutfitZ,
         a.ItemCorrelation,
         a.GroupMissingCount,
         a.GroupMissingMeasure,
         a.CategoryCount,
         a.CategoryExpectedCount,
         a.CategoryInformation,
         a.CategoryObservedZ,
         a.CategoryObservedY,
         a.CategoryVariance,
         a.CategoryZVariance,
         a.CategoryObservedMeasure,
         a.CategoryExpectedMeasure,
         a.PersonTotalScore,
         a.PersonTotalCount,
         a.PersonInfit,
         a.PersonOutfit,
         a.PersonInfitZ,
         a.PersonOutfitZ});
  Clear({a.ItemError, a.ItemDisplacement, a.CategoryHalfPoint, a.CategoryMeasurePoint,
         a.CategoryThurstone});
  Clear({a.CodeToCategory, a.CategoryToCode, a.CategoryExpectedHits, a.CategoryMatches});
}

}  // namespace

std::size_t NeededByPhases(const Run& run, int persons) {
  return std::max(JointIteration::BytesFor(persons), FitArrays().Plan(run).Bytes());
}

void BeginEstimation(Run& run) {
  // Responses that an earlier estimation found out of range come back.
  if (run.results.rangeCut.dropped > 0) ScorePersons(run);
  run.results = Results();
  run.inForce.pointBiserial = run.settings.PTBIS;
  RunArrays& arrays = run.arrays;
  const GivenEntries& given = run.given;
  ClearFound(arrays);
  Begin(given.ItemStatus, given.itemAnchors, arrays.ItemStatus, arrays.ItemMeasure);
  Begin(given.PersonStatus, given.personAnchors, arrays.PersonStatus, arrays.PersonMeasure);
  Copy(given.StepStatus, arrays.StepStatus);
  Copy(given.StepCalibration, arrays.StepCalibration);
  Copy(given.GroupTop, arrays.GroupTop);
  Copy(given.GroupPivotFlag, arrays.GroupPivotFlag);
}

}  // namespace vardento
