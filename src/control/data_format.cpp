#include "control/data_format.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kMaxLevels = 16;
// More steps than any record of 32,000 characters can need: two moves before each field.
constexpr std::size_t kMaxSteps = 3 * kMaxLineLength;
// Every number of a format is held here: far beyond the last column, far below an overflow.
constexpr int kMaxAmount = 1000000;

class FormatParser {
 public:
  explicit FormatParser(std::string_view text) : text_(text) { levels_.emplace_back(); }

  std::string_view Parse(int xwide, DataFormat& format);

 private:
  struct Level {
    int repeat = 1;
    std::int64_t fields = 0;
    std::vector<FormatStep> steps;
  };

  int ReadNumber();  // the digits from here on; -1 when there are none
  std::string_view TakeItem();
  bool CloseLevel();
  void TakeColumn();
  void AddFields(int count, int width);
  void Add(FormatStep step);

  std::string_view text_;
  std::size_t next_ = 0;
  int count_ = -1;  // the repeat count in front of the next item
  bool tooManySteps_ = false;
  std::vector<Level> levels_;  // the first one holds what the outermost parentheses hold
};

std::string_view FormatParser::Parse(int xwide, DataFormat& format) {
  if (text_.empty() || text_.front() != '(') return "MUST BEGIN WITH (";
  if (text_.back() != ')') return "MUST END WITH )";
  while (next_ < text_.size()) {
    const std::string_view fault = TakeItem();
    if (!fault.empty()) return fault;
  }
  if (levels_.size() > 1) return "NOT ENOUGH \")\"";
  const std::int64_t total = levels_.front().fields;
  if (total < 1) return "NO A, A1, A2";
  if (total * xwide > kMaxLineLength || tooManySteps_) return "TOO MANY A, A1, A2";
  format.fields = static_cast<int>(total);
  format.steps = std::move(levels_.front().steps);
  return {};
}

int FormatParser::ReadNumber() {
  int number = -1;
  for (; next_ < text_.size() && (IsDigit(text_[next_]) || text_[next_] == ' '); ++next_) {
    if (text_[next_] == ' ') continue;
    number = std::min(std::max(number, 0) * 10 + (text_[next_] - '0'), kMaxAmount);
  }
  return number;
}

std::string_view FormatParser::TakeItem() {
  if (IsDigit(text_[next_]) || text_[next_] == ' ') {
    const int number = ReadNumber();
    if (number >= 0) count_ = number;
    return {};
  }
  const char code = UpperCase(text_[next_++]);
  const int count = std::max(count_, 1);
  count_ = -1;
  switch (code) {
    case '(':
      if (levels_.size() > kMaxLevels) return "TOO MANY \"(\"";
      levels_.push_back({count, 0, {}});
      break;
    case ')':
      if (!CloseLevel()) return "TOO MANY \")\"";
      break;
    case 'A':
      AddFields(count, ReadNumber());
      break;
    case 'X':
      Add({FormatStep::Kind::Skip, count});
      break;
    case 'T':
      TakeColumn();
      break;
    case '/':
      Add({FormatStep::Kind::NextLine, count});
      break;
    case ',':
      break;
    default:
      ReadNumber();
  }
  return {};
}

bool FormatParser::CloseLevel() {
  if (levels_.size() < 2) return false;
  const Level closed = std::move(levels_.back());
  levels_.pop_back();
  const std::int64_t fields = levels_.back().fields + closed.fields * closed.repeat;
  levels_.back().fields = std::min<std::int64_t>(fields, kMaxAmount);
  if (closed.steps.empty()) return true;
  for (int i = 0; i < closed.repeat && !tooManySteps_; ++i) {
    for (const FormatStep& step : closed.steps) Add(step);
  }
  return true;
}

void FormatParser::TakeColumn() {
  const char direction = next_ < text_.size() ? UpperCase(text_[next_]) : ' ';
  if (direction == 'L' || direction == 'R') ++next_;
  const int amount = ReadNumber();
  if (amount < 0) return;
  if (direction == 'L') {
    Add({FormatStep::Kind::Skip, -amount});
  } else if (direction == 'R') {
    Add({FormatStep::Kind::Skip, amount});
  } else {
    Add({FormatStep::Kind::Column, std::max(amount, 1)});
  }
}

