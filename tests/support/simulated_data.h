// Responses simulated with a fixed seed, so that their truth is known.
#pragma once

#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <string>

namespace vardento::test {

class Simulation {
 public:
  explicit Simulation(unsigned seed) : generator_(seed) {}
  // The distributions of the standard library differ from one to the next; the generator doesn't.
  double Uniform() { return (static_cast<double>(generator_()) + 0.5) / 4294967296.0; }
  double Normal() {
    const double angle = 2 * std::numbers::pi * Uniform();
    return std::sqrt(-2 * std::log(Uniform())) * std::cos(angle);
  }
  // A dichotomous response, d logits between person and item.
  char Respond(double d) { return Uniform() < 1 / (1 + std::exp(-d)) ? '1' : '0'; }

 private:
  std::mt19937 generator_;
};

// A Control File with its data: `items` dichotomous items whose difficulties run from -1 to 1, and
// a row for each person from `row`.
inline std::string SimulatedControl(int persons, int items, const std::string& variables,
                                    const std::function<std::string(int)>& row) {
  std::string text = "NI=" + std::to_string(items) +
                     "\nITEM1=1\nNAME1=" + std::to_string(items + 2) +
                     "\nNAMLEN=6\nCODES=01\nINUMB=Y\n" + variables + "\n&END\n";
  for (int n = 1; n <= persons; ++n) text += row(n) + " " + std::to_string(n) + "\n";
  return text;
}
inline double SpreadDifficulty(int item, int items) {
  return items > 1 ? -1 + 2.0 * (item - 1) / (items - 1) : 0;
}

}  // namespace vardento::test
