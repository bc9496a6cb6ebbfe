// Where something stands that the user wrote, for the warnings that tell of it.
#pragma once

#include <string>
#include <vector>

namespace vardento {

struct SourceLine {
  std::string file;  // empty for the words of the command line
  int line = 0;      // from 1; 0 when nobody knows
};

// A sub-list of the Control File: its work file, and the line that each line of it comes from.
struct SubListSource {
  std::string workFile;
  std::string file;
  std::vector<int> lines;
};

}  // namespace vardento
