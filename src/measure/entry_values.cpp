#include "measure/entry_values.h"

#include <algorithm>
#include <cmath>

#include "data/work_files.h"
#include "run/user_scale.h"
#include "text/number_text.h"

namespace vardento {
namespace {

EntryValues PersonValues(Run& run, int person) {
  const PersonWorkRecord record = ReadPersonWork(run, person);
  const UserScale scale(run, Facet::Persons);
  EntryValues values;
  values.score = record.score;
  values.count = record.count;
  values.error = scale.Error(record.error);
  values.infit = record.infit;
  values.outfit = record.outfit;
  values.correlation = record.correlation;
  values.displacement = scale.Difference(record.displacement);
  return values;
}

EntryValues ItemValues(const Run& run, int item) {
  const RunArrays& arrays = run.arrays;
  const UserScale scale(run, Facet::Items);
  EntryValues values;
  values.score = arrays.ItemScore[item];
  values.count = arrays.ItemCount[item];
  values.error = scale.Error(arrays.ItemError[item]);
  values.infit = arrays.ItemInfit[item];
  values.outfit = arrays.ItemOutfit[item];
  values.correlation = arrays.ItemCorrelation[item];
  values.displacement = scale.Difference(arrays.ItemDisplacement[item]);
  return values;
}

}  // namespace

FacetArrays ArraysOf(const Run& run, Facet facet) {
  const RunArrays& arrays = run.arrays;
  const GivenEntries& given = run.given;
  if (facet == Facet::Persons) {
    return {arrays.PersonStatus,  arrays.PersonMeasure, arrays.PersonInfitZ,
            arrays.PersonOutfitZ, given.PersonWeight,   given.ItemWeight};
  }
  return {arrays.ItemStatus,  arrays.ItemMeasure, arrays.ItemInfitZ,
          arrays.ItemOutfitZ, given.ItemWeight,   given.PersonWeight};
}

float MeasureOf(const Run& run, Facet facet, int entry) {
  const FacetArrays arrays = ArraysOf(run, facet);
  // Who has no measure stands at 0, wherever the scale has its origin.
  return IsMeasured(arrays.status[entry]) ? UserScale(run, facet).Measure(arrays.measure[entry])
                                          : 0.0F;
}

EntryValues ReadEntryValues(Run& run, Facet facet, int entry) {
  EntryValues values = facet == Facet::Persons ? PersonValues(run, entry) : ItemValues(run, entry);
  const FacetArrays arrays = ArraysOf(run, facet);
  values.status = arrays.status[entry];
  values.measure = MeasureOf(run, facet, entry);
  values.infitZ = arrays.infitZ[entry];
  values.outfitZ = arrays.outfitZ[entry];
  values.weight = arrays.WeightOf(entry);
  values.realError = values.error * std::sqrt(std::max(1.0F, values.infit));
  return values;
}

EntryValues ReadShownValues(Run& run, Facet facet, int entry) {
  EntryValues values = ReadEntryValues(run, facet, entry);
  if (run.settings.REALSE) values.error = values.realError;
  if (!run.settings.TOTAL) return values;
  const RunArrays& arrays = run.arrays;
  const bool persons = facet == Facet::Persons;
  values.score = persons ? arrays.PersonTotalScore[entry] : arrays.ItemTotalScore[entry];
  values.count = persons ? arrays.PersonTotalCount[entry] : arrays.ItemTotalCount[entry];
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
