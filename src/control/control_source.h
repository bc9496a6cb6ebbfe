// Where control lines come from during one pass: the Control File, its supplemental files and the
// extra words of the command line or prompt.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "control/control_line.h"
#include "control/keyword_table.h"
#include "platform/text_file.h"
#include "run/run.h"

namespace vardento {

inline constexpr int kFirstPass = 1;
inline constexpr int kSecondPass = 2;
inline constexpr int kSpecificationPass = -1;  // one line typed after the run

// Numbers of sources.
inline constexpr int kNoSource = -1;
inline constexpr int kExtraWords = 0;
inline constexpr int kControlFile = 3;
inline constexpr int kFirstSupplement = 20;
// A supplemental file that draws in itself ends here.
inline constexpr std::size_t kMaxSupplements = 50;

// A value that is used otherwise than it was written, or a line that isn't used.
struct Doubt {
  KeywordTarget target;  // where the value is stored
  SourceLine place;
  std::string text;
};

// The state of one pass.
struct ControlState {
  int ControlPass = kFirstPass;
  int ControlSource = kControlFile;
  int SavedSource = kControlFile;       // the source that the first supplemental file was called in
  bool EndFlag = false;                 // &END was met
  bool enteredBatch = false;            // a line of this pass asked for batch mode
  std::size_t nextWord = 0;             // words taken, or characters of the prompt's field
  std::vector<TextReader> supplements;  // source 20 and on
  ControlLineParts parts;               // the line in hand
  SourceLine place;                     // where it begins
  std::vector<Doubt> doubts;            // in the order of the lines
};

// Where the line stands that was read last from the source in hand.
SourceLine PlaceOfLine(Run& run, ControlState& state);

// The next physical line of the file being read, cut at maxLength; a status of io_status.h.
// Copies the line to the copy of the control lines in the first pass, unless `copy` is off.
IoStatus ReadSourceLine(Run& run, ControlState& state, std::string& line,
                        int maxLength = kMaxLineLength, bool copy = true);

// The next logical line of the file being read, continuation lines joined to it, in
// run.input.ControlLine. A continuation that isn't one ends the run.
IoStatus ReadLogicalLine(Run& run, ControlState& state);

// The next of the extra words; false when there are no more. Copies nothing.
bool TakeWord(Run& run, ControlState& state, std::string& word);

// Adds a line, without trailing blanks, to the copy of the control lines; in the first pass only.
void CopyControlLine(Run& run, const ControlState& state, std::string_view line);

// Goes on with the supplemental file `name`; ends the run when that can't be read or is nested too
// deep.
void OpenSupplement(Run& run, ControlState& state, std::string name);

// Leaves a source at its end: a supplemental file for the one that called it, the Control File for
// the extra words.
void LeaveSource(ControlState& state);

}  // namespace vardento
