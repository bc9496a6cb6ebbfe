// The output files that are not built yet: named calls in the order in which a run writes them,
// which do nothing. Each moves to a file of its own when it is built.
#pragma once

#include "run/run.h"

namespace vardento {

inline void WriteStepFile(Run&) {}               // SFILE=
inline void WriteItemStepFile(Run&) {}           // ISFILE=
inline void WriteScoreFile(Run&) {}              // SCFILE=
inline void WriteGraphFile(Run&) {}              // GRFILE=
inline void WriteDistractorFile(Run&) {}         // DISFILE=
inline void WriteItemCorrelationFile(Run&) {}    // ICORFILE=
inline void WritePersonCorrelationFile(Run&) {}  // PCORFILE=
inline void WriteGuttmanFile(Run&) {}            // GUFILE=
inline void WriteSimulatedFile(Run&) {}          // SIFILE=
inline void WriteObservationFile(Run&) {}        // XFILE=
inline void WriteScoredResponseFile(Run&) {}     // RFILE=

}  // namespace vardento
