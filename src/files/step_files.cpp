#include "files/step_files.h"

#include <algorithm>
#include <cerrno>
#include <string>

#include "files/file_form.h"
#include "measure/category_values.h"
#include "run/messages.h"
#include "run/status.h"
#include "text/number_text.h"

namespace vardento {
namespace {

std::string FixedNumber(float value) { return fixed_field(value, 8, 2); }

// Writes SFILE=.
class StepFile {
 public:
  explicit StepFile(Run& run) : run_(run), arrays_(run.arrays), file_(run) {}

  void Write() {
    const std::string& name = run_.settings.SFILE;
    WriteConsole(run_, "Writing Step Measure file ...");
    AddEditEntry(run_, "Edit Step SFILE=", name);
    if (!file_.Open(name)) return;
    if (WriteHead() && WriteRows()) file_.Close();
  }

 private:
  bool OneGroup() const { return run_.NGROUPS == 1; }

  bool WriteHead() {
    if (!run_.settings.HLINES) return true;
    const std::string label = HeadLabel(run_.settings.ITEM_LABEL);
    const std::string about =
        "STEP DIFFICULTY anchor FILE FOR " + std::string(HeadTitle(run_)) + " " + run_.RunStamp;
    if (file_.IsFixed()) {
      return file_.WriteLine("; " + about) &&
             file_.WriteLine(OneGroup() ? "; CATEGORY  STEP DIFFICULTY"
                                        : "; " + label + " CATEGORY  STEP anchor DIFFICULTY");
    }
    return file_.WriteLine("\";" + about + "\"") &&
           file_.WriteLine((OneGroup() ? "\";" : "\";" + label + "\",\"") +
                           "CATEGORY\",\"STEP anchor DIFFICULTY\"");
  }

  bool WriteRows() {
    if (OneGroup()) return WriteGroup(1, "");
    const int NI = run_.settings.NI;
    for (int i = 1; i <= NI; ++i) {
      const std::string entry = integer_text(i, 6) + (file_.IsFixed() ? "" : ",");
      if (IsActive(arrays_.ItemStatus[i]) && !WriteGroup(arrays_.ItemGroup[i], entry)) return false;
      ShowProgress(run_, i, NI);
    }
    return true;
  }

  // The rows of a scale, each behind `entry`.
  bool WriteGroup(int group, const std::string& entry) {
    if (arrays_.GroupTop[group] < 1) return true;
    const int first = arrays_.GroupStart[group];
    RunningStep step(run_, group);
    for (int position = first; position <= first + arrays_.GroupTop[group]; ++position) {
      const std::string row = entry + integer_text(arrays_.CategoryToCode[position], 3) +
                              (file_.IsFixed() ? " " : ",") +
                              number_text(step.At(position), 7, "(F7.2)");
      if (!file_.WriteLine(row)) return false;
    }
    return true;
  }

  Run& run_;
  const RunArrays& arrays_;
  OutputFile file_;
};

// Writes ISFILE=.
class ItemStepFile {
 public:
  explicit ItemStepFile(Run& run)
      : run_(run), arrays_(run.arrays), settings_(run.settings), file_(run) {
    for (const int top : arrays_.GroupTop) largestTop_ = std::max(largestTop_, top);
  }

  void Write() {
    const std::string& name = settings_.ISFILE;
    WriteConsole(run_, "Writing Item-Step file ...");
    AddEditEntry(run_, "Edit Item-Step ISFILE=", name);
    BlockPlan plan;
    plan.Add(steps_, run_.NCATS);
    if (!plan.Allocate(run_.memory, block_)) {
      file_.Refuse(name, ENOMEM);
      return;
    }
    ComputeSteps();
    if (!file_.Open(name)) return;
    if (WriteHead() && WriteRows()) file_.Close();
  }

 private:
  static constexpr std::size_t kRowLength = 5000;

