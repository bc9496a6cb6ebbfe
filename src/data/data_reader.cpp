#include "data/data_reader.h"

#include <algorithm>
#include <numeric>

#include "data/code_lookup.h"
#include "data/data_edits.h"
#include "data/delimited_record.h"
#include "data/field_values.h"
#include "data/item_labels.h"
#include "data/record_reader.h"
#include "data/score_tables.h"
#include "data/select_items.h"
#include "data/work_files.h"
#include "lists/label_mask.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr int kRecordsPerDot = 1000;
constexpr int kDotsPerLine = 78;

// "00012P": what stands for a blank person label.
std::string PersonNumberLabel(int person) {
  std::string label = integer_text(person, 5);
  std::replace(label.begin(), label.end(), ' ', '0');
  return label + "P";
}

// All items, counted from 0. Deleted ones are read as well: a later estimation may take them in.
std::vector<int> AllItems(const Run& run) {
  std::vector<int> items(static_cast<std::size_t>(run.settings.NI));
  std::iota(items.begin(), items.end(), 0);
  return items;
}

// Turns the records into the rows and labels of the work files, person after person.
class Intake {
 public:
  explicit Intake(Run& run)
      : run_(run),
        status_(run.given.PersonStatus),
        reader_(run),
        fields_(run.settings),
        lookup_(run.settings),
        items_(AllItems(run)),
        row_(static_cast<std::size_t>(run.settings.NI), 0),
        weights_(run, run.inForce.PWEIGHT, "PWEIGHT", "ZPW"),
        anchors_(run, run.inForce.PAFILE, "PAFILE", "ZPA"),
        selects_(!SameText(run.settings.PSELECT, "*")) {}

  void ReadRecords() {
    reader_.Mark('W', weights_.Specification().Start());
    reader_.Mark('A', anchors_.Specification().Start());
    while (reader_.Next(run_.personsRead + 1)) {
      ++run_.personsRead;
      ShowDot();
      if (run_.NPERS < run_.personCapacity) {
        ++run_.NPERS;
        fields_.Take(reader_.Record());
        StorePerson();
      } else if (run_.personsRead == run_.personCapacity + 1) {
        EndDots();
        ReportMessage(run_, "PERSONS SKIPPED AFTER " + IntegerText(run_.NPERS));
      }
    }
    EndDots();
    weights_.Close();
    anchors_.Close();
  }

 private:
  void ShowDot() {
    if (run_.personsRead % kRecordsPerDot != 0) return;
    run_.console->WritePart(".");
    if (++dots_ == kDotsPerLine) EndDots();
  }

  void EndDots() {
    if (dots_ > 0) WriteConsole(run_, "");
    dots_ = 0;
  }

  void StorePerson() {
    const int person = run_.NPERS;
    SelectPerson(person);
    StoreLabel(person);
    const bool allKnown = lookup_.EncodeRow(fields_.Codes(), items_, row_.data());
    if (IsRead(status_[person])) {
      StoreFieldValue(weights_, person);
      StoreFieldValue(anchors_, person);
      if (!allKnown && !warned_) WarnOfCodes(person);
    }
    WriteCodedRow(run_, person, row_.data());
  }

  void StoreFieldValue(FieldValues& values, int person) {
    if (!values.InUse()) return;
    const char delim = run_.settings.DELIM;
    const FieldSpecification& fields = values.Specification();
    values.Write(person, delim == ' '
                             ? ExtractField(fields, reader_.Record())
                             : ExtractDelimitedField(fields, reader_.Record(), DelimiterOf(delim)));
  }

  void SelectPerson(int person) {
    if (!selects_ || !IsRead(status_[person])) return;
    if (MatchLabel(run_.settings.PSELECT, fields_.Label()) >= 0) return;
    status_[person] = Status::Deleted;
    run_.HighestMarked = std::max(run_.HighestMarked, person);
  }

  void StoreLabel(int person) {
    std::string_view label = TrimRight(fields_.Label());
    if (label.empty()) {
      numberLabel_ = PersonNumberLabel(person);
      const auto width = static_cast<std::size_t>(std::max(run_.settings.NAMLEN, 0));
      label = std::string_view(numberLabel_).substr(0, width);
      WritePersonName(run_, person, label);
    } else {
      WritePersonName(run_, person, fields_.Label());
    }
    run_.LongestLabel = std::max(run_.LongestLabel, static_cast<int>(label.size()));
  }

