#include "control/control_source.h"

#include <algorithm>
#include <utility>

#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

bool IsBlankOrLower(char c) { return static_cast<unsigned char>(c) <= ' '; }

TextReader& ReaderInHand(Run& run, ControlState& state) {
  return state.supplements.empty() ? run.input.control : state.supplements.back();
}

[[noreturn]] void FailContinuation(Run& run) {
  FailRun(run,
          " CONTINUATION PROBLEM: TRAILING + THEN LEADING + NOT FOUND: " + run.input.ControlLine);
}

// The place of the mark behind which a continuation line begins. A comment in front of the trailing
// "+" may be ended by a ";" instead.
std::size_t FindContinuationMark(std::string_view text, std::string_view next) {
  std::size_t mark = next.find('+');
  if (text.find(';') != std::string_view::npos) mark = std::min(mark, next.find(';'));
  return mark;
}

// Puts the next physical line in the place of the trailing "+" at offset `end`.
void JoinNextLine(Run& run, ControlState& state, std::size_t end) {
  std::string& line = run.input.ControlLine;
  std::string next;
  const int room = kMaxLineLength - static_cast<int>(end);
  if (ReadSourceLine(run, state, next, room, false) != kIoOk) FailContinuation(run);
  line.resize(end);
  const std::size_t mark = FindContinuationMark(line, next);
  if (mark == std::string::npos) {
    line += next;
    FailContinuation(run);
  }
  CopyControlLine(run, state, next);
  if (!std::all_of(next.begin(), next.begin() + static_cast<std::ptrdiff_t>(mark),
                   IsBlankOrLower)) {
    line += next;
    FailContinuation(run);
  }
  line.append(next, mark + 1);
}

[[noreturn]] void FailSupplement(Run& run, const std::string& name, int status) {
  ReportMessage(run, "SPFILE= FAILED: " + run.input.ControlLine);
  run.RunIoStatus = status;
  FatalFileFailure(run, name, 'I');
}

bool TakeFieldWord(const std::string& field, ControlState& state, std::string& word) {
  const std::size_t first = field.find_first_not_of(' ', std::min(state.nextWord, field.size()));
  if (first == std::string::npos) return false;
  const std::size_t end = std::min(field.find(' ', first), field.size());
  word = field.substr(first, end - first);
  state.nextWord = end;
  return true;
}

}  // namespace

SourceLine PlaceOfLine(Run& run, ControlState& state) {
  if (state.ControlSource == kExtraWords) return {};
  const TextReader& reader = ReaderInHand(run, state);
  return {reader.Name(), reader.LineNumber()};
}

IoStatus ReadSourceLine(Run& run, ControlState& state, std::string& line, int maxLength,
                        bool copy) {
  line.clear();
  const int status = ReaderInHand(run, state).ReadLine(line, maxLength);
  if (status != kIoOk) line.clear();
  if (status == kIoOk && copy) CopyControlLine(run, state, line);
  return status;
}

IoStatus ReadLogicalLine(Run& run, ControlState& state) {
  std::string& line = run.input.ControlLine;
  const int status = ReadSourceLine(run, state, line);
  if (status != kIoOk) return status;
  state.place = PlaceOfLine(run, state);
  for (;;) {
    const std::size_t last = line.find_last_not_of(' ');
    if (last == std::string::npos || line[last] != '+') return kIoOk;
    JoinNextLine(run, state, last);
  }
}

bool TakeWord(Run& run, ControlState& state, std::string& word) {
  const StartUp& startUp = run.startUp;
  if (!Trim(startUp.ExtraSpecifications).empty()) {
    return TakeFieldWord(startUp.ExtraSpecifications, state, word);
  }
  if (state.nextWord >= startUp.words.size()) return false;
  word = startUp.words[state.nextWord++];
  return true;
}

void CopyControlLine(Run& run, const ControlState& state, std::string_view line) {
  if (state.ControlPass != kFirstPass) return;
  // A failure stays with the copy until it is closed.
  static_cast<void>(run.input.copy.WriteLine(TrimRight(line)));
}

void OpenSupplement(Run& run, ControlState& state, std::string name) {
  TextReader reader;
  // No system fault stands behind a list of files without an end.
  if (state.supplements.size() >= kMaxSupplements) FailSupplement(run, name, kIoOk);
  int status = reader.Open(name);
  if (status != kIoOk) FailSupplement(run, name, status);
  if (state.ControlPass == kFirstPass) {
    AddEditEntry(run, "Edit Supplemental Control SPFILE=", name);
  }
  reader.Close();
  PrepareFile(run, name, "SPFILE=");
  run.RunIoStatus = 0;
  status = reader.Open(name);
  if (status != kIoOk) FailSupplement(run, name, status);
  if (state.supplements.empty()) state.SavedSource = state.ControlSource;
  state.supplements.push_back(std::move(reader));
  state.ControlSource = kFirstSupplement + static_cast<int>(state.supplements.size()) - 1;
}

void LeaveSource(ControlState& state) {
  if (!state.supplements.empty()) {
    state.supplements.pop_back();
    state.ControlSource = state.supplements.empty() ? state.SavedSource : state.ControlSource - 1;
  } else if (state.ControlSource == kControlFile) {
    state.ControlSource = kExtraWords;
    state.nextWord = 0;
  }
}

}  // namespace vardento
