// The Report Output File while the run writes it: one record for each line, with the control column
// turned into what the reader of the file sees.
#pragma once

#include <string>
#include <string_view>

#include "platform/io_status.h"
#include "platform/text_file.h"

namespace vardento {

struct ControlSettings;

class ReportOutput {
 public:
  // What a line may hold, its control column included.
  static constexpr int kMaxLine = 501;

  IoStatus Open(const std::string& path, FileMode mode);
  bool IsOpen() const { return writer_.IsOpen(); }
  IoStatus Close() { return writer_.Close(); }
  // Leaves the place as it was before Open, as long as little was written (see
  // TextWriter::Abandon).
  void Abandon();
  const std::string& Name() const { return name_; }

  // Writes one line whose column 1 is the control column ("^" begins a page) and counts it. Returns
  // the writer's status.
  IoStatus PutLine(std::string_view line, const ControlSettings& settings);

  // Writes one line of another file as it stands.
  IoStatus CopyLine(std::string_view line);

  int LinesOnPage = 0;  // negative: the next heading needs no page break
  int PageNumber = 1;
  bool failureTold = false;  // a failed write has been reported; later lines fail quietly

 private:
  TextWriter writer_;
  std::string name_;
  bool isNew_ = false;  // there was nothing of this name
};

}  // namespace vardento
