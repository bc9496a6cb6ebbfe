#include "data/data_edits.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "control/control_line.h"
#include "control/item_specifications.h"
#include "data/code_lookup.h"
#include "data/data_reader.h"
#include "data/work_files.h"
#include "lists/list_file.h"
#include "lists/list_line.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr int kPersonsPerPump = 1000;

// One line of EDFILE=: persons and items, from 1, whose responses become `category`.
struct ResponseEdit {
  int firstPerson = 0, lastPerson = 0;
  int firstItem = 0, lastItem = 0;
  std::uint8_t category = 0;
};

// The quotes stay: they mark a code.
void CleanEditLine(std::string& line) {
  line.resize(std::min(line.find(';'), std::min<std::size_t>(line.size(), kListLineLength)));
  for (char& c : line) {
    if (c == ',' || c == '+' || static_cast<unsigned char>(c) < ' ') c = ' ';
  }
}

// Takes an entry or a range, in either order, off the line; the upper end is held at `count`. False
// when there is none.
bool TakeEntries(std::string_view& text, int count, int& first, int& last) {
  const std::string word(TakeListWord(text));
  float value = 0;
  bool failed = false;
  // A list of entries has a value behind them; here the code comes later.
  ParseListLine(word + " 1.0", first, value, failed, last);
  const bool isRange = word.find('-') != std::string::npos;
  if (failed || (isRange && last == 0)) return false;
  if (!isRange) last = first;
  if (first > last) std::swap(first, last);
  last = std::min(last, count);
  return true;
}

// What stands for the new code: between quotes, or all of `text`.
std::string_view NewCode(std::string_view text, int xwide) {
  if (text.empty() || !IsQuote(text.front())) return text;
  const char quote = text.front();
  text.remove_prefix(1);
  const std::size_t end = text.find(quote);
  return end != std::string_view::npos ? text.substr(0, end)
                                       : text.substr(0, static_cast<std::size_t>(xwide));
}

bool ParseEdit(const Run& run, std::string_view text, ResponseEdit& edit) {
  if (!TakeEntries(text, run.NPERS, edit.firstPerson, edit.lastPerson)) return false;
  if (!TakeEntries(text, run.settings.NI, edit.firstItem, edit.lastItem)) return false;
  const std::string_view code = NewCode(Trim(text), run.settings.XWIDE);
  edit.category = static_cast<std::uint8_t>(CategoryOfCode(run.settings, code));
  return true;
}

void ApplyEdit(Run& run, const ResponseEdit& edit, std::vector<std::uint8_t>& row) {
  if (edit.firstItem > edit.lastItem) return;
  const auto first = row.begin() + (edit.firstItem - 1);
  const auto last = row.begin() + edit.lastItem;
  for (int n = edit.firstPerson; n <= edit.lastPerson; ++n) {
    if (n % kPersonsPerPump == 0) PumpMessages(run);
    ReadCodedRow(run, n, row.data());
    std::fill(first, last, edit.category);
    WriteCodedRow(run, n, row.data());
  }
}

// Counts each code of each item that is read, at (item - 1) x CATEGS + code.
void CountCodes(Run& run, Array1<float> counts) {
  const Array1<StatusByte> status = run.given.PersonStatus;
  std::vector<std::uint8_t> row(static_cast<std::size_t>(run.settings.NI));
  for (int n = 1; n <= run.NPERS; ++n) {
    if (n % kPersonsPerPump == 0) PumpMessages(run);
    if (!IsRead(status[n])) continue;
    ReadCodedRow(run, n, row.data());
    for (int i = 1; i <= run.settings.NI; ++i) {
      const int code = row[static_cast<std::size_t>(i - 1)];
      if (code > 0 && IsRead(run.given.ItemStatus[i])) {
        ++counts[(i - 1) * run.settings.CATEGS + code];
      }
    }
  }
}

// The code with the highest count of each item, the first of several; blank for a deleted item.
std::string MostFrequentCodes(const Run& run, Array1<float> counts) {
  const ControlSettings& settings = run.settings;
  std::string key;
  const float* first = counts.begin();
  for (int i = 1; i <= settings.NI; ++i, first += settings.CATEGS) {
    const auto place = std::max_element(first, first + settings.CATEGS) - first;
    const int code = static_cast<int>(place) + 1;
    const bool isKeyed = IsRead(run.given.ItemStatus[i]);
    key += PadRight(isKeyed ? CodeAt(settings, code) : std::string_view(), settings.XWIDE);
  }
  return key;
}

// Adds the key to the copy of the Control File that ends the report. Its lines are as long as need
// be, so that the key can be taken from there.
void ShowKey(Run& run, const std::string& key) {
  const std::string name = run.workDirectory.NameOf("ZIN");
  std::string text = "; MAKEKEY=Y constructed key follows:\n";
  text.append(TrimRight(key)).append("\n");
  File copy;
  std::uint64_t size = 0;
  int status = copy.Open(name, FileMode::Update);
  if (status == kIoOk) status = copy.GetSize(size);
  if (status == kIoOk) status = copy.WriteAt(size, text.data(), text.size());
  const int closed = copy.Close();
  if (status == kIoOk) status = closed;
  if (status != kIoOk) {
    run.RunIoStatus = status;
    FatalFileFailure(run, name, 'W');
  }
  WriteConsole(run, "MAKEKEY=  constructed.  See Table 0.3 in Report Output File.");
}

// No key was made. Without one of the user's the room made for it must not score the responses.
void LeaveKeys(const ControlSettings& settings, ScoringInForce& scoring) {
  const bool given = std::any_of(scoring.keyScores.begin(), scoring.keyScores.end(),
                                 [](int score) { return score >= 0; });
  if (given) return;
  scoring.NKEY = 0;
  scoring.rescoringActive = settings.RESCORE > PerItem::None || scoring.IREFER > PerItem::None;
}

void TellMissingMemory(Run& run, std::size_t bytes) {
  ReportMessage(run,
                std::to_string(bytes) + " bytes of memory not available, MAKEKEY= not performed.");
  if (run.report.IsOpen()) WriteReportText(run, " NOT ENOUGH MEMORY FOR MAKEKEY=");
}

}  // namespace

void EditData(Run& run) {
  std::string name = run.settings.EDFILE;
  ListFile list(run, "EDFILE");
  list.OpenOrEnd(name, "Edit data EDFILE =", " Processing EDFILE= data edit from: ");
  std::vector<std::uint8_t> row(static_cast<std::size_t>(run.settings.NI));
  std::string line;
  while (run.StopRequest != 1 && list.NextAsItStands(line)) {
    CleanEditLine(line);
    ResponseEdit edit;
    if (ParseEdit(run, line, edit)) {
      ApplyEdit(run, edit, row);
    } else {
      list.Refuse();
    }
  }
  FlushPersonFiles(run);
}

void MakeKey(Run& run) {
  const ControlSettings& settings = run.settings;
  ScoringInForce& scoring = run.inForce.scoring;
  if (settings.CATEGS <= 1) return LeaveKeys(settings, scoring);
  MemoryBlock block;
  Array1<float> counts;
  BlockPlan plan;
  plan.Add(counts, settings.CATEGS * settings.NI);
  if (!plan.Allocate(run.memory, block)) {
    TellMissingMemory(run, plan.Bytes());
    return LeaveKeys(settings, scoring);
  }
  CountCodes(run, counts);
  scoring.keyStrings = {MostFrequentCodes(run, counts)};
  scoring.keyScores = {1};
  scoring.NKEY = 1;
  scoring.rescoringActive = true;
  ShowKey(run, scoring.keyStrings[0]);
}

}  // namespace vardento
