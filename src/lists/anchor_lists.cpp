#include <algorithm>
#include <cmath>
#include <vector>

#include "control/parse_number.h"
#include "lists/entry_lists.h"
#include "lists/entry_words.h"
#include "lists/list_file.h"
#include "lists/list_line.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

// A measure that fills its field in a measure file of fixed columns stands right behind the entry:
// sets a blank between the two. Lines of any other form stay as they are.
void PartFixedColumns(std::string& line) {
  constexpr std::size_t kMeasure = 6, kStatus = 14;  // where these columns begin
  if (line.size() <= kStatus || line[0] != ' ' || line[kMeasure] == ' ' || line[kStatus] != ' ') {
    return;
  }
  const std::string_view entry = Trim(std::string_view(line).substr(0, kMeasure));
  const std::string_view measure = std::string_view(line).substr(kMeasure, kStatus - kMeasure);
  float value = 0;
  bool failed = false;
  ParseListValue(measure, value, failed);
  const bool isRow = !failed && measure.find('.') != std::string_view::npos &&
                     line[kMeasure - 1] != ' ' && ParseCount(entry) > 0;
  if (isRow) line.insert(kMeasure, 1, ' ');
}

class AnchorList {
 public:
  AnchorList(Run& run, Array1<StatusByte> status, std::vector<Anchor>& anchors, EntryWords words,
             std::string_view variable)
      : run_(run),
        status_(status),
        anchors_(anchors),
        words_(std::move(words)),
        variable_(variable) {}

  void Read(bool ask, std::string fileName) {
    anchors_.clear();
    if (!TrimRight(fileName).empty()) ApplyFile(fileName);
    if (!ask) return;
    AskForEntries(
        run_, words_, "ANCHOR", [this](std::string& name) { ApplyFile(name); },
        [this] { ApplyTyping(); });
  }

 private:
  void ApplyFile(std::string& name) {
    ListFile list(run_, variable_);
    list.OpenOrEnd(name, "Edit " + words_.label + " Anchor " + std::string(variable_) + "=",
                   " Processing " + words_.label + " Anchors from: ");
    std::string line;
    while (list.Next(line, true)) {
      int first = 0, last = 0;
      float value = 0;
      bool failed = false;
      PartFixedColumns(line);
      ParseListLine(line, first, value, failed, last);
      const bool good = first > 0 && !failed && Fix(OrderRange(first, last, status_.Size()), value);
      if (!good) list.Refuse();
    }
  }

  void ApplyTyping() {
    for (;;) {
      std::string line = AskLine(run_, "INPUT " + words_.label + " TO ANCHOR (0 TO END): ");
      CleanListLine(line);
      std::string_view text = line;
      int first = 0, last = 0;
      TakeEntryRange(text, first, last);
      if (first < 1 || first > status_.Size()) return;
      std::string answer = AskLine(run_, "INPUT VALUE AT WHICH TO ANCHOR " + words_.label);
      CleanListLine(answer);
      float value = 0;
      bool failed = false;
      ParseListValue(Trim(answer), value, failed);
      if (!failed) Fix(OrderRange(first, last, status_.Size()), value);
    }
  }

  // An entry keeps its first anchor; one that was left out takes none. False for a value beyond all
  // measures.
  bool Fix(const EntryRange& range, float value) {
    const ControlSettings& settings = run_.settings;
    const float logits =
        settings.UANCHOR ? (value - settings.UMEAN) / settings.USCALE : value / settings.UASCALE;
    if (!std::isfinite(logits)) return false;
    for (int entry = range.first; entry <= range.last; ++entry) {
      if (status_[entry] != Status::Active) continue;
      status_[entry] = Status::Anchored;
      anchors_.push_back({entry, logits});
    }
    return true;
  }

  Run& run_;
  Array1<StatusByte> status_;
  std::vector<Anchor>& anchors_;
  EntryWords words_;
  std::string_view variable_;
};

void ReadAnchors(Run& run, Array1<StatusByte> status, std::vector<Anchor>& anchors, bool ask,
                 const std::string& fileName, const EntryWords& words, std::string_view variable) {
  AnchorList(run, status, anchors, words, variable).Read(ask, fileName);
}

}  // namespace

void ReadItemAnchors(Run& run) {
  ReadAnchors(run, run.given.ItemStatus, run.given.itemAnchors, run.settings.ANCHOR_Q,
              run.inForce.IAFILE, ItemWords(run), "IAFILE");
}

void ReadPersonAnchors(Run& run) {
  ReadAnchors(run, run.given.PersonStatus, run.given.personAnchors, run.settings.PANCHQ,
              run.inForce.PAFILE, PersonWords(run), "PAFILE");
}

}  // namespace vardento
