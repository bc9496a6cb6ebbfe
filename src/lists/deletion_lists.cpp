// Items and persons that the user leaves out: IDFILE=, PDFILE=.
#include <algorithm>

#include "lists/entry_lists.h"
#include "lists/entry_words.h"
#include "lists/list_file.h"
#include "lists/list_line.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

class DeletionList {
 public:
  DeletionList(Run& run, Array1<StatusByte> status, std::string fileName, EntryWords words,
               std::string_view variable)
      : run_(run),
        status_(status),
        fileName_(std::move(fileName)),
        words_(std::move(words)),
        variable_(variable) {}

  void Read(bool ask) {
    std::fill(status_.begin(), status_.end(), Status::Active);
    run_.HighestMarked = 0;
    run_.DefaultKept = true;
    const bool failed = !TrimRight(fileName_).empty() && !ApplyFile(fileName_);
    if (run_.batch && failed) EndRun(run_);
    // A file that can't be read is asked for again.
    if (run_.batch || (!ask && !failed)) return;
    Ask();
  }

 private:
  void Ask() {
    const std::string what = words_.pluralLabel + " TO DELETE";
    for (;;) {
      const std::string word = marked_ ? "MORE " : "SOME ";
      if (!AskYes(run_, " DO YOU WANT TO READ " + word + what + " FROM A FILE? ")) break;
      std::string name = AskName(run_, " WHAT IS THE NAME OF THE DELETE FILE? ");
      if (!name.empty()) ApplyFile(name);
    }
    if (AskYes(run_, " DO YOU WANT TO TYPE IN " + what + "? ")) ApplyTyping();
    run_.RunIoStatus = 0;
  }

  bool ApplyFile(std::string& name) {
    ListFile list(run_, variable_);
    const std::string caption = "Edit " + words_.label + " Delete " + std::string(variable_) + "=";
    if (!list.Open(name, caption, "")) return false;
    std::string line;
    while (list.Next(line, kEntryRow)) {
      PartFixedColumns(line);
      if (!ApplyLine(line)) list.Refuse();
    }
    return true;
  }

  void ApplyTyping() {
    WriteConsole(run_, "Keyboard");
    for (;;) {
      std::string line =
          AskLine(run_, "INPUT " + words_.label + " TO DELETE (BLANK LINE TO END): ");
      if (!CleanListLine(line)) return;
      ApplyLine(line);
    }
  }

  // "3-7", or two numbers alone: the second ends the range. On a line with more, such as a row of a
  // measure file, only the sign makes one.
  static void ParseDeletion(std::string& line, int& first, int& last) {
    std::replace(line.begin(), line.end(), '+', ' ');
    std::string_view text = line;
    text.remove_prefix(std::min(text.find_first_not_of(" -"), text.size()));
    TakeEntryRange(text, first, last);
    if (last > 0) return;
    const std::string_view word = text.substr(0, text.find(' '));
    if (first == 0 && word.find_first_not_of("0123456789-") != word.npos) return;  // "3-x"
    std::replace(line.begin(), line.end(), '-', ' ');
    text = line;
    TakeEntryRange(text, first, last);
    const std::string_view end = TakeListWord(text);
    if (!Trim(text).empty()) return;
    int none = 0;
    text = end;
    TakeEntryRange(text, last, none);
  }

  // False when the line names no entry.
  bool ApplyLine(std::string& line) {
    const bool keeps = line.find('+') != std::string::npos;
    int first = 0, last = 0;
    ParseDeletion(line, first, last);
    if (first == 0 && last == 0) return false;
    if (keeps && run_.DefaultKept) {
      run_.DefaultKept = false;
      std::fill(status_.begin(), status_.end(), Status::Deleted);
    }
    const EntryRange range = OrderRange(first, last, status_.Size());
    if (range.first > range.last) return true;
    std::fill(&status_[range.first], &status_[range.last] + 1,
              keeps ? Status::Active : Status::Deleted);
    run_.HighestMarked = std::max(run_.HighestMarked, range.last);
    marked_ = true;
    return true;
  }

  Run& run_;
  Array1<StatusByte> status_;
  std::string fileName_;
  EntryWords words_;
  std::string_view variable_;
  bool marked_ = false;
};

void ReadDeletions(Run& run, Array1<StatusByte> status, bool ask, const std::string& fileName,
                   const EntryWords& words, std::string_view variable) {
  DeletionList(run, status, fileName, words, variable).Read(ask);
}

// "ITEM DELETIONS: 3 7-9": the deleted items in runs of neighbours, on lines of about 70 columns.
void ReportItemDeletions(Run& run) {
  constexpr std::size_t kLineEnd = 70;
  const Array1<StatusByte>& status = run.given.ItemStatus;
  const int NI = run.settings.NI;
  std::string line = " " + ItemWords(run).label + " DELETIONS:";
  const std::size_t headLength = line.size();
  for (int i = 1; i <= NI; ++i) {
    if (status[i] != Status::Deleted) continue;
    const int first = i;
    while (i < NI && status[i + 1] == Status::Deleted) ++i;
    if (line.size() > kLineEnd) {
      WriteReportText(run, line);
      line.assign(headLength, ' ');
    }
    line += " " + IntegerText(first);
    if (i > first) line += "-" + IntegerText(i);
  }
  if (line.size() > headLength) WriteReportText(run, line);
}

}  // namespace

void ReadItemDeletions(Run& run) {
  ReadDeletions(run, run.given.ItemStatus, run.settings.IDELQU, run.settings.IDFILE, ItemWords(run),
                "IDFILE");
  ReportItemDeletions(run);
}

void ReadPersonDeletions(Run& run) {
  ReadDeletions(run, run.given.PersonStatus, run.settings.PDELQU, run.settings.PDFILE,
                PersonWords(run), "PDFILE");
}

}  // namespace vardento
