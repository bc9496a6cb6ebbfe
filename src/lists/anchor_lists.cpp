// Measures that the user fixes for items and persons: IAFILE=, PAFILE=.
#include <algorithm>
#include <cmath>
#include <vector>

#include "lists/entry_lists.h"
#include "lists/entry_words.h"
#include "lists/list_file.h"
#include "lists/list_line.h"
#include "run/messages.h"
#include "run/user_scale.h"
#include "text/number_text.h"

namespace vardento {
namespace {

class AnchorList {
 public:
  AnchorList(Run& run, int count, std::vector<Anchor>& anchors, EntryWords words,
             std::string_view variable)
      : run_(run),
        count_(count),
        anchors_(anchors),
        fixed_(static_cast<std::size_t>(count) + 1, false),
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
    while (list.Next(line, kEntryRow)) {
      int first = 0, last = 0;
      float value = 0;
      bool failed = false;
      PartFixedColumns(line);
      ParseListLine(line, first, value, failed, last);
      const bool good = first > 0 && !failed && Fix(OrderRange(first, last, count_), value);
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
      if (first < 1 || first > count_) return;
      std::string answer = AskLine(run_, "INPUT VALUE AT WHICH TO ANCHOR " + words_.label);
      CleanListLine(answer);
      float value = 0;
      bool failed = false;
      ParseListValue(Trim(answer), value, failed);
      if (!failed) Fix(OrderRange(first, last, count_), value);
    }
  }

  // An entry keeps its first anchor. False for a value beyond all measures.
  bool Fix(const EntryRange& range, float value) {
    const float logits = AnchorScale(run_.settings).Measure(value);
    if (!std::isfinite(logits)) return false;
    for (int entry = range.first; entry <= range.last; ++entry) {
      const auto place = static_cast<std::size_t>(entry);
      if (fixed_[place]) continue;
      fixed_[place] = true;
      anchors_.push_back({entry, logits});
    }
    return true;
  }

  Run& run_;
  int count_;  // of entries
  std::vector<Anchor>& anchors_;
  std::vector<bool> fixed_;  // by entry: it has its anchor
  EntryWords words_;
  std::string_view variable_;
};

}  // namespace

void ReadItemAnchors(Run& run) {
  const int items = run.given.ItemStatus.Size();
  AnchorList list(run, items, run.given.itemAnchors, ItemWords(run), "IAFILE");
  list.Read(run.settings.ANCHOR_Q, run.inForce.IAFILE);
}

void ReadPersonAnchors(Run& run) {
  const int persons = run.given.PersonStatus.Size();
  AnchorList list(run, persons, run.given.personAnchors, PersonWords(run), "PAFILE");
  list.Read(run.settings.PANCHQ, run.inForce.PAFILE);
}

}  // namespace vardento
