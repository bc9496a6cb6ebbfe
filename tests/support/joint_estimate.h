// Joint maximum likelihood by the textbook: full-length Newton steps in double over a small matrix,
// one rating scale for all items, sweep after sweep until nothing moves. It shares nothing with the
// program.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace vardento::test {

struct JointModel {
  std::string codes = "01";                 // one character for each category; others are missing
  std::vector<double> scores{0, 1};         // what each category counts
  bool byVariance = false;                  // every response weighs by its variance
  double extreme = 0.3;                     // held off both ends of a score
  std::map<std::size_t, double> anchors{};  // items that stay where they are
};

class JointEstimate {
 public:
  std::vector<double> persons, items;  // measures; without anchors items have mean 0
  std::vector<double> steps;           // into category 1, 2 ...; mean 0
  std::vector<double> personErrors, itemErrors;
  std::vector<char> isExtreme;  // persons without part in the other estimates

  JointEstimate(const std::vector<std::string>& data, JointModel model)
      : persons(data.size(), 0.0),
        items(data[0].size(), 0.0),
        steps(model.scores.size() - 1, 0.0),
        isExtreme(data.size(), 0),
        data_(data),
        model_(std::move(model)) {
    for (const auto& [item, value] : model_.anchors) items[item] = value;
    for (std::size_t n = 0; n < data.size(); ++n) {
      isExtreme[n] = AllAt(n, model_.scores[0]) || AllAt(n, model_.scores.back());
    }
    constexpr int kSweeps = 20000;
    for (int sweep = 0; sweep < kSweeps && Sweep() > 1e-9; ++sweep) {
    }
    FindErrors();
  }

  // The difficulty at which the item's expected score, over these persons, is its score.
  double FindItem(std::size_t item) const {
    double low = -30, high = 30;
    while (high - low > 1e-9) {
      const double d = (low + high) / 2;
      double residual = 0;
      for (std::size_t n = 0; n < persons.size(); ++n) {
        const int x = CategoryOf(n, item);
        if (x >= 0 && !isExtreme[n]) residual += model_.scores[Index(x)] - At(persons[n] - d).mean;
      }
      (residual < 0 ? low : high) = d;
    }
    return low;
  }

 private:
  struct Moments {
    std::vector<double> p;
    double mean = 0, variance = 0;
  };
  static std::size_t Index(int x) { return static_cast<std::size_t>(x); }

  int CategoryOf(std::size_t n, std::size_t i) const {
    const std::size_t place = model_.codes.find(data_[n][i]);
    return place == std::string::npos ? -1 : static_cast<int>(place);
  }
  bool AllAt(std::size_t n, double score) const {
    for (std::size_t i = 0; i < items.size(); ++i) {
      const int x = CategoryOf(n, i);
      if (x >= 0 && model_.scores[Index(x)] != score) return false;
    }
    return true;
  }

  Moments At(double d) const {
    Moments m;
    double sumOfSteps = 0, total = 0;
    for (std::size_t k = 0; k < model_.scores.size(); ++k) {
      if (k > 0) sumOfSteps += steps[k - 1];
      m.p.push_back(std::exp(model_.scores[k] * d - sumOfSteps));
      total += m.p[k];
    }
    double squares = 0;
    for (std::size_t k = 0; k < m.p.size(); ++k) {
      m.p[k] /= total;
      m.mean += model_.scores[k] * m.p[k];
      squares += model_.scores[k] * model_.scores[k] * m.p[k];
    }
    m.variance = squares - m.mean * m.mean;
    return m;
  }

  // Moves everything once; the largest move of a person or step. Centring may undo that of items.
  double Sweep() {
    double largest = 0;
    const auto move = [&largest](double& value, double by) {
      by = std::clamp(by, -1.0, 1.0);
      value += by;
      largest = std::max(largest, std::fabs(by));
    };
    for (std::size_t n = 0; n < persons.size(); ++n) {
      Sums sums;
      for (std::size_t i = 0; i < items.size(); ++i) Add(n, i, sums);
      const double margin = model_.byVariance ? model_.extreme / 4 : model_.extreme;
      const double held = std::min(std::max(sums.score, margin), sums.maximum - margin);
      move(persons[n], (held - sums.expected) / sums.slope);
    }
    double mean = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
      Sums sums;
      for (std::size_t n = 0; n < persons.size(); ++n) {
        if (!isExtreme[n]) Add(n, i, sums);
      }
      const double by = std::clamp((sums.expected - sums.score) / sums.slope, -1.0, 1.0);
      if (!model_.anchors.contains(i)) items[i] += by;
      mean += items[i] / static_cast<double>(items.size());
    }
    if (model_.anchors.empty()) {
      for (double& d : items) d -= mean;
    }
    MoveSteps(move);
    return largest;
  }

  struct Sums {
    double score = 0, maximum = 0, expected = 0, slope = 0;
  };
  void Add(std::size_t n, std::size_t i, Sums& sums) const {
    const int x = CategoryOf(n, i);
    if (x < 0) return;
    const Moments m = At(persons[n] - items[i]);
    const double w = model_.byVariance ? m.variance : 1;
    sums.score += w * model_.scores[Index(x)];
    sums.maximum += w * model_.scores.back();
    sums.expected += w * m.mean;
    sums.slope += w * m.variance;
  }

  // Every step by the log-odds of what was expected against what was seen on its two sides.
  template <class Move>
  void MoveSteps(const Move& move) {
    if (steps.size() < 2) return;
    std::vector<double> seen(model_.scores.size(), 0.0), expected = seen;
    for (std::size_t n = 0; n < persons.size(); ++n) {
      for (std::size_t i = 0; i < items.size() && !isExtreme[n]; ++i) {
        const int x = CategoryOf(n, i);
        if (x < 0) continue;
        const Moments m = At(persons[n] - items[i]);
        const double w = model_.byVariance ? m.variance : 1;
        seen[Index(x)] += w;
        for (std::size_t k = 0; k < m.p.size(); ++k) expected[k] += w * m.p[k];
      }
    }
    std::vector<double> moves;
    double mean = 0;
    for (std::size_t k = 1; k < seen.size(); ++k) {
      moves.push_back(std::log(expected[k] / expected[k - 1]) - std::log(seen[k] / seen[k - 1]));
      mean += (steps[k - 1] + moves.back()) / static_cast<double>(steps.size());
    }
    for (std::size_t k = 0; k < steps.size(); ++k) move(steps[k], moves[k] - mean);
  }

  void FindErrors() {
    personErrors.assign(persons.size(), 0.0);
    itemErrors.assign(items.size(), 0.0);
    for (std::size_t n = 0; n < persons.size(); ++n) {
      for (std::size_t i = 0; i < items.size(); ++i) {
        if (CategoryOf(n, i) < 0) continue;
        const double v = At(persons[n] - items[i]).variance;
        personErrors[n] += v;
        if (!isExtreme[n]) itemErrors[i] += v;
      }
    }
    for (double& e : personErrors) e = 1 / std::sqrt(e);
    for (double& e : itemErrors) e = 1 / std::sqrt(e);
  }

  const std::vector<std::string>& data_;
  JointModel model_;
};

}  // namespace vardento::test
