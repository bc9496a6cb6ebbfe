// MFORMS=: records of several test forms, rewritten into the one layout that the data reader
// expects. Instructions describe where each field of a record comes from, one file after the other.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "control/control_line.h"
#include "control/parse_number.h"
#include "data/data_edits.h"
#include "data/record_reader.h"
#include "lists/list_line.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr int kInstructionLength = 512;
constexpr char kControlZ = 26;
constexpr std::uint64_t kLinesPerPump = 1000;

// Where one field of the output record comes from.
struct FormField {
  std::size_t target = 0;  // first column of the record, from 0
  std::size_t length = 0;
  std::size_t source = 0;  // first column of the line group, from 0
  std::string literal;     // stands in the field itself; empty: the source does
};

// Input lines that are laid end to end, and the fields taken from them.
struct LineGroup {
  int lines = 1;
  std::vector<FormField> fields;
};

// What stands between two "#".
struct RecordDescription {
  std::vector<LineGroup> groups;
  std::size_t length = 0;  // of the output record
  bool namesFile = false;

  bool IsEmpty() const { return groups.empty() && !namesFile; }
};

// An instruction in hand: its letter, what stands before and behind the "=", and all of it.
struct Instruction {
  char letter;
  std::string_view name;
  std::string_view value;
  std::string_view line;
};

[[noreturn]] void FailInstruction(Run& run, std::string_view text, std::string_view line) {
  FailRun(run, std::string(text).append(line));
}

// Takes a column or a range of columns that fills `text`; `first` is 0 when it is none, `last` is
// 0 for a single column.
void ParseColumns(std::string_view text, int& first, int& last) {
  const bool isRange = text.find('-') != std::string_view::npos;
  TakeEntryRange(text, first, last);
  if (!Trim(text).empty() || (isRange && last == 0)) first = 0;
}

// Reads the instructions and keeps the description that is being built.
class FormInstructions {
 public:
  explicit FormInstructions(Run& run) : run_(run) {}

  // Takes a line other than "#" into the description. A fault ends the run.
  void Take(std::string_view line);

  const RecordDescription& Description() const { return description_; }
  const std::string& DataName() const { return dataName_; }
  // Starts the next description; it goes on with the same file until it names another.
  void Clear() { description_ = {}; }

 private:
  Instruction Split(std::string_view line);
  void TakeFile(const Instruction& instruction);
  void TakeLines(const Instruction& instruction);
  void TakeField(const Instruction& instruction);
  FormField TargetOf(const Instruction& instruction);
  void SetSource(const Instruction& instruction, FormField& field);
  void SetLiteral(const Instruction& instruction, FormField& field);

  Run& run_;
  RecordDescription description_;
  std::string dataName_;
};

void FormInstructions::Take(std::string_view line) {
  const Instruction instruction = Split(line);
  switch (instruction.letter) {
    case 'D':
      return TakeFile(instruction);
    case 'L':
      return TakeLines(instruction);
    default:
      return TakeField(instruction);
  }
}

Instruction FormInstructions::Split(std::string_view line) {
  const char letter = UpperCase(line.front());
  const std::size_t equals = line.find('=');
  const bool isKnown = std::string_view("CDILP").find(letter) != std::string_view::npos;
  if (!isKnown || equals == std::string_view::npos) {
    FailInstruction(run_, "MFORMS= MISSING \"=\" SIGN: ", line);
  }
  const std::string_view value = Trim(line.substr(equals + 1));
  if (value.empty()) FailInstruction(run_, "MFORMS= VALUE AFTER \"=\" MISSING: ", line);
  return {letter, line.substr(1, equals - 1), value, line};
}

void FormInstructions::TakeFile(const Instruction& instruction) {
  const std::string name = ExtractValue(instruction.value);
  if (Trim(name).empty()) {
    FailInstruction(run_, "MFORMS= VALUE AFTER \"=\" MISSING: ", instruction.line);
  }
  // A second file in one description would push out the first: a "#" is missing between them.
  if (description_.namesFile) FailInstruction(run_, "MFORMS= \"=\" VALUE: ", instruction.line);
  dataName_ = Trim(name);
  description_.namesFile = true;
}

void FormInstructions::TakeLines(const Instruction& instruction) {
  const int count = ParseCount(instruction.value);
  if (count < 1) FailInstruction(run_, "MFORMS= MISSING LINE COUNT: ", instruction.line);
  description_.groups.push_back({count, {}});
}

void FormInstructions::TakeField(const Instruction& instruction) {
  FormField field = TargetOf(instruction);
  if (IsQuote(instruction.value.front())) {
    SetLiteral(instruction, field);
  } else {
    SetSource(instruction, field);
  }
  if (description_.groups.empty()) description_.groups.emplace_back();
  description_.length = std::max(description_.length, field.target + field.length);
  description_.groups.back().fields.push_back(std::move(field));
}

