#include "data/item_labels.h"

#include <algorithm>

#include "data/work_files.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr int kShortestLabel = 5;  // room for a label made from the item's number
constexpr int kNumberLabelLength = 8;

[[noreturn]] void FailLabels(Run& run, std::string_view text, int status, std::string_view name,
                             char operation) {
  ReportMessage(run, text);
  run.RunIoStatus = status;
  FatalFileFailure(run, name, operation);
}

bool IsLabelEnd(std::string_view line) {
  std::string word;
  for (const char c : line) {
    if (c == ' ') continue;
    word.push_back(UpperCase(c));
    if (word.size() > 9) return false;
  }
  return word == "ENDNAMES" || word == "ENDLABELS";
}

// The next line of the Control File, less its comment; false at its end.
bool ReadControlFileLine(Run& run, std::string& line) {
  line.clear();
  if (!run.input.control.IsOpen()) return false;
  const int status = run.input.control.ReadLine(line);
  if (status == kIoEndOfFile) return false;
  if (status != kIoOk) {
    FailLabels(run, "ERROR READING \"&END\", THEN ITEM LABELS, THEN \"END LABELS\"", status,
               run.startUp.ControlFileName, 'R');
  }
  line.resize(std::min(line.find(';'), line.size()));
  BlankControlCharacters(line);
  return true;
}

void CopyLabelsFromControl(Run& run) {
  const std::string name = run.workDirectory.NameOf("ZIL");
  TextWriter list;
  int status = list.Open(name, FileMode::ReplacePrivate);
  if (status != kIoOk) FailLabels(run, " ITEM LABEL FILE OPEN FAILURE", status, name, 'O');
  int count = 0;
  std::string line;
  while (ReadControlFileLine(run, line) && !IsLabelEnd(line)) {
    if (TrimRight(line).empty()) continue;
    ++count;
    static_cast<void>(list.WriteLine(TrimRight(line)));  // closing tells of a failure
  }
  status = list.Close();
  if (status != kIoOk) FailLabels(run, " ITEM LABEL WORK FILE WRITE FAILURE", status, name, 'W');
  run.inForce.ILFILE = name;
  if (count != run.settings.NI) {
    ReportMessage(run, "Oops!  Item labels = " + IntegerText(count) +
                           ", but NI=" + IntegerText(run.settings.NI));
  }
}

void SkipLabelsInControl(Run& run) {
  std::string line;
  do {
    if (!ReadControlFileLine(run, line)) {
      FailRun(run, "Please put \"END LABELS\" after \"&END\"");
    }
  } while (!IsLabelEnd(line));
}

// The next label of the list, blank lines skipped; false at its end.
bool ReadLabel(Run& run, TextReader& list, std::string& label) {
  for (;;) {
    const int status = list.ReadLine(label);
    if (status == kIoEndOfFile) return false;
    if (status != kIoOk) {
      FailLabels(run, " ITEM LABEL FILE READ FAILURE", status, run.inForce.ILFILE, 'R');
    }
    BlankControlCharacters(label);
    label.resize(std::min(TrimRight(label).size(), static_cast<std::size_t>(kMaxLabel)));
    if (!TrimRight(label).empty()) return true;
  }
}

void WriteLabel(Run& run, int item, std::string_view label) {
  DirectFile& file = run.stores.itemLabels;
  const int status =
      file.Write(item, PadRight(label, static_cast<int>(file.RecordLength())).data());
  if (status != kIoOk) {
    FailLabels(run, " ITEM LABEL WORK FILE WRITE FAILURE", status, "ITEM WORK FILE", 'W');
  }
}

void TellWrongCount(Run& run, int count) {
  const std::string ni = IntegerText(run.settings.NI);
  if (count == 0) {
    ReportMessage(run, " NO ITEM LABELS.  NI= " + ni);
  } else {
    ReportMessage(run, " WRONG NUMBER OF ITEM LABELS. FOUND IN FILE =" + IntegerText(count) +
                           ", but NI=" + ni);
  }
}

}  // namespace

int StoreItemLabels(Run& run) {
  const int NI = run.settings.NI;
  const std::string& name = run.inForce.ILFILE;
  TextReader list;
  int status = list.Open(name);
  if (status != kIoOk) FailLabels(run, " ITEM LABEL FILE OPEN FAILURE", status, name, 'I');
  int count = 0;
  int longest = kShortestLabel;
  std::string label;
  for (; ReadLabel(run, list, label); ++count) {
    longest = std::max(longest, static_cast<int>(label.size()));
  }
  status = run.stores.itemLabels.Close();
  if (status == kIoOk) {
    status = run.stores.itemLabels.Create(run.workDirectory.NameOf("ZJJ"),
                                          static_cast<std::size_t>(longest));
  }
  if (status != kIoOk) {
    FailLabels(run, "UNABLE TO SET UP ITEM WORK FILE.", status, "ITEM WORK FILE", 'O');
  }
  status = list.Rewind();
  if (status != kIoOk) FailLabels(run, " ITEM LABEL FILE REOPEN FAILURE", status, name, 'I');
  int item = 1;
  for (; item <= NI && ReadLabel(run, list, label); ++item) WriteLabel(run, item, label);
  for (; item <= NI; ++item) WriteLabel(run, item, ItemNumberLabel(item, NI));
  if (count != NI) TellWrongCount(run, count);
  return longest;
}

void ReadItemLabels(Run& run) {
  const bool numbersOnly = run.settings.INUMB;
  if (!TrimRight(run.inForce.ILFILE).empty()) {
    SkipLabelsInControl(run);
  } else if (!numbersOnly) {
    CopyLabelsFromControl(run);
  }
  if (numbersOnly) {
    run.inForce.ITLEN = kNumberLabelLength;
    return;
  }
  const int longest = StoreItemLabels(run);
  int& length = run.inForce.ITLEN;
  length = length < 1 ? longest : std::min(length, longest);
}

}  // namespace vardento