  void ComputeSteps() {
    if (run_.NGROUPS == 1) return ComputeGroup(1);
    for (int i = 1; i <= settings_.NI; ++i) {
      if (IsActive(arrays_.ItemStatus[i])) ComputeGroup(arrays_.ItemGroup[i]);
    }
  }
  void ComputeGroup(int group) {
    const int first = arrays_.GroupStart[group];
    RunningStep step(run_, group);
    for (int position = first; position <= first + arrays_.GroupTop[group]; ++position) {
      steps_[position] = step.At(position);
    }
  }

  bool WriteHead() {
    if (!settings_.HLINES) return true;
    const bool fixed = file_.IsFixed();
    const std::string mark = fixed ? ";" : "\"";
    const std::string end = fixed ? "" : "\"";
    const std::string label = HeadLabel(settings_.ITEM_LABEL).substr(0, fixed ? 12 : 6);
    const std::string_view title = fixed ? HeadTitle(run_) : HeadTitle(run_, 45);
    std::string names =
        fixed ? "; ENTRY  ST  MAX  LOW   AT.25" : "\"ENTRY\",\"ST\",\"MAX\",\"LOW\",\"AT.25\"";
    for (int k = 1; k <= largestTop_; ++k) {
      names += fixed ? "  CAT STEP MEASURE   ERROR  AT-0.5  ATSTEP  THRESH"
                     : ",\"CAT\",\"STEP\",\"MEASURE\",\"ERROR\",\"AT-0.5\",\"ATSTEP\",\"THRESH\"";
    }
    return file_.WriteLine(mark + label + " STEP FILE (do not use for anchoring) FOR" + end) &&
           file_.WriteLine(mark + std::string(title) + end) &&
           file_.WriteLine(mark + PadRight(run_.RunStamp, 24) + end) &&
           file_.WriteLine(names, kRowLength);
  }

  bool WriteRows() {
    for (int i = 1; i <= settings_.NI; ++i) {
      if (!file_.WriteLine(RowOf(i), kRowLength)) return false;
      ShowProgress(run_, i, settings_.NI);
    }
    return true;
  }

  // Puts a field behind the row, with a comma in the separated forms.
  void Put(const std::string& field) {
    row_ += field;
    if (!file_.IsFixed()) row_ += ',';
  }

  const std::string& RowOf(int item) {
    const bool dead = !IsMeasured(arrays_.ItemStatus[item]);
    const int top = dead ? 0 : std::max(arrays_.GroupTop[arrays_.ItemGroup[item]], 0);
    const CategoryValues low = dead ? CategoryValues() : ReadCategoryValues(run_, item, 0, steps_);
    row_.clear();
    if (file_.IsFixed()) row_ = dead && settings_.HLINES ? ";" : " ";
    Put(integer_field(item, 5));
    Put(integer_field(arrays_.ItemStatus[item], 5));
    Put(integer_field(top, 5));
    Put(integer_field(low.code, 5));
    Put(FixedNumber(low.point));
    for (int k = 1; k <= largestTop_; ++k) {
      if (k <= top) {
        PutStep(ReadCategoryValues(run_, item, k, steps_));
      } else {
        PutPadding();
      }
    }
    return row_;
  }

  void PutStep(const CategoryValues& values) {
    Put(integer_field(values.code, 5));
    Put(integer_field(values.score, 5));
    for (const float value :
         {values.measure, values.error, values.halfPoint, values.point, values.threshold}) {
      Put(FixedNumber(value));
    }
  }

  void PutPadding() {
    for (int field = 1; field <= 7; ++field) Put(field <= 2 ? integer_field(0, 5) : FixedNumber(0));
  }

  Run& run_;
  const RunArrays& arrays_;
  const ControlSettings& settings_;
  OutputFile file_;
  MemoryBlock block_;
  Array1<float> steps_;  // by category position
  int largestTop_ = 0;
  std::string row_;
};

}  // namespace

void WriteStepFile(Run& run) { StepFile(run).Write(); }

void WriteItemStepFile(Run& run) { ItemStepFile(run).Write(); }

}  // namespace vardento
