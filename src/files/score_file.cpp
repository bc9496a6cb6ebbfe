#include "files/score_file.h"

#include <algorithm>
#include <string>
#include <vector>

#include "files/file_form.h"
#include "measure/score_conversion.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kBytesPerScore = 16;
constexpr int kSeparatedWidth = 7;    // of the information where no column binds
constexpr int kInformationWidth = 6;  // behind the standard error, whose last column it borders on

constexpr std::string_view kPurpose =
    "; TABLE OF SAMPLE NORMS (500/100) AND FREQUENCIES CORRESPONDING TO COMPLETE TEST";
constexpr std::string_view kFixedNames =
    ";SCORE   MEASURE    S.E. INFO   NORMED S.E.  FREQUENCY %   CUM.FREQ. %  PERCENTILE";
constexpr std::string_view kSeparatedNames =
    "\";SCORE\",\"MEASURE\",\"S.E.\",\"INFO\",\"NORMED\",\"S.E.\","
    "\"FREQUENCY\",\"%\",\"CUM.FREQ.\",\"%\",\"PERCENTILE\"";

// A row while it is put together: fields at fixed columns, or one behind the other.
class Row {
 public:
  explicit Row(bool fixed) : fixed_(fixed) {}
  // A field that begins in column `column`, from 1.
  void Put(std::size_t column, const std::string& field) {
    if (fixed_) {
      text_.resize(std::max(text_.size(), column - 1), ' ');
      text_ += field;
    } else {
      if (!text_.empty()) text_ += ',';
      text_ += Trim(field);
    }
  }
  const std::string& Text() const { return text_; }

 private:
  bool fixed_;
  std::string text_;
};

// Writes SCFILE=.
class ScoreFile {
 public:
  ScoreFile(Run& run, const ScoreConversion& conversion, const SampleNorms& norms)
      : run_(run), conversion_(conversion), norms_(norms), file_(run) {}

  void Write() {
    const std::string& name = run_.settings.SCFILE;
    AddEditEntry(run_, "Edit Person Score SCFILE=", name);
    if (!file_.Open(name)) return;
    if (WriteHead() && WriteRows()) file_.Close();
  }

 private:
  bool WriteHead() {
    if (!run_.settings.HLINES) return true;
    const std::string label = HeadLabel(run_.settings.PERSON_LABEL);
    const std::string title(HeadTitle(run_));
    if (file_.IsFixed()) {
      return file_.WriteLine("; " + label + " SCORE FILE FOR") && file_.WriteLine(";" + title) &&
             file_.WriteLine(";" + run_.RunStamp) && file_.WriteLine(kPurpose) &&
             file_.WriteLine(kFixedNames);
    }
    const std::string mark = Quoted(";") + ",";
    return file_.WriteLine(mark + Quoted(label) + "," + Quoted("SCORE FILE FOR")) &&
           file_.WriteLine(mark + Quoted(title)) && file_.WriteLine(mark + Quoted(run_.RunStamp)) &&
           file_.WriteLine(Quoted(kPurpose)) && file_.WriteLine(kSeparatedNames);
  }

  bool WriteRows() {
    for (int score = 0; score <= conversion_.Top(); ++score) {
      if (!file_.WriteLine(RowOf(score))) return false;
    }
    return true;
  }

  std::string MeasureText(float value, int width, int decimals) const {
    return number_text(value, width, "(F8." + std::to_string(decimals) + ")");
  }

  // With as many decimals as leave the standard error whole, which stands right before it in fixed
  // columns.
  std::string InformationText(float information) const {
    int decimals = run_.settings.UDECIM;
    std::string text;
    do {
      text = FixedText(information, "(F8." + std::to_string(decimals) + ")",
                       file_.IsFixed() ? kInformationWidth : kSeparatedWidth);
    } while (text.front() == '*' && --decimals >= 0);
    return text;
  }

  std::string RowOf(int score) const {
    const ScoreMeasure& solved = conversion_.scores[static_cast<std::size_t>(score)];
    const ScoreNorm norm = norms_.At(score);
    const int decimals = run_.settings.UDECIM;
    const auto put = [](double value, int width, std::string_view format) {
      return number_text(static_cast<float>(value), width, format);
    };
    Row row(file_.IsFixed());
    row.Put(1, integer_text(static_cast<int>(conversion_.Shown(score)), 6));
    row.Put(8, MeasureText(solved.measure, 8, decimals));
    row.Put(18, MeasureText(solved.error, 7, decimals));
    row.Put(25, InformationText(solved.information));
    if (norm.normed) {
      row.Put(33, put(norm.measure, 4, "(F5.0)"));
      row.Put(38, put(norm.error, 4, "(F5.0)"));
    }
    row.Put(44, integer_text(norm.frequency, 6));
    row.Put(51, put(norm.percent, 5, "(F5.1)"));
    row.Put(58, integer_text(norm.cumulative, 6));
    row.Put(65, put(norm.cumulativePercent, 5, "(F5.1)"));
    row.Put(76, put(norm.percentile, 3, "(F4.0)"));
    return row.Text();
  }

  Run& run_;
  const ScoreConversion& conversion_;
  const SampleNorms& norms_;
  OutputFile file_;
};

void TellRefused(Run& run, long long top) {
  run.outputFailed = true;
  TellUser(run, std::to_string(kBytesPerScore * (static_cast<std::size_t>(top) + 1)) +
                    " bytes of memory not available. Score file not produced.");
}

}  // namespace

void WriteScoreFile(Run& run) {
  WriteConsole(run, " Calculating measures for scores...");
  const CompleteTest test = FindCompleteTest(run);
  if (test.top < 1) return;
  if (!test.IsWithinReach()) return TellRefused(run, test.top);
  const ScoreConversion conversion = ConvertScores(run, test, SolvingOrder::Rising);
  if (conversion.scores.empty()) return;
  WriteConsole(run, " Computing frequencies");
  SampleNorms norms;
  switch (norms.Make(run, conversion)) {
    case SampleNorms::Outcome::NoMemory:
      return TellRefused(run, test.top);
    case SampleNorms::Outcome::OutOfOrder:
      run.outputFailed = true;
      return TellUser(run,
                      "SORT SEQUENCE ERROR: PLEASE SEND FILE TO " + std::string(kSupportAddress));
    case SampleNorms::Outcome::Made:
      ScoreFile(run, conversion, norms).Write();
  }
}

}  // namespace vardento
