#include "control/control_pass.h"

#include <algorithm>
#include <cmath>

#include "control/doubtful_values.h"
#include "control/keyword_table.h"
#include "control/keyword_values.h"
#include "control/parse_number.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr float kLargestNumber = 32000;

bool ApplyStage(Run& run, ControlState& state, KeywordStage stage, float number = 0) {
  const std::string keyword = state.parts.keyword;
  const std::string value = state.parts.value;
  const KeywordRow* row = FindKeyword(stage, keyword, value, state.ControlPass);
  if (row == nullptr) return false;
  KeywordCall call{run, state, *row, keyword, value, number};
  ApplyKeyword(call);
  NoteValue(call);
  return true;
}

void ApplyNumber(Run& run, ControlState& state) {
  const std::string& line = run.input.ControlLine;
  float number = 0;
  bool failed = false;
  ParseNumber(LeadingNumber(state.parts.value), number, failed);
  if (failed) FailRun(run, " NUMERIC VALUE EXPECTED: " + line);
  if (ApplyStage(run, state, KeywordStage::Reals, number)) return;
  if (std::fabs(number) > kLargestNumber) {
    FailRun(run, " NUMERIC VALUE IN RANGE -32000 TO 32000 EXPECTED: " + line);
  }
  if (ApplyStage(run, state, KeywordStage::Integers, std::round(number))) return;
  FailRun(run, " UNRECOGNIZED VARIABLE (CHECK SPELLING): " + line);
}

void ApplyAssignment(Run& run, ControlState& state) {
  if (ApplyStage(run, state, KeywordStage::Files)) return;
  if (state.ControlPass == kSecondPass) {
    ApplyStage(run, state, KeywordStage::PerItem);
    return;
  }
  if (ApplyStage(run, state, KeywordStage::Words)) return;
  ApplyNumber(run, state);
}

// The next extra word that is a specification, in run.input.ControlLine. Without a field from the
// prompt the words are those of the command line, whose file names were taken at start-up.
bool NextSpecification(Run& run, ControlState& state) {
  std::string& word = run.input.ControlLine;
  const bool fromField = !Trim(run.startUp.ExtraSpecifications).empty();
  while (TakeWord(run, state, word)) {
    if (!fromField && word.find_first_of("=;") == std::string::npos) continue;
    word.resize(std::min<std::size_t>(word.size(), kMaxLineLength));
    state.place = PlaceOfLine(run, state);
    CopyControlLine(run, state, word);
    return true;
  }
  state.ControlSource = kNoSource;
  return false;
}

// One turn with a file as source. A line that can't be read counts as a blank one; when two in a
// row can't, the file is at its end.
void ReadFromFile(Run& run, ControlState& state, int& faults) {
  const int status = ReadLogicalLine(run, state);
  faults = status == kIoOk ? 0 : faults + 1;
  const bool atEnd = status == kIoEndOfFile || faults > 1;
  state.EndFlag = false;
  if (status == kIoOk) ParseControlLine(run, state);
  if (!atEnd && !state.EndFlag) return;
  LeaveSource(state);
  faults = 0;
}

// The copy goes into the file that reserves the run's number: it is there, empty, and must not be
// removed and made anew, or another run could take the number in between.
void OpenCopy(Run& run) {
  const std::string name = run.workDirectory.NameOf("ZIN");
  run.RunIoStatus = run.input.copy.Open(name, FileMode::Update);
  if (run.RunIoStatus != kIoOk) FatalFileFailure(run, name, 'O');
}

void CloseCopy(Run& run) {
  if (!run.input.copy.IsOpen()) return;
  run.RunIoStatus = run.input.copy.Close();
  if (run.RunIoStatus != kIoOk) FatalFileFailure(run, run.workDirectory.NameOf("ZIN"), 'W');
}

}  // namespace

void ReadControlPass(Run& run, int pass) {
  ControlState state;
  state.ControlPass = pass;
  if (pass == kFirstPass) OpenCopy(run);
  int faults = 0;
  while (state.ControlSource != kNoSource) {
    if (state.ControlSource != kExtraWords) {
      ReadFromFile(run, state, faults);
    } else if (NextSpecification(run, state)) {
      state.EndFlag = false;
      ParseControlLine(run, state);
    }
  }
  CloseCopy(run);
  TellDoubts(run, state);
}

void ParseControlLine(Run& run, ControlState& state) {
  std::string& line = run.input.ControlLine;
  CleanControlLine(line);
  state.parts = SplitControlLine(line);
  switch (state.parts.kind) {
    case ControlLineParts::Kind::Ignored:
      return;
    case ControlLineParts::Kind::End:
      state.EndFlag = true;
      return;
    case ControlLineParts::Kind::Faulty:
      FailRun(run, "Is a ; missing? Variable=Value expected here: " + line);
    case ControlLineParts::Kind::Assignment:
      ApplyAssignment(run, state);
  }
}

}  // namespace vardento
