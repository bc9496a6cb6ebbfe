#include "files/measure_files.h"

#include <string>

#include "files/file_form.h"
#include "measure/entry_values.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

// The names of the columns, fixed and separated; "<z>" is the word of LOCAL=, "<c>" that of PTBIS=.
constexpr std::string_view kFixedNames =
    ";ENTRY MEASURE STTS COUNT    SCORE  ERROR IN.MSQ IN.<z> OUT.MS OUT.<z> DISPL <c> WEIGHT ";
constexpr std::string_view kSeparatedNames =
    "\";\",\"ENTRY\",\"MEASURE\",\"STATUS\",\"COUNT\",\"SCORE\",\"ERROR\",\"IN.MSQ\",\"IN.<z>\","
    "\"OUT.MSQ\",\"OUT.<z>\",\"DISPLACE\",\"<c>\",\"WEIGHT\",";

std::string NamesOf(const Run& run, std::string_view form, std::string_view tail) {
  std::string names(form);
  const auto replace = [&names](std::string_view mark, const std::string& word) {
    for (std::size_t at = 0; (at = names.find(mark, at)) != std::string::npos; at += word.size()) {
      names.replace(at, mark.size(), word);
    }
  };
  replace("<z>", PadRight(run.settings.fitName, 4));
  replace("<c>", run.inForce.pointBiserial ? "PTBS" : "CORR");
  return names.append(tail);
}

// Writes PFILE= or IFILE=.
class MeasureFile {
 public:
  MeasureFile(Run& run, Facet facet)
      : run_(run),
        settings_(run.settings),
        facet_(facet),
        persons_(facet == Facet::Persons),
        label_(TrimRight(SingularLabel(run.settings, facet))),
        file_(run) {
    measureFormat_ = "(F8." + std::to_string(settings_.UDECIM) + ")";
  }

  void Write() {
    const std::string& name = persons_ ? settings_.PFILE : settings_.IFILE;
    WriteConsole(run_, "Writing " + label_ + " Measure file ...");
    AddEditEntry(run_, "Edit " + label_ + (persons_ ? " PFILE=" : " IFILE="), name);
    if (!file_.Open(name)) return;
    if (WriteHead() && WriteRows()) file_.Close();
  }

 private:
  bool WriteHead() {
    const bool items = !persons_;
    return file_.WriteHead(
        label_, NamesOf(run_, kFixedNames, items ? "G M NAME" : "NAME"),
        NamesOf(run_, kSeparatedNames, items ? "\"GROUP\",\"MODEL\",\"NAME\"" : "\"NAME\""));
  }

  bool WriteRows() {
    const int count = ArraysOf(run_, facet_).Count();
    for (int entry = 1; entry <= count; ++entry) {
      if (!file_.WriteLine(file_.IsFixed() ? FixedRow(entry) : SeparatedRow(entry))) return false;
      ShowProgress(run_, entry, count);
    }
    return true;
  }

  char Flag(const EntryValues& values) const {
    return settings_.HLINES && values.status < Status::Active ? ';' : ' ';
  }

  // The numeric fields from ENTRY to WEIGHT, each with `separator` behind it.
  std::string NumericFields(int entry, const EntryValues& values,
                            std::string_view separator) const {
    std::string fields;
    const auto put = [&](const std::string& field) { fields.append(field).append(separator); };
    put(integer_text(entry, 5));
    put(number_text(values.measure, 8, measureFormat_));
    put(integer_text(values.status, 3));
    put(number_text(values.count, 8, "(F8.1)"));
    put(number_text(values.score, 9, "(F9.1)"));
    put(number_text(values.error, 8, measureFormat_).substr(1));
    for (const float statistic : {values.infit, values.infitZ, values.outfit, values.outfitZ,
                                  values.displacement, values.correlation, values.weight}) {
      put(number_text(statistic, 7, "(F7.2)"));
    }
    return fields;
  }

  char ModelOf(int item) const {
    return LetterOf(run_.arrays.GroupModel[run_.arrays.ItemGroup[item]]);
  }

  std::string FixedRow(int entry) {
    const EntryValues values = ReadShownValues(run_, facet_, entry);
    std::string row(1, Flag(values));
    row.append(NumericFields(entry, values, "")).append(" ");
    if (!persons_) {
      row.append({GroupCodeOf(settings_, entry), ' ', ModelOf(entry), ' '});
    }
    return row.append(NameInFiles(run_, facet_, entry));
  }

  std::string SeparatedRow(int entry) {
    const EntryValues values = ReadShownValues(run_, facet_, entry);
    std::string row{'"', Flag(values), '"', ','};
    row.append(NumericFields(entry, values, ","));
    if (!persons_) {
      row.append({'"', GroupCodeOf(settings_, entry), '"', ',', '"', ModelOf(entry), '"', ','});
    }
    return row.append(Quoted(NameInFiles(run_, facet_, entry)));
  }

  Run& run_;
  const ControlSettings& settings_;
  Facet facet_;
  bool persons_;
  std::string label_;
  std::string measureFormat_;
  OutputFile file_;
};

}  // namespace

void WritePersonMeasureFile(Run& run) { MeasureFile(run, Facet::Persons).Write(); }

void WriteItemMeasureFile(Run& run) { MeasureFile(run, Facet::Items).Write(); }

}  // namespace vardento
