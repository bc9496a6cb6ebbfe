// The status bytes of the persons while nobody knows yet how many there are.
#pragma once

#include "run/run.h"

namespace vardento {

// Persons 1..personCapacity; what ReadPersonDeletions left there.
inline Array1<StatusByte> PersonTrial(const Run& run) {
  return {reinterpret_cast<StatusByte*>(run.personStatusTrial.Data()), run.personCapacity};
}

}  // namespace vardento
