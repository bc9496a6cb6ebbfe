#include "lists/list_file.h"

#include "control/control_line.h"
#include "lists/list_line.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

bool ListFile::Open(std::string& fileName, std::string_view caption,
                    std::string_view announcement) {
  AddEditEntry(run_, caption, fileName);
  WriteConsole(run_, std::string(announcement) + fileName);
  PrepareFile(run_, fileName, std::string(variable_) + "=");
  if (run_.RunIoStatus != kIoOk) return false;
  run_.RunIoStatus = reader_.Open(fileName);
  if (run_.RunIoStatus == kIoOk) return true;
  ReportFileFailure(run_, fileName, 'I');
  return false;
}

void ListFile::OpenOrEnd(std::string& fileName, std::string_view caption,
                         std::string_view announcement) {
  if (Open(fileName, caption, announcement)) return;
  run_.RunIoStatus = -1;
  EndRun(run_);
}

bool ListFile::Next(std::string& line, int rowNumbers) {
  rowNumbers_ = rowNumbers;
  while (NextAsItStands(line)) {
    if (CleanListLine(line, rowNumbers)) return true;
  }
  return false;
}

bool ListFile::NextAsItStands(std::string& line) {
  PumpMessages(run_);
  const bool isTitle = IsFileHead(asItStands_);
  const int status = reader_.ReadLine(asItStands_);
  if (status == kIoEndOfFile) {
    TellRefused();
    return false;
  }
  if (status != kIoOk) {
    run_.RunIoStatus = status;
    FatalFileFailure(run_, reader_.Name(), 'I');
  }
  if (isTitle) asItStands_.clear();
  line = asItStands_;
  return true;
}

void ListFile::Refuse() {
  std::string text = asItStands_;
  if (IsColumnHead(text) || !CleanListLine(text, rowNumbers_)) return;
  if (++refused_ > 1) return;
  firstPlace_ = reader_.LineNumber();
  firstText_ = asItStands_.substr(0, kListLineLength);
  RemoveComment(firstText_);
}

void ListFile::TellRefused() {
  if (refused_ == 0) return;
  const std::string count =
      refused_ == 1 ? "1 LINE NOT USED: " : IntegerText(refused_) + " LINES NOT USED, THE FIRST: ";
  Warn(run_, {reader_.Name(), firstPlace_},
       std::string(variable_) + "= " + count + std::string(Trim(firstText_)));
}

}  // namespace vardento
