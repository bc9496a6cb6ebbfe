#include "report/map_labels.h"

#include <algorithm>
#include <cstdlib>

#include "measure/entry_values.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kLongestLabel = 300;
constexpr std::string_view kBlankLabel = "X";

}  // namespace

MapLabels::MapLabels(Run& run, Facet facet) : run_(run), facet_(facet) {
  const bool persons = facet == Facet::Persons;
  std::string& text = persons ? run.inForce.PMAP : run.inForce.IMAP;
  if (!Trim(text).empty()) {
    field_ = ParseFieldSpecification(run, persons ? "PMAP" : "IMAP", text);
    if (!HasField()) text.clear();
  }
  width_ = std::clamp(DecideWidth(), 1, kLongestLabel);
}

int MapLabels::DecideWidth() const {
  int width = 0;
  for (const FieldSpecification::Piece& piece : field_.pieces) {
    width += piece.first == 0 ? TextWidth(piece.literal) : piece.last - piece.first + 1;
    width = std::min(width, kLongestLabel);
  }
  if (HasField()) return width;
  // The smallest integer has no absolute value.
  const int wanted = std::abs(std::max(run_.settings.NAMLMP, -kLongestLabel));
  if (wanted > 0) return wanted;
  return facet_ == Facet::Persons ? run_.LongestLabel : run_.inForce.ITLEN;
}

std::string MapLabels::Of(int entry) const {
  const std::string label = LabelOfEntry(run_, facet_, entry);
  const std::string shown = HasField() ? FieldOf(label) : std::string(CutToWidth(label, width_));
  return std::string(Trim(shown).empty() ? kBlankLabel : TrimRight(shown));
}

}  // namespace vardento
