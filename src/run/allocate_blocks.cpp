#include "run/allocate_blocks.h"

#include <algorithm>

#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kSpare = 32;
constexpr int kTrialPersons = 1'000'000;
constexpr int kFewestTrialPersons = 10;
constexpr std::size_t kPersonBytes = 33;
constexpr std::size_t kProbeBytes = 25;  // by which the search for a smaller block measures

std::size_t Size(int count) { return static_cast<std::size_t>(count); }

[[noreturn]] void FailForMemory(Run& run, std::size_t bytes, int count, std::string_view word) {
  std::string text = integer_field(static_cast<long long>(bytes), 10);
  text += " bytes of memory not available. NOT ENOUGH MEMORY FOR";
  text += integer_field(count, 8);
  text += " ";
  text += TrimRight(word);
  text += " IOSTAT=";
  text += integer_field(run.RunIoStatus, 6);
  FailRun(run, text);
}

void AllocateOrFail(Run& run, MemoryBlock& block, std::size_t bytes, int count,
                    std::string_view word) {
  if (block.Allocate(run.memory, bytes)) return;
  run.RunIoStatus = -2;
  FailForMemory(run, bytes, count, word);
}

// A text of one field for each item, or of one value for all of them.
std::size_t TextBytes(const ControlSettings& settings, int state) {
  const bool perItem = state == PerItem::Text || state == PerItem::List;
  return (perItem ? Size(settings.NI) * Size(settings.XWIDE) : 1) + kSpare;
}

bool FitsPersons(Run& run, int persons, std::size_t bytesEach) {
  MemoryBlock probe;
  return probe.Allocate(run.memory, bytesEach * Size(persons) + kSpare);
}

// The largest number of persons from 1 to `most` that fits, 0 when none does.
int FindFittingPersons(Run& run, int most, std::size_t bytesEach) {
  int good = 0;
  for (int bad = most + 1; bad - good > 1;) {
    const int middle = good + (bad - good) / 2;
    (FitsPersons(run, middle, bytesEach) ? good : bad) = middle;
  }
  return good;
}

void CutPersonBlock(Run& run) {
  RunArrays& arrays = run.arrays;
  BlockCutter cutter(run.personBlock);
  for (Array1<float>* array : {&arrays.PersonMeasure, &arrays.PersonTotalScore,
                               &arrays.PersonTotalCount, &arrays.PersonError, &arrays.PersonInfit,
                               &arrays.PersonOutfit, &arrays.PersonInfitZ, &arrays.PersonOutfitZ}) {
    *array = cutter.Cut<float>(run.NPERS);
  }
  arrays.PersonStatus = cutter.Cut<StatusByte>(run.NPERS);
}

// Keeps as many persons as memory takes; the rest of the run knows no others.
void ReducePersons(Run& run, std::size_t bytes) {
  ReportMessage(
      run, std::to_string(bytes) + " bytes of memory not available. Complete analysis not done.");
  const int read = run.NPERS;
  int kept = FindFittingPersons(run, read - 1, kProbeBytes);
  // The probe is smaller than the block: what it promises may still be too much.
  if (kept > 0 && !FitsPersons(run, kept, kPersonBytes)) {
    kept = FindFittingPersons(run, kept, kPersonBytes);
  }
  if (kept < 1 || !run.personBlock.Allocate(run.memory, kPersonBytes * Size(kept) + kSpare)) {
    run.RunIoStatus = -2;
    FailForMemory(run, bytes, read, run.settings.PERSONS_LABEL);
  }
  run.NPERS = kept;
  ReportMessage(run, " ONLY FIRST" + integer_field(kept, 8) + " OF" + integer_field(read, 8) + " " +
                         run.settings.PERSONS_LABEL + " PROCESSED DUE TO MEMORY LIMITS");
}

// The hold file for person status failed at opening, reading or writing.
[[noreturn]] void FailHoldFile(Run& run, int status, char operation) {
  run.RunIoStatus = status;
  FatalFileFailure(run, "PERSON STATUS HOLD FILE", operation);
}

StatusByte DefaultStatus(const Run& run) {
  return run.DefaultKept ? Status::Active : Status::Deleted;
}

}  // namespace

