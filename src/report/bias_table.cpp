#include "report/bias_table.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/bias_sizes.h"
#include "control/control_line.h"
#include "measure/entry_values.h"
#include "platform/io_status.h"
#include "platform/text_file.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kFewestClasses = 3;         // that a field must leave room for
constexpr std::size_t kLineLength = 260;  // of a file of specifications
constexpr int kMostFaults = 20;           // lines without sense before such a file is given up

// "DIF" for items as targets, "DPF" for persons.
std::string KindOf(Facet target) { return target == Facet::Items ? "DIF" : "DPF"; }

void TellBoth(Run& run, const std::string& text) {
  TellUser(run, text);
  WriteReportText(run, text);
}

// The rows of one specification. A class takes a column for its code and a block for its size; the
// comparison and the target stand behind the second class.
class BiasTable {
 public:
  BiasTable(Run& run, Facet target, const BiasClasses& classes, int classWidth)
      : run_(run), target_(target), classes_(classes) {
    const std::string& word = SingularLabel(run.settings, OtherFacet(target));
    const int column = std::max({kLeastClassWidth, classWidth, TextWidth(TrimRight(word))});
    firstBlock_ = kFirstColumn + column;
    secondClass_ = firstBlock_ + kBlockWidth;
    secondBlock_ = secondClass_ + column;
    name_ = secondBlock_ + kNamePlace;
    const int label = target == Facet::Items ? run.inForce.ITLEN : run.LongestLabel;
    const int targetWord = TextWidth(TrimRight(SingularLabel(run.settings, target)));
    end_ = name_ + std::max({kLeastNameWidth, label, targetWord});
  }

  void PutRule() {
    ReportLine line;
    line.At(kFirstColumn).Repeat(Box::Horizontal, end_ - kFirstColumn);
    PutReportLine(run_, line);
  }

  void Print(const BiasSizes& sizes) {
    const std::string kind = KindOf(target_);
    ReportLine line;
    line.Text(" Positive ").Text(kind).Text(" size is higher ");
    line.Text(TrimRight(SingularLabel(run_.settings, target_)));
    line.Text(target_ == Facet::Items ? " difficulty" : " ability");
    PutReportLine(run_, line);
    PutHead();
    const bool stopped = run_.StopRequest != 0;  // before the list, which is printed all the same
    int target = 1;
    for (; target <= sizes.Targets() && (stopped || run_.StopRequest == 0); ++target) {
      PutTarget(sizes, target);
      PumpMessages(run_);
    }
    PutRule();
    if (target <= sizes.Targets()) TellBoth(run_, " STOPPED: THE LIST IS NOT COMPLETE");
  }

 private:
  static constexpr int kFirstColumn = 2, kLeastClassWidth = 5, kLeastNameWidth = 12;
  static constexpr int kBlockWidth = 18;  // size and error of 8 columns each, two blanks
  // From the start of the second block on.
  static constexpr int kContrastPlace = 16, kTPlace = 32, kNumberPlace = 39, kNamePlace = 46;
  static constexpr int kJointPlace = 23;
  static constexpr int kHeadPlace = 3;   // of the second head line, from the start of a block on
  static constexpr int kLinesBelow = 2;  // a row and the closing rule

  // A class whose size stands in a row.
  struct Shown {
    int cls = 0;
    const BiasCell* cell = nullptr;
  };

  void PutHead() {
    const std::string_view word = TrimRight(SingularLabel(run_.settings, OtherFacet(target_)));
    PutRule();
    ReportLine line;
    line.At(kFirstColumn).Text(word).At(secondClass_).Text(word);
    line.At(secondBlock_ + kJointPlace).Text("    JOINT       ");
    line.Text(TrimRight(SingularLabel(run_.settings, target_)));
    PutReportLine(run_, line);
    PutRule();
    line.Clear();
    line.At(kFirstColumn).Text("GROUP").At(firstBlock_ + kHeadPlace).Text("  ADDED  S.E.  ");
    line.At(secondClass_).Text("GROUP").At(secondBlock_ + kHeadPlace);
    line.Text("  ADDED  S.E.  CONTRAST  S.E.   t   ").Text("Number  Name");
    PutReportLine(run_, line);
    PutRule();
  }

