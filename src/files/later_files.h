// Output files that later pieces of work build, each named here in the place from which the run
// calls it. Until then a request for one leaves no file.
#pragma once

#include "run/run.h"

namespace vardento {

inline void WriteScoreFile(Run&) {}              // SCFILE=
inline void WriteGraphFile(Run&) {}              // GRFILE=
inline void WriteDistractorFile(Run&) {}         // DISFILE=
inline void WriteItemCorrelationFile(Run&) {}    // ICORFILE=
inline void WritePersonCorrelationFile(Run&) {}  // PCORFILE=
inline void WriteGuttmanFile(Run&) {}            // GUFILE=
inline void WriteSimulatedFile(Run&) {}          // SIFILE=
inline void WriteObservationFile(Run&) {}        // XFILE=
inline void WriteResponseFile(Run&) {}           // RFILE=

}  // namespace vardento
