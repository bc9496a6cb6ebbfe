#include "data/select_items.h"

#include "run/number_text.h"

namespace vardento {

namespace {

bool HoldsFieldSpecification(const std::string& text) {
  return text.find("$S") != std::string::npos || text.find("$s") != std::string::npos;
}

}  // namespace

bool NeedsItemSelection(const ControlSettings& settings) {
  return HoldsFieldSpecification(settings.IWEIGHT) || HoldsFieldSpecification(settings.IAFILE) ||
         !SameText(settings.ISELECT, "*");
}

void SelectItems(Run&) {}

}  // namespace vardento
