#include "files/file_form.h"

#include <cerrno>

#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kLabelLength = 12;

}  // namespace

std::string clean_csv_line(std::string_view line, char csv) {
  line = TrimRight(line);
  std::string clean(line.size(), ' ');
  std::size_t length = 0;
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    clean[length] = !quoted && c == ',' && csv == 'T' ? '\t' : c;
    if (quoted || c != ' ') ++length;
  }
  clean.resize(length);
  return clean;
}

std::string HeadLabel(std::string_view label) { return PadRight(label, kLabelLength); }

std::string_view HeadTitle(const Run& run, std::size_t length) {
  return TrimRight(std::string_view(run.settings.TITLE).substr(0, length));
}

std::string Quoted(std::string_view text) { return std::string("\"").append(text).append("\""); }

std::string NameInFiles(Run& run, Facet facet, int entry) {
  const int length = facet == Facet::Persons ? run.settings.NAMLEN : run.inForce.ITLEN;
  std::string name(TrimRight(PadRight(LabelOfEntry(run, facet, entry), length)));
  return name.empty() ? " " : name;
}

bool OutputFile::Open(const std::string& name, std::string_view variable) {
  name_ = std::string(variable).append(name);
  // A slip of the pen must not cost the user the Control File, the data, a list or the report.
  const IoStatus opened = run_.files.IsKept(name)
                              ? IoStatus(EEXIST)
                              : writer_.Open(std::string(TrimRight(name)), FileMode::Replace);
  if (!Check(opened, 'O')) return false;
  name_ = name;
  return true;
}

bool OutputFile::Refuse(const std::string& name, int status) {
  name_ = name;
  return Check(status, 'O');
}

bool OutputFile::WriteLine(std::string_view line, std::size_t length) {
  line = line.substr(0, length);
  if (IsFixed()) return Check(writer_.WriteLine(TrimRight(line)), 'W');
  return Check(writer_.WriteLine(clean_csv_line(line, run_.settings.CSV)), 'W');
}

bool OutputFile::WriteHead(std::string_view label, std::string_view fixedNames,
                           std::string_view separatedNames) {
  if (!run_.settings.HLINES) return true;
  const std::string_view mark = IsFixed() ? ";" : "\"";
  const std::string_view end = IsFixed() ? "" : "\"";
  const auto put = [&](std::string_view text) {
    return WriteLine(std::string(mark).append(text).append(end));
  };
  return put(HeadLabel(label) + " FILE FOR") && put(HeadTitle(run_)) && put(run_.RunStamp) &&
         WriteLine(IsFixed() ? fixedNames : separatedNames);
}

bool OutputFile::Close() { return Check(writer_.Close(), 'W'); }

bool OutputFile::Check(int status, char operation) {
  run_.RunIoStatus = status;
  if (status == kIoOk) return true;
  run_.outputFailed = true;
  ReportFileFailure(run_, name_, operation);
  return false;
}

}  // namespace vardento
