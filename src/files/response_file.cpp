#include "files/response_file.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "data/work_files.h"
#include "files/file_form.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kLeastLabelWidth = 30;

// Writes RFILE=. Lines of fixed columns can be read as data again, so they have no head.
class ResponseFile {
 public:
  ResponseFile(Run& run, const Array1<StatusByte>& persons, const Array1<StatusByte>& items)
      : run_(run),
        persons_(persons),
        items_(items),
        labelWidth_(std::max(kLeastLabelWidth, run.settings.NAMLEN)),
        scoreWidth_(static_cast<int>(IntegerText(run.MAXCAT).size())),
        file_(run) {}

  void Write(const std::string& name) {
    WriteConsole(run_, " Writing Response File");
    if (!file_.Open(name, "RFILE=")) return;
    AddEditEntry(run_, "Edit Response RFILE=", name);
    if (WriteHead() && WriteLines()) file_.Close();
  }

 private:
  // The names of the fields in the separated forms.
  bool WriteHead() {
    if (!run_.settings.HLINES || file_.IsFixed()) return true;
    line_.clear();
    line_ += Quoted(TrimRight(run_.settings.PERSON_LABEL));
    for (int i = 1; i <= run_.settings.NI; ++i) {
      line_ += ',';
      line_ += Quoted(NameInFiles(run_, Facet::Items, i));
    }
    return EndLine();
  }

  bool WriteLines() {
    for (int n = 1; n <= run_.NPERS; ++n) {
      line_.clear();
      const bool answers = persons_[n] >= Status::NoResponses;
      PutLabel(answers                          ? ReadPersonName(run_, n)
               : persons_[n] == Status::Deleted ? " (DELETED)"
                                                : " (OMITTED)");
      const std::uint8_t* const row = answers ? ReadScoredRow(run_, n) : nullptr;
      for (int i = 1; i <= run_.settings.NI; ++i) {
        const bool shown = row != nullptr && IsRead(items_[i]) && row[i - 1] <= run_.MAXCAT;
        PutScore(shown ? row[i - 1] : kNoScore);
      }
      if (!EndLine()) return false;
      ShowProgress(run_, n, run_.NPERS);
    }
    return true;
  }

  void PutLabel(std::string_view label) {
    if (file_.IsFixed()) {
      line_ += PadRight(label, labelWidth_);
      return;
    }
    label = TrimRight(label);
    line_ += Quoted(label.empty() ? " " : label);
  }

  void PutScore(int score) {
    const std::string text = score == kNoScore ? "" : IntegerText(score);
    line_ += file_.IsFixed() ? PadLeft(text, scoreWidth_) : "," + text;
  }

  bool EndLine() { return file_.WriteLine(line_, OutputFile::kUncut); }

  static constexpr int kNoScore = -1;

  Run& run_;
  const Array1<StatusByte>& persons_;
  const Array1<StatusByte>& items_;
  int labelWidth_;
  int scoreWidth_;  // of the largest score
  std::string line_;
  OutputFile file_;
};

}  // namespace

void WriteResponseFile(Run& run) {
  WriteResponseFile(run, run.settings.RFILE, run.given.PersonStatus, run.given.ItemStatus);
}

void WriteResponseFile(Run& run, const std::string& name, const Array1<StatusByte>& persons,
                       const Array1<StatusByte>& items) {
  ResponseFile(run, persons, items).Write(name);
}

}  // namespace vardento