  // Rows go by the number of items from class to class, also in the Table of persons: what is
  // printed of person t and class c is what stands at (c - 1) NI + t when the persons of class 1
  // come first, then those of class 2, and so on. That is the settled form of Table 31; the record
  // has the cell of each pair in its own place. Null behind the last cell.
  const BiasCell* PrintedCell(const BiasSizes& sizes, int cls, int target) const {
    const long long place = static_cast<long long>(cls - 1) * run_.settings.NI + target - 1;
    const long long ofClass = place / sizes.Targets() + 1;
    if (ofClass > sizes.Classes()) return nullptr;
    return &sizes.At(static_cast<int>(ofClass), static_cast<int>(place % sizes.Targets()) + 1);
  }

  void PutTarget(const BiasSizes& sizes, int target) {
    shown_.clear();
    for (int cls = 1; cls <= sizes.Classes(); ++cls) {
      const BiasCell* const cell = PrintedCell(sizes, cls, target);
      if (cell != nullptr && IsReportable(cell->state)) shown_.push_back({cls, cell});
    }
    if (shown_.empty()) return;
    const std::string label = LabelOfEntry(run_, target_, target);
    if (shown_.size() == 1) PutRow(shown_[0], nullptr, target, label);
    for (std::size_t first = 0; first + 1 < shown_.size(); ++first) {
      for (std::size_t second = first + 1; second < shown_.size(); ++second) {
        PutRow(shown_[first], &shown_[second], target, label);
      }
    }
  }

  void PutRow(const Shown& first, const Shown* second, int target, std::string_view label) {
    if (CheckPageBreak(run_, run_.report.LinesOnPage + kLinesBelow)) PutHead();
    ReportLine line;
    PutClass(line, kFirstColumn, firstBlock_, first);
    if (second != nullptr) {
      PutClass(line, secondClass_, secondBlock_, *second);
      PutContrast(line, *first.cell, *second->cell);
    }
    line.At(secondBlock_ + kNumberPlace).Integer(target, 6);
    line.At(name_).Text(label);
    PutReportLine(run_, line);
  }

  void PutClass(ReportLine& line, int column, int block, const Shown& shown) {
    line.At(column).Text(classes_.codes[static_cast<std::size_t>(shown.cls - 1)]).At(block);
    if (shown.cell->state == BiasState::Minimum) {
      line.Text(" minimum score");
    } else if (shown.cell->state == BiasState::Maximum) {
      line.Text(" maximum score");
    } else {
      const BiasMeasure measure = MeasureOfBias(run_.settings, *shown.cell);
      PutMeasure(line, run_.settings, measure.size);
      PutMeasure(line, run_.settings, measure.error);
    }
  }

  void PutContrast(ReportLine& line, const BiasCell& first, const BiasCell& second) {
    if (first.state != BiasState::Estimated || second.state != BiasState::Estimated) return;
    const BiasContrast contrast = ContrastOfBias(run_.settings, first, second);
    line.At(secondBlock_ + kContrastPlace);
    PutMeasure(line, run_.settings, contrast.contrast);
    PutMeasure(line, run_.settings, contrast.error);
    // Two columns more than the five of its place, so that -100.00 is not lost.
    line.At(secondBlock_ + kTPlace).Fixed(contrast.t, 7, 2);
  }

  Run& run_;
  Facet target_;
  const BiasClasses& classes_;
  int firstBlock_, secondClass_, secondBlock_, name_, end_;  // columns; `end_` is behind the last
  std::vector<Shown> shown_;                                 // of the target in hand
};

class BiasRequest {
 public:
  explicit BiasRequest(ReportContext& context)
      : run_(context.run), target_(context.needs.subject), kind_(KindOf(target_)) {}