void FormatParser::AddFields(int count, int width) {
  std::int64_t& fields = levels_.back().fields;
  fields = std::min<std::int64_t>(fields + count, kMaxAmount);
  for (int i = 0; i < count && !tooManySteps_; ++i) {
    Add({FormatStep::Kind::Field, std::max(width, 0)});
  }
}

// Neighbouring moves of one kind become one step, so that a repeated group of them stays short.
void FormatParser::Add(FormatStep step) {
  std::vector<FormatStep>& steps = levels_.back().steps;
  if (!steps.empty() && steps.back().kind == step.kind && step.kind != FormatStep::Kind::Field) {
    int& amount = steps.back().amount;
    if (step.kind == FormatStep::Kind::Column) {
      amount = step.amount;
      return;
    }
    if ((amount < 0) == (step.amount < 0)) {
      amount = std::clamp(amount + step.amount, -kMaxAmount, kMaxAmount);
      return;
    }
  }
  if (steps.size() >= kMaxSteps) {
    tooManySteps_ = true;
    return;
  }
  steps.push_back(step);
}

// Where the next field of a record comes from and goes to.
struct FieldCursor {
  int xwide;
  std::size_t column = 0;
  std::size_t target = 0;
};

void CopyField(const std::string& line, int width, FieldCursor& cursor, std::string& record) {
  const auto xwide = static_cast<std::size_t>(cursor.xwide);
  const std::size_t taken = width > 0 ? static_cast<std::size_t>(width) : xwide;
  const std::size_t from = cursor.column + (taken > xwide ? taken - xwide : 0);
  if (from < line.size()) {
    const std::size_t length = std::min({taken, xwide, line.size() - from});
    line.copy(record.data() + cursor.target, length, from);
  }
  cursor.target += xwide;
  cursor.column = std::min<std::size_t>(cursor.column + taken, kMaxAmount);
}

void MoveColumn(const FormatStep& step, FieldCursor& cursor) {
  if (step.kind == FormatStep::Kind::Column) {
    cursor.column = static_cast<std::size_t>(step.amount) - 1;
  } else {
    const auto moved = static_cast<std::int64_t>(cursor.column) + step.amount;
    cursor.column = static_cast<std::size_t>(std::clamp<std::int64_t>(moved, 0, kMaxAmount));
  }
}

}  // namespace

std::string_view ParseDataFormat(std::string_view text, int xwide, DataFormat& format) {
  format = {};
  return FormatParser(Trim(text)).Parse(xwide, format);
}

IoStatus ReadFormattedRecord(TextReader& reader, const DataFormat& format, int xwide,
                             std::string& record, std::string& line, int& linesRead) {
  linesRead = 0;
  record.assign(static_cast<std::size_t>(format.fields) * static_cast<std::size_t>(xwide), ' ');
  int status = reader.ReadLine(line);
  if (status != kIoOk) return status;
  ++linesRead;
  FieldCursor cursor{xwide};
  for (const FormatStep& step : format.steps) {
    if (step.kind == FormatStep::Kind::NextLine) {
      for (int i = 0; i < step.amount && status == kIoOk; ++i) {
        status = reader.ReadLine(line);
        if (status == kIoOk) ++linesRead;
      }
      if (status != kIoOk && status != kIoEndOfFile) return status;
      cursor.column = 0;
    } else if (step.kind == FormatStep::Kind::Field) {
      if (status != kIoOk) return status;
      CopyField(line, step.amount, cursor, record);
    } else {
      MoveColumn(step, cursor);
    }
  }
  return kIoOk;
}

void CheckFormat(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  if (Trim(settings.FORMAT).empty()) return;
  settings.FORMAT = UpperCase(Trim(settings.FORMAT));
  DataFormat format;
  const std::string_view fault = ParseDataFormat(settings.FORMAT, settings.XWIDE, format);
  if (!fault.empty()) {
    ReportMessage(run, " PROBLEM WITH \"FORMAT=\": " + std::string(fault));
    FailRun(run, " FORMAT=" + settings.FORMAT);
  }
  settings.formatFields = format.fields;
}

}  // namespace vardento