// The columns of the record that the field fills.
FormField FormInstructions::TargetOf(const Instruction& instruction) {
  const ControlSettings& settings = run_.settings;
  const bool isItem = instruction.letter == 'I';
  const int origin = isItem ? settings.ITEM1 : instruction.letter == 'P' ? settings.NAME1 : 1;
  const long long unit = isItem ? settings.XWIDE : 1;
  int first = 0, last = 0;
  ParseColumns(instruction.name, first, last);
  if (first < 1) FailInstruction(run_, "MFORMS= MISSING VALUE: ", instruction.line);
  if (last == 0) last = first;
  if (last < first) FailInstruction(run_, "MFORMS= LESS-MORE VALUE PROBLEM: ", instruction.line);
  if (origin - 1 + last * unit > kMaxLineLength) {
    FailInstruction(run_, "MFORMS= MISSING VALUE: ", instruction.line);
  }
  FormField field;
  field.target = static_cast<std::size_t>(origin - 1 + (first - 1) * unit);
  field.length = static_cast<std::size_t>((last - first + 1) * unit);
  return field;
}

void FormInstructions::SetSource(const Instruction& instruction, FormField& field) {
  int first = 0, last = 0;
  ParseColumns(instruction.value, first, last);
  if (first < 1) FailInstruction(run_, "MFORMS= \"=\" VALUE: ", instruction.line);
  const int length = static_cast<int>(field.length);
  if (last != 0 && last - first + 1 != length) {
    FailInstruction(run_, "MFORMS= LESS-MORE VALUE PROBLEM: ", instruction.line);
  }
  if (first > kMaxLineLength - length + 1) {
    FailInstruction(run_, "MFORMS= \"=\" VALUE: ", instruction.line);
  }
  field.source = static_cast<std::size_t>(first - 1);
}

void FormInstructions::SetLiteral(const Instruction& instruction, FormField& field) {
  const std::string_view value = instruction.value;
  const std::size_t end = value.find(value.front(), 1);
  // Nothing may stand behind the closing quote.
  if (end != value.size() - 1) FailInstruction(run_, "MFORMS= \"=\" VALUE: ", instruction.line);
  if (end - 1 != field.length) {
    FailInstruction(run_, "MFORMS= LESS-MORE VALUE PROBLEM: ", instruction.line);
  }
  field.literal = value.substr(1, end - 1);
}

// Writes the records of all descriptions into the work file.
class FormWriter {
 public:
  explicit FormWriter(Run& run) : run_(run), name_(run.workDirectory.NameOf("ZMF")) {
    const int status = writer_.Open(name_, FileMode::ReplacePrivate);
    if (status != kIoOk) FailWorkFile(status, 'O');
    const std::size_t bytes = 2 * std::size_t{kMaxLineLength};
    if (!work_.Allocate(run.memory, bytes)) {
      FailRun(run,
              std::to_string(bytes) + " bytes of memory not available, MFORMS= not processed.");
    }
    text_ = reinterpret_cast<char*>(work_.Data());
    record_ = text_ + kMaxLineLength;
  }

  // Reads the file from its first line and writes each record by the description.
  void WriteRecords(const RecordDescription& description, std::string dataName);

  const std::string& Name() const { return name_; }
  void Close() {
    const int status = writer_.Close();
    if (status != kIoOk) FailWorkFile(status, 'W');
  }

 private:
  enum class Outcome { Record, Blank, End };

  Outcome ReadRecord(const RecordDescription& description);
  // Lays the lines of the group end to end in text_; false at the end of the file.
  bool ReadGroup(const LineGroup& group);
  void FillFields(const LineGroup& group);
  void WriteRecord(std::size_t length);
  [[noreturn]] void FailWorkFile(int status, char operation);

  Run& run_;
  std::string name_;
  TextWriter writer_;
  MemoryBlock work_;
  char* text_ = nullptr;    // of the line group in hand
  char* record_ = nullptr;  // the output record
  std::size_t textLength_ = 0;
  int persons_ = 0;  // records written that aren't blank

  TextReader data_;
  std::string dataName_;
  std::string line_;
  bool hasText_ = false;         // a line of the record in hand isn't blank
  std::uint64_t linesRead_ = 0;  // of all records
};

void FormWriter::WriteRecords(const RecordDescription& description, std::string dataName) {
  dataName_ = std::move(dataName);
  OpenDataFile(run_, data_, dataName_);
  while (run_.StopRequest != 1) {
    const Outcome outcome = ReadRecord(description);
    if (outcome == Outcome::End) break;
    if (outcome == Outcome::Record) WriteRecord(description.length);
  }
  data_.Close();
}

