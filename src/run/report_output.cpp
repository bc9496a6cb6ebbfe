#include "run/report_output.h"

#include <algorithm>

#include "run/control_settings.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr char kFormFeed = 12;
constexpr char kPageMark = '^';

char PlainCharacter(char c) {
  switch (static_cast<unsigned char>(c)) {
    case 196:
    case 194:
    case 193:
      return '-';
    case 179:
    case 195:
    case 180:
      return '|';
    case 197:
    case 218:
    case 191:
    case 192:
    case 217:
      return '+';
    case 201:
    case 205:
    case 187:
    case 200:
    case 186:
    case 188:
      return '*';
    case 249:
    case 250:
      return '.';
    default:
      return c;
  }
}

}  // namespace

void MapGraphics(std::string& text) {
  for (char& c : text) c = PlainCharacter(c);
}

int ReportOutput::Open(const std::string& path, FileMode mode) {
  name_ = path;
  failureTold = false;
  return writer_.Open(path, mode);
}

int ReportOutput::PutLine(std::string_view line, const ControlSettings& settings) {
  std::string text(TrimRight(line.substr(0, kMaxLine)));
  if (text.empty()) text = " ";
  if (settings.ASCII != 'N') MapGraphics(text);
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

int ReportOutput::CopyLine(std::string_view line) {
  ++LinesOnPage;
  return writer_.WriteLine(line);
}

}  // namespace vardento
