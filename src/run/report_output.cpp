#include "run/report_output.h"

#include <algorithm>

#include "run/control_settings.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr char kFormFeed = 12;
constexpr char kPageMark = '^';

}  // namespace

IoStatus ReportOutput::Open(const std::string& path, FileMode mode) {
  name_ = path;
  failureTold = false;
  isNew_ = !FileExists(path);
  return writer_.Open(path, mode);
}

void ReportOutput::Abandon() {
  writer_.Abandon();
  if (isNew_) static_cast<void>(RemoveFile(name_));
}

IoStatus ReportOutput::PutLine(std::string_view line, const ControlSettings& settings) {
  std::string text(TrimRight(line.substr(0, kMaxLine)));
  if (text.empty()) text = " ";
  std::size_t first = 0;
  if (text[0] == kPageMark) {
    text[0] = settings.FORMFD == kPageMark ? kFormFeed : settings.FORMFD;
    LinesOnPage = 1;
  } else {
    // Without a carriage-control character the control column is not written.
    if (settings.FORMFD == kPageMark) first = 1;
    ++LinesOnPage;
  }
  if (text.size() == first) text.push_back(' ');
  return writer_.WriteLine(std::string_view(text).substr(first));
}

IoStatus ReportOutput::CopyLine(std::string_view line) {
  ++LinesOnPage;
  return writer_.WriteLine(line);
}

}  // namespace vardento
