#include "analysis/components.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "analysis/contrasts.h"
#include "analysis/power_iteration.h"
#include "analysis/residual_correlations.h"
#include "measure/category_model.h"
#include "measure/entry_values.h"
#include "measure/shell_sort.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kMostComponents = 5;
constexpr int kAlwaysFound = 2;           // components, however small
constexpr double kLeastEigenvalue = 1.5;  // of a third component and further ones
constexpr double kEqualLoadings = 0.0001;

std::vector<int> SortByLoading(std::vector<int> entries, const Vector1<double>& loadings) {
  ShellSort(entries, FirstGapBelow(entries.size()), [&](int a, int b) {
    const double difference = loadings[a] - loadings[b];
    return std::fabs(difference) < kEqualLoadings ? a < b : difference > 0;
  });
  return entries;
}

Component MakeComponent(int number, const PowerIteration& iteration,
                        const std::vector<int>& entries, int size) {
  Component component;
  component.number = number;
  component.eigenvalue = iteration.Eigenvalue();
  component.loadings.Assign(size);
  const auto loadings = iteration.Loadings();
  for (std::size_t place = 0; place < entries.size(); ++place) {
    component.loadings[entries[place]] = loadings[place];
  }
  const auto ends = std::minmax_element(loadings.begin(), loadings.end());
  component.smallest = *ends.first;
  component.largest = *ends.second;
  return component;
}

// Shows the number of each component that is found.
void Extract(Run& run, ResidualComponents& found) {
  PowerIteration iteration(run, found.facet);
  if (!iteration.Open()) return iteration.TellFailure();
  const int size = ArraysOf(run, found.facet).Count();
  if (!run.batch) run.console->WritePart(".");
  for (int number = 1; number <= kMostComponents && run.StopRequest == 0; ++number) {
    if (!iteration.FindNext()) break;
    if (number > 1 && iteration.Eigenvalue() < kTiny) break;  // nothing is left
    found.components.push_back(MakeComponent(number, iteration, found.entries, size));
    if (!run.batch) run.console->WritePart(IntegerText(number));
    if (number > kAlwaysFound && iteration.Eigenvalue() < kLeastEigenvalue) break;
    if (number == kMostComponents || !iteration.Deflate()) break;
  }
  if (!run.batch) run.console->WriteLine("");
  iteration.TellFailure();
}

}  // namespace

int Contrast::LargestScore() const {
  int largest = 0;
  for (const ContrastingEntry& other : others) {
    largest = std::max(largest, std::abs(other.Score()));
  }
  return largest;
}

double ResidualComponents::FactorRatio(const Component& component) const {
  return static_cast<double>(entries.size()) * explained / (noise * component.eigenvalue);
}

ResidualComponents FindComponents(Run& run, Facet facet) {
  ResidualComponents found;
  found.facet = facet;
  if (!CorrelateResiduals(run, facet)) return found;
  found.entries = run.stores.CorrelationsOf(facet).entries;
  if (found.entries.size() < 2) return found;
  const FitOutcome& fit = run.results.fit;
  found.explained = facet == Facet::Persons ? fit.personVariance : fit.itemVariance;
  found.noise = std::max(fit.residualVariance, kTiny);
  Extract(run, found);
  if (found.components.empty()) return found;
  found.order = SortByLoading(found.entries, found.components.front().loadings);
  ContrastFinder contrasts(run, facet, found.order);
  for (Component& component : found.components) {
    component.contrast = contrasts.Find(component.loadings);
  }
  return found;
}

}  // namespace vardento
