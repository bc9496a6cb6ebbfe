// XFILE=: a line for each observation, with the fields that were chosen.
#pragma once

#include <string>

#include "run/run.h"

namespace vardento {

// Which fields and observations the file has.
struct ObservationFields {
  // The places of `chosen` behind the fields, counted as those are from 1.
  static constexpr int kMissing = 12;  // observations that tell nothing as well
  static constexpr int kExtreme = 13;  // those of extreme and unmeasured entries as well
  static constexpr int kOnePerson = 14, kOneItem = 15;

  // Anything but a blank means yes. The fields: 1 person, 2 item, 3 observed, 4 ordered,
  // 5 expectation, 6 variance, 7 standardised residual, 8 residual, 9 measure difference,
  // 10 log-probability, 11 code.
  std::string chosen = "xxxxxxxxxxx    ";
  int person = 0,
      item = 0;  // the only ones when chosen so; a number that isn't there is passed over

  bool Has(int place) const {
    const auto at = static_cast<std::size_t>(place) - 1;
    return at < chosen.size() && chosen[at] != ' ';
  }
};

void WriteObservationFile(Run& run);  // all fields, to settings.XFILE
void WriteObservationFile(Run& run, const std::string& name, const ObservationFields& fields);

}  // namespace vardento
