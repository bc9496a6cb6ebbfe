// Data records one after the other, from the Control File or from the files of DATA=, and what
// stands in them: the person label and the responses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "control/data_format.h"
#include "data/show_record.h"
#include "run/run.h"

namespace vardento {

// Opens a data file that the user named: registers it with the Edit menu and among the files in
// use, tells it on the console and makes it fit for reading. Ends the run when it is the report or
// can't be read. `name` may come back changed by the user.
void OpenDataFile(Run& run, TextReader& file, std::string& name);

// Ends the run for a data record, that of person number `person`, which can't be read to its end.
[[noreturn]] void FailDataRecord(Run& run, const std::string& name, int status, int person);

// Label and responses of one record, however it is laid out: in columns, by FORMAT= or by DELIM=.
class RecordFields {
 public:
  explicit RecordFields(const ControlSettings& settings);

  // Takes both out of the record, which is filled up with blanks where it is too short and has to
  // stay as it is while Codes() is in use.
  void Take(std::string& record);

  // NAMLEN characters without control characters.
  const std::string& Label() const { return label_; }
  // NI x XWIDE characters.
  const char* Codes() const { return codes_; }

 private:
  void TakeColumns(std::string& record);

  const ControlSettings& settings_;
  std::size_t firstCode_ = 0;   // from 0
  std::size_t firstLabel_ = 0;  // from 0
  std::size_t labelStep_ = 1;   // columns from one character of the label to the next
  std::size_t neededLength_ = 0;
  std::string label_;
  std::string splitCodes_;
  const char* codes_ = nullptr;
};

class RecordReader {
 public:
  explicit RecordReader(Run& run);

  // Brings the next record that isn't blank; false at the end of the last file or when the user
  // stops the reading. `person` is the number that the record will have, for the failure message.
  // User messages are handled before each record.
  bool Next(int person);
  std::string& Record() { return run_.input.ControlLine; }
  // Shows "^" and the letter under this column (field, with DELIM=) of the first record; 0: not.
  void Mark(char letter, int column) { extraMarks_.push_back({column, letter}); }

 private:
  bool OpenNextFile();
  void ShowBeforeFormat();
  IoStatus ReadRecord();
  // True when the file has ended inside a record, not at blank lines or a mark behind the last one.
  bool HasBegun();
  bool IsEndMark();
  void ShowFirst();
  void CloseFile();

  Run& run_;
  bool hasFormat_ = false;
  DataFormat format_;
  std::string line_;  // scratch of the formatted reading
  int linesRead_ = 0;

  TextReader file_;
  TextReader* reader_ = nullptr;    // the file in hand
  std::string name_;                // its name
  std::vector<std::string> names_;  // files still to come, the next one last
  bool firstRecord_ = true;         // of the file in hand
  bool withRuler_ = true;
  std::vector<RecordMark> extraMarks_;
};

}  // namespace vardento
