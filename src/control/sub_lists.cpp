#include "control/sub_lists.h"

#include <algorithm>

#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

enum class ListEvent { Line, Closed, NotClosed };

bool HoldsEnd(std::string_view line) {
  const std::size_t mark = line.find('&');
  return mark != std::string_view::npos && UpperCase(line.substr(mark, 4)) == "&END";
}

// The next line of the list that holds something, its comment taken off and its tabs blanked.
ListEvent NextListLine(Run& run, ControlState& state, std::string& line) {
  for (;;) {
    if (state.ControlSource == kExtraWords) {
      if (!TakeWord(run, state, line)) return ListEvent::Closed;
      CopyControlLine(run, state, line);
    } else if (ReadSourceLine(run, state, line) != kIoOk) {
      return ListEvent::NotClosed;
    }
    RemoveComment(line);
    std::replace(line.begin(), line.end(), '\t', ' ');
    const std::string_view text = Trim(line);
    if (text.empty()) continue;
    if (text.front() == '*') return ListEvent::Closed;
    // The end of the control lines inside a list: the line that should close it is missing.
    return HoldsEnd(text) ? ListEvent::NotClosed : ListEvent::Line;
  }
}

[[noreturn]] void FailWorkFile(Run& run, const std::string& name, int status, char operation) {
  run.RunIoStatus = status;
  FatalFileFailure(run, name, operation);
}

// Remembers where the lines of the list come from; a list of this name that was read before is
// gone.
SubListSource& NewSource(Run& run, ControlState& state, const std::string& workFile) {
  std::vector<SubListSource>& lists = run.input.subLists;
  std::erase_if(lists, [&](const SubListSource& list) { return list.workFile == workFile; });
  lists.push_back({workFile, PlaceOfLine(run, state).file, {}});
  return lists.back();
}

void CheckClosed(Run& run, const ControlState& state, ListEvent event) {
  if (event == ListEvent::NotClosed) {
    FailRun(run, " NO LINE WITH * FOUND MATCHING " + state.parts.keyword);
  }
}

}  // namespace

void ReadSubList(Run& run, ControlState& state, std::string& fileName, std::string_view tag) {
  TextWriter writer;
  SubListSource* source = nullptr;
  std::string line;
  ListEvent event = NextListLine(run, state, line);
  if (event == ListEvent::Line) {
    fileName = run.workDirectory.NameOf("Z" + std::string(tag));
    const int status = writer.Open(fileName, FileMode::ReplacePrivate);
    if (status != kIoOk) FailWorkFile(run, fileName, status, 'O');
    source = &NewSource(run, state, fileName);
  }
  for (; event == ListEvent::Line; event = NextListLine(run, state, line)) {
    source->lines.push_back(PlaceOfLine(run, state).line);
    const int status = writer.WriteLine(TrimRight(line));
    if (status != kIoOk) FailWorkFile(run, fileName, status, 'W');
  }
  if (writer.IsOpen()) {
    const int status = writer.Close();
    if (status != kIoOk) FailWorkFile(run, fileName, status, 'W');
  }
  CheckClosed(run, state, event);
}

void SkipSubList(Run& run, ControlState& state) {
  std::string line;
  ListEvent event = ListEvent::Line;
  while (event == ListEvent::Line) event = NextListLine(run, state, line);
  CheckClosed(run, state, event);
}

}  // namespace vardento
