#include "report/sorted_lists.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "measure/shell_sort.h"
#include "report/map_labels.h"
#include "report/report_columns.h"
#include "report/report_context.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr float kEqualKeys = 0.0001F;
constexpr int kLastColumn = 300;  // labels are compared up to here

void TakeAbove(SelectedList& list, const Array1<StatusByte>& status, StatusByte bound) {
  list.entries.clear();
  for (int i = 1; i <= status.Size(); ++i) {
    if (status[i] > bound) list.entries.push_back(i);
  }
}

// Largest key first.
template <class Key>
void SortByKey(std::vector<int>& entries, Key key, bool ascendingEntries) {
  ShellSort(entries, FirstGap(entries.size()), [&](int a, int b) {
    const float difference = key(a) - key(b);
    if (std::fabs(difference) < kEqualKeys) return ascendingEntries ? a < b : a > b;
    return difference > 0;
  });
}

int LongestLabelOf(const Run& run, Facet facet) {
  if (facet == Facet::Persons) return std::clamp(run.LongestLabel, 1, kLastColumn);
  const int stored = static_cast<int>(run.stores.itemLabels.RecordLength());
  return std::clamp(std::max(stored, run.inForce.ITLEN), 1, kLastColumn);
}

// Gives the part of a label that decides its place, padded to `width`.
class SortTexts {
 public:
  // `start`: the column from which labels are compared; 0: the field that maps show.
  SortTexts(Run& run, Facet facet, int start)
      : run_(run),
        facet_(facet),
        labels_(run, facet),
        start_(start),
        width_(start == 0 ? labels_.Width() : LongestLabelOf(run, facet)) {}

  std::size_t Width() const { return static_cast<std::size_t>(width_); }

  std::string Of(int entry) const {
    const std::string label = LabelOfEntry(run_, facet_, entry);
    if (start_ == 0) return PadRight(labels_.FieldOf(label), width_);
    return PadRight(FromColumn(label, start_), width_);
  }

 private:
  Run& run_;
  Facet facet_;
  MapLabels labels_;
  int start_, width_;
};

int DecideStartColumn(Run& run, Facet facet) {
  const ControlSettings& settings = run.settings;
  const bool persons = facet == Facet::Persons;
  TableRequest& request = run.request;
  float start = static_cast<float>(persons ? settings.PSORT : settings.ISORT);
  if (request.Set(5) != ' ') start = request.Value(5);
  start = std::clamp(std::round(start), 0.0F, static_cast<float>(kLastColumn));
  if (start == 0 && !MapLabels(run, facet).HasField()) start = 1;
  request.TableArgument[4] = start;
  return static_cast<int>(start);
}

// Sorts with all labels in one block; false when the block can't be had.
bool SortInMemory(MemoryBudget& memory, const SortTexts& texts, SelectedList& list,
                  std::size_t entries) {
  const std::size_t length = texts.Width();
  MemoryBlock block;
  if (!block.Allocate(memory, entries * length)) return false;
  const auto labelOf = [&](int entry) {
    return block.Data() + static_cast<std::size_t>(entry - 1) * length;
  };
  for (const int entry : list.entries) {
    std::memcpy(labelOf(entry), texts.Of(entry).data(), length);
  }
  ShellSort(list.entries, FirstGap(list.entries.size()), [&](int a, int b) {
    const int order = std::memcmp(labelOf(a), labelOf(b), length);
    return order != 0 ? order < 0 : a < b;
  });
  return true;
}

float KeyOf(Run& run, Facet facet, char kind, int entry) {
  if (kind == 'M') return MeasureOf(run, facet, entry);
  const EntryValues values = ReadEntryValues(run, facet, entry);
  return kind == 'P' ? -values.correlation : values.displacement;
}

}  // namespace

void ListInEntryOrder(SelectedList& list, int count) {
  list.entries.resize(static_cast<std::size_t>(count));
  std::iota(list.entries.begin(), list.entries.end(), 1);
  list.order = 'E';
}

void SortByFit(Run& run, const FacetArrays& arrays, SelectedList& list) {
  const bool infitOnly = !run.settings.OUTFIT;
  WriteConsole(run, std::string("  Sorting by ")
                        .append(infitOnly ? "Infit" : "Fit")
                        .append(" for Table ")
                        .append(IntegerText(run.request.CurrentTable)));
  TakeAbove(list, arrays.status, Status::ExtremeHigh);
  const auto key = [&](int entry) {
    return infitOnly ? arrays.infitZ[entry] : std::max(arrays.infitZ[entry], arrays.outfitZ[entry]);
  };
  SortByKey(list.entries, key, true);
  list.order = 'F';
}

SelectedList& ListInFitOrder(ReportContext& context) {
  SelectedList& list = context.SubjectList();
  if (list.order != 'F') {
    SortByFit(context.run, ArraysOf(context.run, context.needs.subject), list);
  }
  return list;
}

std::vector<int> EntriesOf(const SelectedList& list) {
  std::vector<int> entries = list.entries;
  for (int& entry : entries) entry = std::abs(entry);
  return entries;
}

void SortByValue(Run& run, Facet facet, char letter, SelectedList& list) {
  const char kind = UpperCase(letter);
  const FacetArrays arrays = ArraysOf(run, facet);
  TakeAbove(list, arrays.status, kind == 'P' ? Status::ExtremeHigh : Status::NoResponses);
  Vector1<float> keys(arrays.Count());
  for (const int entry : list.entries) keys[entry] = KeyOf(run, facet, kind, entry);
  SortByKey(
      list.entries, [&keys](int entry) { return keys[entry]; }, kind == letter);
  list.order = letter;
}

void SortAlphabetically(Run& run, Facet facet, SelectedList& list) {
  const TableRequest& request = run.request;
  const int start = DecideStartColumn(run, facet);
  WriteConsole(run, "  Sorting " + PluralLabel(run.settings, facet) + " for Table " +
                        IntegerText(request.CurrentTable) + "." +
                        IntegerText(request.SubtableCounter + 1));
  const FacetArrays arrays = ArraysOf(run, facet);
  TakeAbove(list, arrays.status, Status::NoResponses);
  list.order = 'A';
  const std::size_t entries = static_cast<std::size_t>(arrays.Count());
  const SortTexts texts(run, facet, start);
  if (SortInMemory(run.memory, texts, list, entries)) return;
  WriteConsole(run, std::to_string(entries * texts.Width()) +
                        " bytes of memory not available, using disk work file");
  ShellSort(list.entries, FirstGap(list.entries.size()), [&](int a, int b) {
    const int order = texts.Of(a).compare(texts.Of(b));
    return order != 0 ? order < 0 : a < b;
  });
}

char PlotLetter(const SelectedList& list, int entry) {
  const std::vector<int>& entries = list.entries;
  const auto isDigit = [](int e) { return std::abs(e) <= 9; };
  if (entries.size() < 10 && std::all_of(entries.begin(), entries.end(), isDigit)) {
    return entry >= 0 && entry <= 9 ? static_cast<char>('0' + entry) : ' ';
  }
  const int count = static_cast<int>(entries.size());
  const auto stands = [&](int n) { return std::abs(entries[static_cast<std::size_t>(n - 1)]); };
  for (int n = 1; n <= std::min(kLetters, (count + 1) / 2); ++n) {
    if (stands(n) == entry) return LetterOfPlace(n, count);
    if (stands(count - n + 1) == entry) return LetterOfPlace(count - n + 1, count);
  }
  return ' ';
}

}  // namespace vardento