  void Print() {
    const std::string value(Trim(target_ == Facet::Items ? run_.inForce.DIF : run_.inForce.DPF));
    if (value.empty()) {
      TellBoth(run_, " TABLE " + IntegerText(run_.request.CurrentTable) + " NOT PRINTED. " +
                         VariableWord() + "= NOT SPECIFIED");
    } else if (HoldsFieldSpecification(value) && !run_.workDirectory.IsWorkFile(value)) {
      PrintSpecification(value);
    } else {
      PrintFile(value);
    }
  }

 private:
  // What the messages of these Tables call the variables.
  std::string VariableWord() const { return target_ == Facet::Items ? "PDIF" : "IDIF"; }

  void PrintFile(const std::string& name) {
    TextReader reader;
    if (reader.Open(name) != kIoOk) {
      run_.outputFailed = true;
      TellBoth(run_, " INVALID " + VariableWord() + " FILE: " + name);
      run_.inForce.DIF.clear();  // whichever of the two it was
      return;
    }
    EnterInput(run_, name, kind_ + "=");
    AddEditEntry(run_, "Edit " + kind_ + "=", name);
    int faults = 0;
    std::string lines;
    while (faults <= kMostFaults && reader.ReadLine(lines) == kIoOk) faults += PrintLines(lines);
    if (faults <= kMostFaults) return;
    Warn(run_, {name, reader.LineNumber()},
         kind_ + "= MORE THAN " + IntegerText(kMostFaults) + " LINES IN ERROR: THE REST NOT USED");
  }

  // A line of the file; where lines end in carriage returns alone, all of them. Gives the number of
  // those that are faulty.
  int PrintLines(std::string_view lines) {
    int faults = 0;
    while (!lines.empty() && faults <= kMostFaults) {
      const std::string_view line = lines.substr(0, lines.find('\r'));
      lines.remove_prefix(std::min(line.size() + 1, lines.size()));
      std::string specification(line.substr(0, kLineLength));
      RemoveComment(specification);
      BlankControlCharacters(specification);
      if (run_.StopRequest == 0 && !PrintSpecification(Trim(specification))) ++faults;
    }
    return faults;
  }

  // False when the specification makes no sense, which the user has been told.
  bool PrintSpecification(std::string_view specification) {
    if (specification.empty()) return true;
    const std::string text = kind_ + "=" + std::string(specification);
    WriteConsole(run_, "Processing: " + text);
    const FieldSpecification field = ParseFieldSpecification(run_, kind_, specification);
    const int width = WidthOfField(field);
    if (width == 0) return false;
    if (BiasClasses::kRoom / width < kFewestClasses) {
      TellBoth(run_, " NO ROOM FOR " + kind_ + " ESTIMATES: " + std::string(specification));
      return true;
    }
    const BiasClasses classes = FindBiasClasses(run_, OtherFacet(target_), field);
    BiasTable table(run_, target_, classes, width);
    PutPageHeading(run_, 1);
    WriteReportText(run_, " " + kind_ + " specification is: " + text);
    table.PutRule();
    WriteConsole(run_, " Computing " + kind_ + " sizes: one bar per iteration...");
    BiasSizes sizes;
    if (sizes.Estimate(run_, classes)) {
      if (!sizes.Converged()) TellBoth(run_, " STOPPED: THESE SIZES ARE NOT FINAL");
      table.Print(sizes);
    } else {
      run_.outputFailed = true;
      TellUser(run_, std::to_string(BiasSizes::BytesFor(run_, classes)) +
                         " bytes of memory not available. Table not produced.");
      WriteReportText(run_, " NOT ENOUGH MEMORY FOR TABLE");
    }
    return true;
  }

  Run& run_;
  Facet target_;
  std::string kind_;
};

}  // namespace

void PrintBias(ReportContext& context) { BiasRequest(context).Print(); }

}  // namespace vardento