  // Tells, once for the run, of a response that is not in CODES= and not plain text either.
  void WarnOfCodes(int person) {
    const auto width = static_cast<std::size_t>(run_.settings.XWIDE);
    for (const int i : items_) {
      const auto item = static_cast<std::size_t>(i);
      if (row_[item] != 0 || !IsRead(run_.given.ItemStatus[i + 1])) continue;
      for (const char c : std::string_view(fields_.Codes() + item * width, width)) {
        const int code = static_cast<unsigned char>(c);
        if (code >= ' ' && code <= '~') continue;
        // A control character would work on the terminal instead of being seen.
        const char shown = code < ' ' || code == 127 ? ' ' : c;
        EndDots();
        ReportMessage(run_, " NON-ASCII DATA CODE FOR PERSON: " + IntegerText(person) +
                                ", ITEM: " + IntegerText(i + 1) +
                                ", DECIMAL= " + IntegerText(code) + ", CHARACTER= " + shown);
        warned_ = true;
        return;
      }
    }
  }

  Run& run_;
  Array1<StatusByte> status_;
  RecordReader reader_;
  RecordFields fields_;
  CodeLookup lookup_;
  std::vector<int> items_;
  std::vector<std::uint8_t> row_;
  FieldValues weights_, anchors_;  // fields of the records that PWEIGHT= and PAFILE= name
  std::string numberLabel_;
  int dots_ = 0;  // on the console's last line
  bool selects_;
  bool warned_ = false;
};

void TellRecordCount(Run& run) {
  const std::string text =
      " " + IntegerText(run.personsRead) + " " + run.settings.PERSON_LABEL + " Records Input.";
  if (run.NPERS == 0 && run.batch) {
    ReportMessage(run, text.substr(1));  // this is why the run ends
    return;
  }
  WriteConsole(run, text);
  if (run.report.IsOpen()) WriteReportText(run, text);
}

void CheckCodeCount(Run& run) {
  if (run.settings.CATEGS <= kMaxCodes) return;
  FailRun(run, " CODES= HAS " + IntegerText(run.settings.CATEGS) +
                   " CODES, WHICH IS MORE THAN MAXIMUM OF " + IntegerText(kMaxCodes));
}

}  // namespace

void ScorePersons(Run& run) {
  const ScoreTable scores(run.settings, run.inForce.scoring);
  const std::vector<int> items = AllItems(run);
  std::vector<std::uint8_t> coded(items.size());
  std::uint8_t* scored = run.arrays.ScoredRow.Data();
  for (int p = 1; p <= run.NPERS; ++p) {
    if (p % kRecordsPerDot == 0) PumpMessages(run);
    ReadCodedRow(run, p, coded.data());
    scores.ScoreRow(coded.data(), items, scored);
    WriteScoredRow(run, p, scored);
  }
  FlushPersonFiles(run);
}

void ReadData(Run& run) {
  const ControlSettings& settings = run.settings;
  if (!TrimRight(settings.MFORMS).empty()) ConvertForms(run);
  CheckCodeCount(run);
  // A key that is still to be made scores nothing: the scores are known when it is.
  const bool makesKey = settings.MAKEKEY;
  if (!makesKey) SizeCategories(run);
  ReadItemLabels(run);
  if (NeedsItemSelection(run)) SelectItems(run);
  WriteConsole(run, " Input in process ..");
  OpenWorkFiles(run);
  run.NPERS = run.personsRead = 0;
  run.LongestLabel = 1;
  Intake(run).ReadRecords();
  FlushPersonFiles(run);
  TellRecordCount(run);
  if (run.NPERS == 0) {
    run.RunIoStatus = -1;
    EndRun(run);
  }
  if (!TrimRight(settings.EDFILE).empty()) EditData(run);
  if (makesKey) {
    MakeKey(run);
    SizeCategories(run);
  }
  ScorePersons(run);
}

}  // namespace vardento