FormWriter::Outcome FormWriter::ReadRecord(const RecordDescription& description) {
  hasText_ = false;
  std::fill_n(record_, description.length, ' ');
  for (const LineGroup& group : description.groups) {
    if (!ReadGroup(group)) {
      // Blank lines may stand at the end, half a record may not.
      if (hasText_) FailDataRecord(run_, dataName_, kIoEndOfFile, persons_ + 1);
      return Outcome::End;
    }
    FillFields(group);
  }
  return hasText_ ? Outcome::Record : Outcome::Blank;
}

bool FormWriter::ReadGroup(const LineGroup& group) {
  textLength_ = 0;
  for (int k = 0; k < group.lines; ++k) {
    if (++linesRead_ % kLinesPerPump == 0) PumpMessages(run_);
    const int status = data_.ReadLine(line_);
    if (status == kIoEndOfFile || (status == kIoOk && line_.starts_with(kControlZ))) return false;
    if (status != kIoOk) FailDataRecord(run_, dataName_, status, persons_ + 1);
    hasText_ = hasText_ || !TrimRight(line_).empty();
    // No field reaches further.
    const std::size_t room = static_cast<std::size_t>(kMaxLineLength) - textLength_;
    textLength_ += line_.copy(text_ + textLength_, room);
  }
  return true;
}

void FormWriter::FillFields(const LineGroup& group) {
  const std::string_view text(text_, textLength_);
  for (const FormField& field : group.fields) {
    char* target = record_ + field.target;
    if (!field.literal.empty()) {
      field.literal.copy(target, field.length);
      continue;
    }
    const std::size_t first = std::min(field.source, text.size());
    const std::size_t copied = text.copy(target, field.length, first);
    std::fill_n(target + copied, field.length - copied, ' ');
  }
}

void FormWriter::WriteRecord(std::size_t length) {
  // A field from the middle of a line must not look like the end of the data.
  if (length > 0 && record_[0] == kControlZ) record_[0] = ' ';
  const std::string_view record = TrimRight(std::string_view(record_, length));
  if (record.empty()) return;
  const int status = writer_.WriteLine(record);
  if (status != kIoOk) FailWorkFile(status, 'W');
  ++persons_;
}

void FormWriter::FailWorkFile(int status, char operation) {
  ReportMessage(run_, "MFORMS= WORK FILE PROBLEM");
  run_.RunIoStatus = status;
  FatalFileFailure(run_, name_, operation);
}

[[noreturn]] void FailFormFile(Run& run, std::string_view text, int status, char operation) {
  ReportMessage(run, text);
  run.RunIoStatus = status;
  FatalFileFailure(run, run.settings.MFORMS, operation);
}

// The next line that holds an instruction; false at the end.
bool ReadInstruction(Run& run, TextReader& reader, std::string& line) {
  for (;;) {
    const int status = reader.ReadLine(line, kInstructionLength);
    if (status == kIoEndOfFile) return false;
    if (status != kIoOk) FailFormFile(run, "MFORMS= FILE PROBLEM", status, 'I');
    CleanControlLine(line);
    if (!line.empty()) return true;
  }
}

// Writes the records of the description that `line` closes.
void CloseDescription(Run& run, FormInstructions& instructions, FormWriter& writer,
                      std::string_view line) {
  const RecordDescription& description = instructions.Description();
  if (description.IsEmpty()) return;
  if (instructions.DataName().empty()) FailRun(run, "MFORMS= \"DATA=\" MISSING");
  // Without a field every record of the file would be lost.
  if (description.length == 0) FailInstruction(run, "MFORMS= MISSING VALUE: ", line);
  writer.WriteRecords(description, instructions.DataName());
  instructions.Clear();
}

}  // namespace

void ConvertForms(Run& run) {
  AddEditEntry(run, "Edit MFORMS=", run.settings.MFORMS);
  TextReader reader;
  const int status = reader.Open(run.settings.MFORMS);
  if (status != kIoOk) FailFormFile(run, "MFORMS= FAILED", status, 'O');
  EnterInput(run, run.settings.MFORMS, "MFORMS=");
  FormWriter writer(run);
  FormInstructions instructions(run);
  std::string line;
  while (ReadInstruction(run, reader, line)) {
    if (line.front() == '#') {
      CloseDescription(run, instructions, writer, line);
    } else {
      instructions.Take(line);
    }
  }
  // A last description needs no "#" behind it.
  CloseDescription(run, instructions, writer, "#");
  if (instructions.DataName().empty()) FailRun(run, "MFORMS= \"DATA=\" MISSING");
  writer.Close();
  run.inForce.DATA = writer.Name();
}

}  // namespace vardento