void AllocateItemBlock(Run& run) {
  const int items = run.settings.NI;
  AllocateOrFail(run, run.itemBlock, 74 * Size(items) + 8, items, run.settings.ITEMS_LABEL);
  RunArrays& arrays = run.arrays;
  BlockCutter cutter(run.itemBlock);
  for (Array1<float>* array :
       {&arrays.ItemMeasure, &arrays.ItemScore, &arrays.ItemCount, &arrays.ItemRawMax,
        &arrays.ItemModelScore, &arrays.ItemModelMax, &arrays.ItemTotalScore,
        &arrays.ItemTotalCount, &arrays.ItemExpected, &arrays.ItemExpectedOffset, &arrays.ItemError,
        &arrays.ItemInfit, &arrays.ItemOutfit, &arrays.ItemInfitZ, &arrays.ItemOutfitZ,
        &arrays.ItemCorrelation, &arrays.ItemDisplacement}) {
    *array = cutter.Cut<float>(items);
  }
  arrays.ItemGroup = cutter.Cut<std::int32_t>(items);
  arrays.ItemStatus = cutter.Cut<StatusByte>(items);
  arrays.ScoredRow = cutter.Cut<std::uint8_t>(items);
}

void ReserveItemTexts(Run& run) {
  ControlSettings& settings = run.settings;
  const std::size_t items = Size(settings.NI);
  const std::size_t width = Size(settings.XWIDE);
  // A refusal is only remembered: one message stands for all of these.
  std::size_t refused = 0;
  const auto reserve = [&](std::size_t bytes) {
    if (run.memory.Take(bytes)) return;
    run.RunIoStatus = -2;
    refused = bytes;
  };
  reserve(4 * items);
  if (settings.MAKEKEY == 'Y') settings.NKEY = std::max(settings.NKEY, 1);
  const std::size_t keys = Size(settings.NKEY);
  reserve(keys == 0 ? 5 : 4 * keys + keys * items * width);
  reserve(TextBytes(settings, settings.RESCORE));
  reserve(TextBytes(settings, settings.MODELS));
  const bool perItemValues = settings.IREFER == PerItem::Text || settings.IREFER == PerItem::List;
  if (settings.NIVALUE > 0 || perItemValues) {
    reserve((Size(settings.CATEGS) * width + 1) * Size(settings.NIVALUE) + width * items + kSpare);
  }
  if (run.RunIoStatus != 0) {
    FailForMemory(run, refused, settings.NI, "KEY/RESCOR/GROUPS/MODELS/IVALUE");
  }
}

void AllocateGroupBlock(Run& run) {
  const int groups = run.NGROUPS;
  AllocateOrFail(run, run.groupBlock, 22 * Size(groups) + kSpare, groups, "SCALE GROUPS");
  RunArrays& arrays = run.arrays;
  BlockCutter cutter(run.groupBlock);
  arrays.GroupStart = cutter.Cut<std::int32_t>(groups);
  arrays.GroupTop = cutter.Cut<std::int32_t>(groups);
  arrays.GroupPivot = cutter.Cut<float>(groups);
  arrays.GroupMissingCount = cutter.Cut<float>(groups);
  arrays.GroupMissingMeasure = cutter.Cut<float>(groups);
  arrays.GroupModel = cutter.Cut<char>(groups);
  arrays.GroupPivotFlag = cutter.Cut<char>(groups);
  std::fill(arrays.GroupModel.begin(), arrays.GroupModel.end(), run.settings.MODEL_LETTER);
}

void AllocatePersonStatusTrial(Run& run) {
  int persons = kTrialPersons;
  while (!run.personStatusTrial.Allocate(run.memory, Size(persons) + kSpare)) {
    persons /= 2;
    if (persons > kFewestTrialPersons) continue;
    run.RunIoStatus = -2;
    FailForMemory(run, Size(persons) + kSpare, persons, "PERSON STATUS ARRAY");
  }
  run.personCapacity = persons;
  run.arrays.PersonStatus = BlockCutter(run.personStatusTrial).Cut<StatusByte>(persons);
}

