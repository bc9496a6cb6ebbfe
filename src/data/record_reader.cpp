#include "data/record_reader.h"

#include <algorithm>

#include "data/delimited_record.h"
#include "data/show_record.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr char kControlZ = 26;

// The names of DATA=, last one first.
std::vector<std::string> SplitNames(std::string_view data) {
  std::vector<std::string> names;
  for (;;) {
    const std::size_t plus = std::min(data.find('+'), data.size());
    const std::string_view name = Trim(data.substr(0, plus));
    if (!name.empty()) names.emplace_back(name);
    if (plus == data.size()) break;
    data.remove_prefix(plus + 1);
  }
  std::reverse(names.begin(), names.end());
  return names;
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(' ') == text.npos; }

}  // namespace

void OpenDataFile(Run& run, TextReader& file, std::string& name) {
  AddEditEntry(run, "Edit Data File=", name);
  WriteConsole(run, "Opening: " + name);
  KeepFromReport(run, name, "DATA FILE");
  int status = file.Open(name);
  if (status == kIoOk) {
    file.Close();
    PrepareFile(run, name, "DATA FILE");
    status = run.RunIoStatus;
    if (status == kIoOk) status = file.Open(name);
  }
  if (status == kIoOk) return;
  ReportMessage(run, " UNABLE TO OPEN DATA  FILE: " + name);
  run.RunIoStatus = status;
  FatalFileFailure(run, name, 'I');
}

void FailDataRecord(Run& run, const std::string& name, int status, int person) {
  ReportMessage(
      run, " ERROR IN DATA AT PERSON: " + IntegerText(person) + ".  CHECK DATA AND RUN AGAIN.");
  run.RunIoStatus = status;
  FatalFileFailure(run, name, 'R');
}

RecordFields::RecordFields(const ControlSettings& settings) : settings_(settings) {
  const auto width = static_cast<std::size_t>(settings.XWIDE);
  const auto labelWidth = static_cast<std::size_t>(std::max(settings.NAMLEN, 0));
  firstCode_ = static_cast<std::size_t>(settings.ITEM1 - 1);
  firstLabel_ = static_cast<std::size_t>(settings.NAME1 - 1);
  if (!IsBlank(settings.FORMAT)) {
    firstCode_ *= width;
    labelStep_ = width;
  }
  neededLength_ = std::max(firstCode_ + static_cast<std::size_t>(settings.NI) * width,
                           firstLabel_ + labelWidth * labelStep_);
  label_.assign(labelWidth, ' ');
}

void RecordFields::Take(std::string& record) {
  if (settings_.DELIM != ' ') {
    SplitDelimited(record, settings_, label_, splitCodes_);
    codes_ = splitCodes_.data();
  } else {
    TakeColumns(record);
  }
  BlankControlCharacters(label_);
}

void RecordFields::TakeColumns(std::string& record) {
  if (record.size() < neededLength_) record.resize(neededLength_, ' ');
  for (std::size_t k = 0; k < label_.size(); ++k) {
    label_[k] = record[firstLabel_ + k * labelStep_];
  }
  codes_ = record.data() + firstCode_;
}

RecordReader::RecordReader(Run& run) : run_(run), hasFormat_(!IsBlank(run.settings.FORMAT)) {
  if (hasFormat_) {
    const std::string_view problem =
        ParseDataFormat(run.settings.FORMAT, run.settings.XWIDE, format_);
    if (!problem.empty()) FailRun(run, problem);
  }
  if (IsBlank(run.inForce.DATA)) {
    reader_ = &run.input.control;
    name_ = run.startUp.ControlFileName;
    if (hasFormat_) ShowBeforeFormat();
  } else {
    run.input.control.Close();
    // The records that MFORMS= wrote stand in one file, whatever its directory is called.
    if (run.workDirectory.IsWorkFile(run.inForce.DATA)) {
      names_ = {run.inForce.DATA};
    } else {
      names_ = SplitNames(run.inForce.DATA);
    }
  }
}

bool RecordReader::Next(int person) {
  for (;;) {
    if (reader_ == nullptr && !OpenNextFile()) return false;
    PumpMessages(run_);
    if (run_.StopRequest == 1) return false;
    const int status = ReadRecord();
    if (status == kIoEndOfFile && !HasBegun()) {
      CloseFile();
      continue;
    }
    if (status != kIoOk) FailDataRecord(run_, name_, status, person);
    if (IsEndMark()) {
      CloseFile();
      continue;
    }
    if (IsBlank(Record())) continue;
    if (firstRecord_) ShowFirst();
    return true;
  }
}

bool RecordReader::OpenNextFile() {
  if (names_.empty()) return false;
  name_ = names_.back();
  names_.pop_back();
  OpenDataFile(run_, file_, name_);
  reader_ = &file_;
  firstRecord_ = true;
  if (hasFormat_) ShowBeforeFormat();
  return true;
}

// The first line of the file as it stands; the reading then starts anew in front of it.
void RecordReader::ShowBeforeFormat() {
  if (!reader_->IsOpen()) return;
  const std::uint64_t place = reader_->Place();
  if (reader_->ReadLine(line_) == kIoOk) {
    ShowRecord(run_, " Input Data Record before FORMAT=:", line_, withRuler_, {});
  }
  reader_->GoTo(place);
}

IoStatus RecordReader::ReadRecord() {
  linesRead_ = 0;
  if (!reader_->IsOpen()) return kIoEndOfFile;
  if (!hasFormat_) return reader_->ReadLine(Record());
  return ReadFormattedRecord(*reader_, format_, run_.settings.XWIDE, Record(), line_, linesRead_);
}

bool RecordReader::HasBegun() {
  return linesRead_ > 0 && !IsEndMark() && !(IsBlank(Record()) && IsBlank(line_));
}

bool RecordReader::IsEndMark() {
  const std::string& record = Record();
  if (!record.empty() && record[0] == kControlZ) return true;
  return hasFormat_ && linesRead_ == 1 && !line_.empty() && line_[0] == kControlZ;
}

void RecordReader::ShowFirst() {
  firstRecord_ = false;
  ShowRecord(run_,
             hasFormat_ ? " Input Data Record after FORMAT=:" : " Input Data Record:", Record(),
             withRuler_, RecordMarks(run_.settings, Record(), extraMarks_));
  withRuler_ = false;
}

void RecordReader::CloseFile() {
  reader_->Close();
  reader_ = nullptr;
}

}  // namespace vardento
