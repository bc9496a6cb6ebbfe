#include "report/page.h"

#include <charconv>
#include <string>

#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr std::string_view kProgramName = "VARDENTO";
constexpr std::string_view kProgramVersion = VARDENTO_VERSION;
constexpr int kTitleLength = 60;
constexpr int kNameEnd = 62;     // the report's name ends in this column
constexpr int kNameLength = 40;  // what is shown of it at most
constexpr int kHeadingRule = 80;

std::string DigitsOf(int value) { return std::string(Trim(integer_field(value, 11))); }

// The version as the heading has it, 4 characters: 0.10 is " .10".
std::string HeadingVersion() {
  double version = 0;
  std::from_chars(kProgramVersion.data(), kProgramVersion.data() + kProgramVersion.size(), version);
  return fixed_field(version, 5, 2).substr(1);
}

// The report's name over whatever stands there, a blank in front of it, so that it ends in column
// 62; the end of a long name is what tells it from others.
void LayReportName(const Run& run, ReportLine& line) {
  const std::string& given = run.startUp.ReportFileName;
  std::string_view name = TrimRight(given.empty() ? run.report.Name() : given);
  name = CutToLast(name, kNameLength);
  line.At(kNameEnd - TextWidth(name)).Text(" ").Text(name);
}

void PutTitleLine(Run& run, bool newPage) {
  TableRequest& request = run.request;
  ReportLine line;
  line.Text(newPage ? "^TABLE " : " TABLE ");
  line.Text(DigitsOf(request.CurrentTable)).Text(".").Text(DigitsOf(request.SubtableCounter));
  line.Skip(1).Text(CutToWidth(run.settings.TITLE, kTitleLength));
  LayReportName(run, line);
  line.Text(" ").Text(run.RunStamp, 17);
  PutReportLine(run, line);
}

bool IsBlank(const ReportLine& line, int first, int last) {
  for (int column = first; column <= last; ++column) {
    if (line.CharacterAt(column) != ' ') return false;
  }
  return true;
}

void PutCountsLine(Run& run) {
  const ControlSettings& settings = run.settings;
  const auto count = [](ReportLine& line, int number, std::string_view label) {
    line.Text(DigitsOf(number)).Text(" ").Text(TrimRight(label));
  };
  ReportLine line;
  line.Text(" INPUT: ");
  count(line, run.personsRead, settings.PERSONS_LABEL);
  count(line.Text(", "), settings.NI, settings.ITEMS_LABEL);
  if (run.results.ActivePersons > 0) {
    count(line.Text("  ANALYZED: "), run.results.ActivePersons, settings.PERSON_LABEL);
    count(line.Text(", "), run.results.ActiveItems, settings.ITEM_LABEL);
    count(line.Text(", "), run.results.ActiveCategories, "CATS");
  }
  if (IsBlank(line, 67, 74)) line.At(68).Text(kProgramName);
  if (IsBlank(line, 76, 80)) line.At(77).Text(HeadingVersion());
  PutReportLine(run, line);
}

void PutBlankLines(Run& run, int count) {
  for (int i = 0; i < count; ++i) PutBlankLine(run);
}

// Heading of a page of the front part, which has the Table number 0.
void PutFrontHeading(Run& run, int subtable, int blankLines) {
  run.request.CurrentTable = 0;
  run.request.SubtableCounter = subtable - 1;
  run.request.HeadingPending = true;
  PutPageHeading(run, blankLines);
}

}  // namespace

void PutReportLine(Run& run, const ReportLine& line) {
  const std::string plain = line.Plain();
  WriteReportText(run, !run.settings.ASCII ? line.View() : plain, plain);
}

void PutBlankLine(Run& run) { WriteReportText(run, " "); }

void PutPageHeading(Run& run, int blankLines) {
  if (!run.request.HeadingPending) {
    PutBlankLines(run, 2);
    return;
  }
  const bool newPage = run.report.LinesOnPage >= 0;
  if (newPage) {
    const int maximum = run.settings.MAXPAGE;
    if (maximum == 0 || run.report.LinesOnPage < maximum) PutBlankLine(run);
    run.report.LinesOnPage = 0;
  }
  ++run.request.SubtableCounter;
  run.report.PageNumber = 1;
  PutTitleLine(run, newPage);
  if (run.personsRead > 0) PutCountsLine(run);
  // Measures of different subsets can't be compared: every page says so.
  if (!run.results.connectivityText.empty()) WriteReportText(run, run.results.connectivityText);
  ReportLine rule;
  rule.At(2).Repeat(Box::Horizontal, kHeadingRule);
  PutReportLine(run, rule);
  PutBlankLines(run, blankLines);
  run.request.HeadingPending = run.settings.HEADING;
}

void PutPartHeading(Run& run, int blankLines, int lines) {
  constexpr int kBlankLinesInstead = 2;
  const int needed = run.report.LinesOnPage + kBlankLinesInstead + lines;
  if (run.request.HeadingPending || !CheckPageBreak(run, needed)) PutPageHeading(run, blankLines);
}

bool CheckPageBreak(Run& run, int linesAfterBlock) {
  if (run.settings.MAXPAGE <= 0 || linesAfterBlock <= run.settings.MAXPAGE) return false;
  ++run.report.PageNumber;
  ReportLine line;
  line.Text("^**CONTINUED FROM PREVIOUS SHEET**   PAGE ").Text(DigitsOf(run.report.PageNumber));
  PutReportLine(run, line);
  PutBlankLine(run);
  return true;
}

void WriteBanner(Run& run) {
  PutFrontHeading(run, 1, 1);
  const auto put = [&run](std::string_view caption, std::string_view text) {
    ReportLine line;
    line.At(2).Text(caption, 20).Text(text);
    PutReportLine(run, line);
  };
  put("VARDENTO", std::string("Rasch measurement, version ").append(kProgramVersion));
  put("Run of", run.RunStamp);
  put("Title", run.settings.TITLE);
  put("Control File", run.startUp.ControlFileName);
  put("Report Output File", run.startUp.ReportFileName);
  PutBlankLine(run);
}

void PutControlCopyHeading(Run& run) { PutFrontHeading(run, 3, 1); }

}  // namespace vardento
