// Steps that the user leaves out or fixes: SDFILE=, SAFILE=.
#include <algorithm>
#include <cmath>

#include "control/parse_number.h"
#include "lists/entry_lists.h"
#include "lists/entry_words.h"
#include "lists/list_file.h"
#include "lists/list_line.h"
#include "run/messages.h"
#include "run/status.h"
#include "run/user_scale.h"
#include "text/number_text.h"

namespace vardento {
namespace {

// One line of SDFILE= or SAFILE=.
struct StepLine {
  EntryRange items;
  int category = -1;
  float logits = 0;    // the step's calibration
  bool failed = true;  // no value, or none that is a number
  bool makesSense = false;
};

enum class StepAction { Delete, Anchor };

class StepList {
 public:
  StepList(Run& run, StepAction action) : run_(run), action_(action) {}

  void Read(bool ask, std::string fileName) {
    if (!TrimRight(fileName).empty()) ApplyFile(fileName);
    if (!ask) return;
    AskForEntries(
        run_, kWords, Anchors() ? "ANCHOR" : "DELETE",
        [this](std::string& name) { ApplyFile(name); }, [this] { ApplyTyping(); });
  }

 private:
  inline static const EntryWords kWords{"STEP", "STEPS"};

  bool Anchors() const { return action_ == StepAction::Anchor; }

  void ApplyFile(std::string& name) {
    ListFile list(run_, Anchors() ? "SAFILE" : "SDFILE");
    list.OpenOrEnd(
        name, Anchors() ? "Edit STEP Anchor SAFILE=" : "Edit STEP Delete SDFILE=",
        Anchors() ? " Processing STEP Anchors from: " : " Processing STEP Deletions from: ");
    std::string line;
    while (list.Next(line, kStepRow)) {
      const StepLine step = Parse(line);
      if (step.makesSense) {
        Apply(step);
      } else {
        list.Refuse();
      }
    }
  }

  // Lines as they would stand in a file.
  void ApplyTyping() {
    for (;;) {
      std::string line = AskLine(run_, Anchors() ? "INPUT STEP TO ANCHOR (0 TO END): "
                                                 : "INPUT STEP TO DELETE (0 TO END): ");
      if (!CleanListLine(line) || Trim(line) == "0") return;
      Apply(Parse(line));
    }
  }

  // "item category value"; when all items share one scale also "category value", or just
  // "category" in a list of deletions.
  StepLine Parse(std::string_view text) const {
    const bool oneScale = run_.NGROUPS == 1;
    StepLine line;
    int first = 1, last = 1;
    if (!oneScale || CountWords(text) != (Anchors() ? 2 : 1)) {
      TakeEntryRange(text, first, last);
      if (first == 0) return line;
    }
    line.items = OrderRange(first, last, run_.settings.NI);
    line.category = ParseCount(TakeListWord(text));
    const std::string_view value = TakeListWord(text);
    float step = 0;
    ParseListValue(value, step, line.failed);
    line.logits = AnchorScale(run_.settings).Distance(step);
    const bool isAnchor = !line.failed && std::isfinite(line.logits);
    line.makesSense = line.category >= 0 && (!Anchors() || isAnchor || value.empty());
    return line;
  }

  static int CountWords(std::string_view text) {
    int count = 0;
    while (!TakeListWord(text).empty()) ++count;
    return count;
  }

  void Apply(const StepLine& line) {
    for (int i = line.items.first; i <= line.items.last; ++i) {
      const int group = run_.arrays.ItemGroup[i];
      if (line.category < 0 || line.category > run_.given.GroupTop[group]) continue;
      SetStep(run_.arrays.GroupStart[group] + line.category, line);
    }
  }

  void SetStep(int position, const StepLine& line) {
    std::int32_t& status = run_.given.StepStatus[position];
    if (status == StepStatus::Deleted) return;
    if (!Anchors()) {
      status = StepStatus::Deleted;
      return;
    }
    status = line.failed ? StepStatus::Kept : StepStatus::Anchored;
    run_.given.StepCalibration[position] = line.failed ? 0.0F : line.logits;
  }

  Run& run_;
  StepAction action_;
};

}  // namespace

void ReadStepList(Run& run) {
  StepList(run, StepAction::Delete).Read(run.settings.SDELQU, run.settings.SDFILE);
  StepList(run, StepAction::Anchor).Read(run.settings.SANCHQ, run.settings.SAFILE);
}

}  // namespace vardento