void HoldPersonStatus(Run& run) {
  const Array1<StatusByte> trial = run.arrays.PersonStatus;
  int highest = std::min(std::max(run.HighestMarked, run.NPERS), trial.Size());
  while (highest > 0 && trial[highest] == DefaultStatus(run)) --highest;
  run.HighestMarked = highest;
  DirectFile file;
  int status = file.Create(run.workDirectory.NameOf("ZUU"), 1);
  if (status != kIoOk) FailHoldFile(run, status, 'O');
  for (int person = 1; person <= highest && status == kIoOk; ++person) {
    status = file.Write(person, &trial[person]);
  }
  const int closed = file.Close();
  if (status == kIoOk) status = closed;
  if (status != kIoOk) FailHoldFile(run, status, 'W');
  run.arrays.PersonStatus = {};
  run.personStatusTrial.Free();
}

void AllocateCategoryBlock(Run& run) {
  const int positions = run.NCATS;
  AllocateOrFail(run, run.categoryBlock, 72 * Size(positions) + 4 * Size(run.MAXCAT + 1) + kSpare,
                 positions, "CATEGORIES");
  RunArrays& arrays = run.arrays;
  BlockCutter cutter(run.categoryBlock);
  for (Array1<std::int32_t>* array :
       {&arrays.CodeToCategory, &arrays.CategoryToCode, &arrays.StepStatus,
        &arrays.CategoryExpectedHits, &arrays.CategoryMatches}) {
    *array = cutter.Cut<std::int32_t>(positions);
  }
  for (Array1<float>* array :
       {&arrays.StepCalibration, &arrays.CategoryCount, &arrays.CategoryExpectedCount,
        &arrays.CategoryInformation, &arrays.CategoryObservedZ, &arrays.CategoryObservedY,
        &arrays.CategoryVariance, &arrays.CategoryZVariance, &arrays.CategoryObservedMeasure,
        &arrays.CategoryExpectedMeasure, &arrays.CategoryHalfPoint, &arrays.CategoryMeasurePoint,
        &arrays.CategoryThurstone}) {
    *array = cutter.Cut<float>(positions);
  }
}

void AllocatePersonBlock(Run& run) {
  const std::size_t bytes = kPersonBytes * Size(run.NPERS) + kSpare;
  if (!run.personBlock.Allocate(run.memory, bytes)) ReducePersons(run, bytes);
  CutPersonBlock(run);
}

void RestorePersonStatus(Run& run) {
  Array1<StatusByte>& persons = run.arrays.PersonStatus;
  std::fill(persons.begin(), persons.end(), DefaultStatus(run));
  File file;
  const std::string name = run.workDirectory.NameOf("ZUU");
  int status = file.Open(name, FileMode::Update);
  if (status != kIoOk) FailHoldFile(run, status, 'O');
  const std::size_t held = Size(std::min(run.HighestMarked, run.NPERS));
  std::size_t got = 0;
  status = file.ReadAt(0, persons.Data(), held, got);
  if (status == kIoOk && got < held) status = kIoEndOfFile;
  if (status != kIoOk) FailHoldFile(run, status, 'R');
  file.Close();
  run.workDirectory.Remove("ZUU");
}

void AllocateWeightBlock(Run& run) {
  run.personWeights = !run.settings.PWEIGHT.empty();
  run.itemWeights = !run.settings.IWEIGHT.empty();
  if (!run.personWeights && !run.itemWeights) return;
  const int persons = run.personWeights ? run.NPERS : 0;
  const int items = run.itemWeights ? run.settings.NI : 0;
  const int groups = run.itemWeights ? run.NGROUPS : 0;
  const int words = persons + items + groups;
  AllocateOrFail(run, run.weightBlock, 4 * Size(words), words, "WEIGHTS");
  BlockCutter cutter(run.weightBlock);
  run.arrays.PersonWeight = cutter.Cut<float>(persons);
  run.arrays.ItemWeight = cutter.Cut<float>(items);
  run.arrays.GroupMaxWeight = cutter.Cut<float>(groups);
  // An entry that no list names counts once.
  for (const Array1<float>& weights :
       {run.arrays.PersonWeight, run.arrays.ItemWeight, run.arrays.GroupMaxWeight}) {
    std::fill(weights.begin(), weights.end(), 1.0F);
  }
}

}  // namespace vardento
