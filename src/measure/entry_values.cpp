#include "measure/entry_values.h"

#include <algorithm>
#include <cmath>

#include "data/work_files.h"
#include "text/number_text.h"

namespace vardento {
namespace {

EntryValues PersonValues(Run& run, int person) {
  const RunArrays& arrays = run.arrays;
  const PersonWorkRecord record = ReadPersonWork(run, person);
  EntryValues values;
  values.score = record.score;
  values.count = record.count;
  values.error = record.error;
  values.infit = record.infit;
  values.outfit = record.outfit;
  values.correlation = record.correlation;
  values.displacement = record.displacement;
  if (run.settings.TOTAL == 'Y') {
    values.score = arrays.PersonTotalScore[person];
    values.count = arrays.PersonTotalCount[person];
  }
  return values;
}

EntryValues ItemValues(const Run& run, int item) {
  const RunArrays& arrays = run.arrays;
  const bool total = run.settings.TOTAL == 'Y';
  EntryValues values;
  values.score = total ? arrays.ItemTotalScore[item] : arrays.ItemScore[item];
  values.count = total ? arrays.ItemTotalCount[item] : arrays.ItemCount[item];
  values.error = arrays.ItemError[item];
  values.infit = arrays.ItemInfit[item];
  values.outfit = arrays.ItemOutfit[item];
  values.correlation = arrays.ItemCorrelation[item];
  values.displacement = arrays.ItemDisplacement[item];
  return values;
}

}  // namespace

FacetArrays ArraysOf(const Run& run, Facet facet) {
  const RunArrays& arrays = run.arrays;
  const Array1<float> personWeight = run.personWeights ? arrays.PersonWeight : Array1<float>();
  const Array1<float> itemWeight = run.itemWeights ? arrays.ItemWeight : Array1<float>();
  if (facet == Facet::Persons) {
    return {arrays.PersonStatus,  arrays.PersonMeasure, arrays.PersonInfitZ,
            arrays.PersonOutfitZ, personWeight,         itemWeight};
  }
  return {arrays.ItemStatus,  arrays.ItemMeasure, arrays.ItemInfitZ,
          arrays.ItemOutfitZ, itemWeight,         personWeight};
}

const std::string& SingularLabel(const ControlSettings& settings, Facet facet) {
  return facet == Facet::Persons ? settings.PERSON_LABEL : settings.ITEM_LABEL;
}

const std::string& PluralLabel(const ControlSettings& settings, Facet facet) {
  return facet == Facet::Persons ? settings.PERSONS_LABEL : settings.ITEMS_LABEL;
}

EntryValues ReadEntryValues(Run& run, Facet facet, int entry) {
  EntryValues values = facet == Facet::Persons ? PersonValues(run, entry) : ItemValues(run, entry);
  const FacetArrays arrays = ArraysOf(run, facet);
  values.status = arrays.status[entry];
  values.measure = arrays.measure[entry];
  values.infitZ = arrays.infitZ[entry];
  values.outfitZ = arrays.outfitZ[entry];
  if (arrays.weight.Size() > 0) values.weight = arrays.weight[entry];
  if (run.settings.REALSE == 'Y') values.error *= std::sqrt(std::max(1.0F, values.infit));
  return values;
}

std::string LabelOfEntry(Run& run, Facet facet, int entry) {
  if (facet == Facet::Items) return ItemLabelOf(run, entry);
  return std::string(TrimRight(ReadPersonName(run, entry)));
}

char GroupCodeOf(const ControlSettings& settings, int item) {
  const std::string& text = settings.groupsText;
  if (text.empty()) return ' ';
  const std::size_t place =
      settings.GROUPS == PerItem::Text ? static_cast<std::size_t>(item - 1) : 0;
  return place < text.size() ? text[place] : ' ';
}

}  // namespace vardento
