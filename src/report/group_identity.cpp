#include "report/group_identity.h"

#include <string>
#include <vector>

#include "measure/entry_values.h"
#include "report/page.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kFullLine = 74;  // past this column a line is continued on the next

// Writes runs of consecutive entry numbers as "5-9", over as many lines as they take.
void PutEntryRuns(Run& run, ReportLine& line, const std::vector<int>& entries) {
  for (std::size_t first = 0; first < entries.size();) {
    std::size_t last = first;
    while (last + 1 < entries.size() && entries[last + 1] == entries[last] + 1) ++last;
    if (line.Column() > kFullLine + 1) {
      PutReportLine(run, line);
      line.Clear();
    }
    line.Text(" ").Text(IntegerText(entries[first]));
    if (last > first) line.Text("-").Text(IntegerText(entries[last]));
    first = last + 1;
  }
}

}  // namespace

void PutGroupIdentity(Run& run, const CategoryStructure& structure) {
  if (run.NGROUPS < 2) return;
  ReportLine line;
  line.Text(" FOR GROUP \"").Repeat(structure.groupCode, 1).Text("\"");
  if (structure.model != Model::Rating) {
    line.Skip(1).Text(" MODEL \"").Repeat(LetterOf(structure.model), 1).Text("\"");
  }
  line.Skip(1).Text(TrimRight(run.settings.ITEM_LABEL));
  if (structure.items.size() == 1) {
    const int item = structure.items.front();
    line.Text(" NUMBER: ").Text(IntegerText(item)).Skip(2);
    line.Text(LabelOfEntry(run, Facet::Items, item));
  } else {
    line.Text(" NUMBERS:");
    PutEntryRuns(run, line, structure.items);
  }
  PutReportLine(run, line);
  PutBlankLine(run);
}

}  // namespace vardento
