#include "data/field_values.h"

#include "control/control_line.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

FieldValues::FieldValues(Run& run, std::string& setting, std::string_view keyword,
                         std::string_view stem)
    : run_(run) {
  if (!HoldsFieldSpecification(setting) || run.workDirectory.IsWorkFile(setting)) return;
  specification_ = ParseFieldSpecification(run, keyword, setting);
  setting.clear();
  if (specification_.IsEmpty()) return;
  setting = run.workDirectory.NameOf(stem);
  const int status = file_.Open(setting, FileMode::ReplacePrivate);
  if (status != kIoOk) Fail(status, 'O');
}

void FieldValues::Write(int entry, std::string_view value) {
  if (value.empty()) return;
  const int status = file_.WriteLine(IntegerText(entry) + " " + std::string(value));
  if (status != kIoOk) Fail(status, 'W');
}

void FieldValues::Close() {
  if (!InUse()) return;
  const int status = file_.Close();
  if (status != kIoOk) Fail(status, 'W');
}

void FieldValues::Fail(int status, char operation) {
  run_.RunIoStatus = status;
  FatalFileFailure(run_, "PROBLEM WITH WORK FILE.", operation);
}

}  // namespace vardento
