// Variables that the run itself blanks or changes on its way. What the user gave stays as it is in
// ControlSettings; here stands what is in force.
#pragma once

#include <string>
#include <vector>

#include "run/control_settings.h"

namespace vardento {

// How responses become scores beside CODES= and NEWSCR=: MAKEKEY= makes the key, IVALUE= without
// IREFER= goes by GROUPS=.
struct ScoringInForce {
  int NKEY = 0;
  std::vector<std::string> keyStrings;
  std::vector<int> keyScores;
  int IREFER = PerItem::None;
  std::string ireferText;
  bool rescoringActive = false;
};

struct VariablesInForce {
  VariablesInForce() = default;
  explicit VariablesInForce(const ControlSettings& given)
      : DATA(given.DATA),
        ILFILE(given.ILFILE),
        IAFILE(given.IAFILE),
        PAFILE(given.PAFILE),
        IWEIGHT(given.IWEIGHT),
        PWEIGHT(given.PWEIGHT),
        IMAP(given.IMAP),
        PMAP(given.PMAP),
        DIF(given.DIF),
        DPF(given.DPF),
        ITLEN(given.ITLEN),
        pointBiserial(given.PTBIS),
        PRCOMP(given.PRCOMP),
        TABLES(given.TABLES) {}

  // Work files can stand in the place of what was named: rewritten records, labels of the Control
  // File, values taken from labels.
  std::string DATA, ILFILE, IAFILE, PAFILE, IWEIGHT, PWEIGHT;
  std::string IMAP, PMAP;  // blank when they can't be read
  std::string DIF, DPF;    // DIF= is blank once a file of either can't be read
  int ITLEN = 0;           // not above the longest label
  ScoringInForce scoring;
  bool pointBiserial = false;  // PTBIS=, unless there was no memory for it
  char PRCOMP = 'S';           // N once the residuals can't be kept
  std::string TABLES;          // blank once TFILE= has taken over
};

}  // namespace vardento
