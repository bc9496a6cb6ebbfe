#include "files/observation_file.h"

#include <string_view>
#include <vector>

#include "data/code_lookup.h"
#include "files/file_form.h"
#include "measure/observation_values.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

using Values = ObservationValues;

// A field of numbers: its width in fixed columns, the blank in front included, and what it shows.
struct Column {
  int place;  // in ObservationFields
  std::string_view fixedName, separatedName;
  int width;
  int Values::*whole;
  double Values::*real = nullptr;
  int decimals = 0;
};

constexpr Column kColumns[] = {
    {1, "", "", 7, &Values::person},
    {2, "", "", 7, &Values::item},
    {3, "OBS", "OBSERVED", 4, &Values::observed},
    {4, "ORD", "ORDERED", 4, &Values::ordered},
    {5, "EXPECT", "EXPECTATION", 7, nullptr, &Values::expected, 3},
    {6, "VARIAN", "VARIANCE", 7, nullptr, &Values::variance, 3},
    {7, "ZSCORE", "ZSCORE", 7, nullptr, &Values::z, 3},
    {8, "RESIDL", "RESIDUAL", 7, nullptr, &Values::residual, 3},
    {9, "MEASRE", "MEASURE", 7, nullptr, &Values::difference, 2},
    {10, "LOG(PROB)", "LOG(PROBABILITY)", 10, nullptr, &Values::logProbability, 3},
};
constexpr int kCodePlace = 11;
constexpr std::string_view kCodeName = "CODE";
// Where no column binds: holds every number that is shown as one.
constexpr int kSeparatedWidth = 16;

// The entries of one side that the file takes in.
struct EntryRange {
  EntryRange(bool onlyOne, int entry, int count)
      : isSingle(onlyOne && entry >= 1 && entry <= count),
        first(isSingle ? entry : 1),
        last(isSingle ? entry : count) {}
  bool isSingle;  // the one that was asked for
  int first, last;
};

// Writes XFILE=.
class ObservationFile {
 public:
  ObservationFile(Run& run, const ObservationFields& fields)
      : run_(run),
        persons_(fields.Has(ObservationFields::kOnePerson), fields.person, run.NPERS),
        items_(fields.Has(ObservationFields::kOneItem), fields.item, run.settings.NI),
        withMissing_(fields.Has(ObservationFields::kMissing)),
        withExtreme_(fields.Has(ObservationFields::kExtreme)),
        withCode_(fields.Has(kCodePlace)),
        file_(run) {
    for (const Column& column : kColumns) {
      if (fields.Has(column.place)) columns_.push_back(column);
    }
    for (int c = 0; c <= run.settings.CATEGS; ++c) codes_.emplace_back(CodeText(c));
  }

  void Write(const std::string& name) {
    TellUserOfSelection();
    if (!file_.Open(name, "XFILE=")) return;
    AddEditEntry(run_, "Edit Residuals XFILE=", name);
    if (WriteHead() && WriteLines()) file_.Close();
  }

 private:
  std::string CodeText(int number) const {
    if (number == 0) return "";
    return std::string(Trim(CodeAt(run_.settings, number)));
  }

  void TellUserOfSelection() {
    std::string text = " Writing XFILE= of observations";
    const auto add = [&](const std::string& word, const EntryRange& range) {
      if (!range.isSingle) return;
      text.append(" for ").append(TrimRight(word)).append(" ").append(IntegerText(range.first));
    };
    add(run_.settings.PERSON_LABEL, persons_);
    add(run_.settings.ITEM_LABEL, items_);
    WriteConsole(run_, text + " ...");
  }

  bool WriteHead() {
    if (!run_.settings.HLINES) return true;
    const std::string title(HeadTitle(run_));
    line_.clear();
    if (file_.IsFixed()) {
      line_ = "; RESIDUAL FILE FOR " + title + "  " + run_.RunStamp;
    } else {
      PutText("RESIDUAL FILE FOR");
      PutText(title);
      PutText(run_.RunStamp);
    }
    return EndLine() && WriteNames();
  }

  bool WriteNames() {
    constexpr int kWordWidth = 6;
    const auto word = [this](int place) {
      const ControlSettings& s = run_.settings;
      return TrimRight(place == 1 ? s.PERSON_LABEL : s.ITEM_LABEL);
    };
    line_.clear();
    for (const Column& column : columns_) {
      if (!file_.IsFixed()) {
        PutText(column.place <= 2 ? word(column.place) : column.separatedName);
        continue;
      }
      const std::string_view name =
          column.place <= 2 ? CutToWidth(word(column.place), kWordWidth) : column.fixedName;
      line_ += PadLeft(name, column.width);
    }
    if (withCode_) PutCode(kCodeName);
    return EndLine();
  }

  bool WriteLines() {
    ObservationReader reader(run_);
    const int count = persons_.last - persons_.first + 1;
    for (int n = persons_.first; n <= persons_.last; ++n) {
      if (withExtreme_ || IsActive(run_.arrays.PersonStatus[n])) {
        reader.Open(n);
        for (int i = items_.first; i <= items_.last; ++i) {
          const Values values = reader.Read(i);
          if (IsWanted(values) && !WriteObservation(values)) return false;
        }
      }
      ShowProgress(run_, n - persons_.first + 1, count);
    }
    return true;
  }

  bool IsWanted(const Values& values) const {
    return (withMissing_ || values.ordered != -1) && (withExtreme_ || !values.IsExtreme());
  }

  bool WriteObservation(const Values& values) {
    line_.clear();
    for (const Column& column : columns_) {
      if (file_.IsFixed()) {
        PutNumber(line_, column, values, column.width);
      } else {
        number_.clear();
        PutNumber(number_, column, values, kSeparatedWidth);
        PutText(Trim(number_));
      }
    }
    if (withCode_) PutCode(codes_[static_cast<std::size_t>(values.code)]);
    return EndLine();
  }

  static void PutNumber(std::string& text, const Column& column, const Values& values, int width) {
    if (column.real != nullptr) {
      AppendNumber(text, static_cast<float>(values.*column.real), width, column.decimals);
    } else {
      AppendInteger(text, values.*column.whole, width);
    }
  }

  void PutCode(std::string_view text) {
    if (file_.IsFixed()) {
      line_.append(" ").append(text);
    } else {
      PutText(text);
    }
  }

  // A field of the separated forms, with the comma behind it.
  void PutText(std::string_view text) { line_.append("\"").append(text).append("\","); }
  bool EndLine() {
    if (!file_.IsFixed() && !line_.empty()) line_.pop_back();
    return file_.WriteLine(line_, OutputFile::kUncut);
  }

  Run& run_;
  EntryRange persons_, items_;
  bool withMissing_, withExtreme_, withCode_;
  std::vector<Column> columns_;     // those chosen
  std::vector<std::string> codes_;  // texts by number
  std::string line_, number_;
  OutputFile file_;
};

}  // namespace

void WriteObservationFile(Run& run) { WriteObservationFile(run, run.settings.XFILE, {}); }

void WriteObservationFile(Run& run, const std::string& name, const ObservationFields& fields) {
  ObservationFile(run, fields).Write(name);
}

}  // namespace vardento
