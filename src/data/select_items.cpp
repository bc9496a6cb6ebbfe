#include "data/select_items.h"

#include "control/control_line.h"
#include "data/field_values.h"
#include "data/work_files.h"
#include "lists/label_mask.h"
#include "text/number_text.h"

namespace vardento {

bool NeedsItemSelection(const Run& run) {
  for (const std::string* name : {&run.inForce.IWEIGHT, &run.inForce.IAFILE}) {
    if (HoldsFieldSpecification(*name) && !run.workDirectory.IsWorkFile(*name)) return true;
  }
  return !SameText(run.settings.ISELECT, "*");
}

void SelectItems(Run& run) {
  const ControlSettings& settings = run.settings;
  FieldValues weights(run, run.inForce.IWEIGHT, "IWEIGHT", "ZIW");
  FieldValues anchors(run, run.inForce.IAFILE, "IAFILE", "ZIA");
  const bool selects = !SameText(settings.ISELECT, "*");
  const auto length = static_cast<std::size_t>(run.inForce.ITLEN);
  for (int i = 1; i <= settings.NI; ++i) {
    std::string label = ItemLabelOf(run, i);
    if (label.size() < length) label.resize(length, ' ');
    if (selects && MatchLabel(settings.ISELECT, label) < 0) {
      run.given.ItemStatus[i] = Status::Deleted;
    }
    if (weights.InUse()) weights.Write(i, ExtractField(weights.Specification(), label));
    if (anchors.InUse()) anchors.Write(i, ExtractField(anchors.Specification(), label));
  }
  weights.Close();
  anchors.Close();
}

}  // namespace vardento
