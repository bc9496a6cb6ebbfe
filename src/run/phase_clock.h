// How long each phase of a run took: read by the benchmark, never printed in a report.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>

namespace vardento {

enum class Phase { Intake, StartValues, Joint, Fit, Output };

class PhaseClock {
 public:
  // From now on time counts for this phase.
  void Enter(Phase phase) {
    const auto now = std::chrono::steady_clock::now();
    if (running_) seconds_[current_] += std::chrono::duration<double>(now - since_).count();
    running_ = true;
    current_ = static_cast<std::size_t>(phase);
    since_ = now;
  }
  // Ends the phase in hand.
  void Stop() {
    Enter(Phase::Output);
    running_ = false;
  }
  double Seconds(Phase phase) const { return seconds_[static_cast<std::size_t>(phase)]; }

 private:
  std::array<double, 5> seconds_{};
  std::size_t current_ = 0;
  bool running_ = false;
  std::chrono::steady_clock::time_point since_;
};

}  // namespace vardento
