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

std::size_t Size(int count) { return static_cast<std::size_t>(count); }

}  // namespace

void FailForMemory(Run& run, std::size_t bytes, int count, std::string_view word) {
  run.RunIoStatus = -2;
  std::string text = integer_field(static_cast<long long>(bytes), 10);
  text += " bytes of memory not available. NOT ENOUGH MEMORY FOR";
  text += integer_field(count, 8);
  text += " ";
  text += TrimRight(word);
  text += " IOSTAT=";
  text += integer_field(run.RunIoStatus, 6);
  FailRun(run, text);
}

namespace {

void AllocateOrFail(Run& run, MemoryBlock& block, const BlockPlan& plan, int count,
                    std::string_view word) {
  if (!plan.Allocate(run.memory, block)) FailForMemory(run, plan.Bytes(), count, word);
}

// A text of one field for each item, or of one value for all of them.
std::size_t TextBytes(const ControlSettings& settings, int state) {
  const bool perItem = state == PerItem::Text || state == PerItem::List;
  return (perItem ? Size(settings.NI) * Size(settings.XWIDE) : 1) + kSpare;
}

// The arrays of so many persons. They are set when the plan is carried out.
BlockPlan PlanPersons(Run& run, int persons) {
  RunArrays& arrays = run.arrays;
  BlockPlan plan;
  plan.Add({&arrays.PersonMeasure, &arrays.PersonTotalScore, &arrays.PersonTotalCount,
            &arrays.PersonInfit, &arrays.PersonOutfit, &arrays.PersonInfitZ, &arrays.PersonOutfitZ},
           persons);
  plan.Add({&arrays.PersonStatus, &run.given.PersonStatus}, persons);
  return plan;
}

BlockPlan PlanWeights(Run& run, int persons) {
  const bool ofItems = !run.inForce.IWEIGHT.empty();
  BlockPlan plan;
  plan.Add(run.given.PersonWeight, run.inForce.PWEIGHT.empty() ? 0 : persons);
  plan.Add(run.given.ItemWeight, ofItems ? run.settings.NI : 0);
  plan.Add(run.arrays.GroupMaxWeight, ofItems ? run.NGROUPS : 0);
  return plan;
}

// Room for so many persons is left now, with what the rest of the run can't do without.
bool FitsPersons(Run& run, int persons, const NeededBytes& neededLater) {
  MemoryBlock arrays, weights, later;
  return arrays.Allocate(run.memory, PlanPersons(run, persons).Bytes()) &&
         weights.Allocate(run.memory, PlanWeights(run, persons).Bytes()) &&
         later.Allocate(run.memory, neededLater(persons));
}

// The largest number of persons from 1 to `most` that fits, 0 when none does.
int FindFittingPersons(Run& run, int most, const NeededBytes& neededLater) {
  int good = 0;
  for (int bad = most + 1; bad - good > 1;) {
    const int middle = good + (bad - good) / 2;
    (FitsPersons(run, middle, neededLater) ? good : bad) = middle;
  }
  return good;
}

// Keeps as many persons as memory takes; the rest of the run knows no others.
void ReducePersons(Run& run, const NeededBytes& neededLater) {
  const int read = run.NPERS;
  const std::size_t bytes = PlanPersons(run, read).Bytes();
  ReportMessage(
      run, std::to_string(bytes) + " bytes of memory not available. Complete analysis not done.");
  const int kept = FindFittingPersons(run, read - 1, neededLater);
  if (kept < 1) FailForMemory(run, bytes, read, run.settings.PERSONS_LABEL);
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
  RunArrays& arrays = run.arrays;
  BlockPlan plan;
  plan.Add({&arrays.ItemError, &arrays.ItemDisplacement}, items);
  plan.Add({&arrays.ItemMeasure, &arrays.ItemScore, &arrays.ItemCount, &arrays.ItemModelScore,
            &arrays.ItemModelMax, &arrays.ItemTotalScore, &arrays.ItemTotalCount, &arrays.ItemInfit,
            &arrays.ItemOutfit, &arrays.ItemInfitZ, &arrays.ItemOutfitZ, &arrays.ItemCorrelation},
           items);
  plan.Add(arrays.ItemGroup, items);
  plan.Add({&arrays.ItemStatus, &run.given.ItemStatus}, items);
  plan.Add(arrays.ScoredRow, items);
  AllocateOrFail(run, run.itemBlock, plan, items, run.settings.ITEMS_LABEL);
}

void ReserveItemTexts(Run& run) {
  const ControlSettings& settings = run.settings;
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
  RunArrays& arrays = run.arrays;
  GivenEntries& given = run.given;
  BlockPlan plan;
  plan.Add({&arrays.GroupStart, &arrays.GroupTop, &given.GroupTop}, groups);
  plan.Add({&arrays.GroupMissingCount, &arrays.GroupMissingMeasure, &given.GroupPivot}, groups);
  plan.Add(arrays.GroupModel, groups);
  plan.Add({&arrays.GroupPivotFlag, &given.GroupPivotFlag}, groups);
  AllocateOrFail(run, run.groupBlock, plan, groups, "SCALE GROUPS");
}

void AllocatePersonStatusTrial(Run& run) {
  int persons = kTrialPersons;
  while (!run.personStatusTrial.Allocate(run.memory, Size(persons) + kSpare)) {
    persons /= 2;
    if (persons > kFewestTrialPersons) continue;
    FailForMemory(run, Size(persons) + kSpare, persons, "PERSON STATUS ARRAY");
  }
  run.personCapacity = persons;
  run.given.PersonStatus = {reinterpret_cast<StatusByte*>(run.personStatusTrial.Data()), persons};
}

void HoldPersonStatus(Run& run) {
  const Array1<StatusByte> trial = run.given.PersonStatus;
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
  run.given.PersonStatus = {};
  run.personStatusTrial.Free();
}

void AllocateCategoryBlock(Run& run) {
  RunArrays& arrays = run.arrays;
  BlockPlan plan;
  plan.Add({&arrays.CategoryHalfPoint, &arrays.CategoryMeasurePoint, &arrays.CategoryThurstone},
           run.NCATS);
  plan.Add({&arrays.CodeToCategory, &arrays.CategoryToCode, &arrays.StepStatus,
            &run.given.StepStatus, &arrays.CategoryExpectedHits, &arrays.CategoryMatches},
           run.NCATS);
  plan.Add({&arrays.StepCalibration, &run.given.StepCalibration, &arrays.CategoryCount,
            &arrays.CategoryExpectedCount, &arrays.CategoryInformation, &arrays.CategoryObservedZ,
            &arrays.CategoryObservedY, &arrays.CategoryVariance, &arrays.CategoryZVariance,
            &arrays.CategoryObservedMeasure, &arrays.CategoryExpectedMeasure},
           run.NCATS);
  AllocateOrFail(run, run.categoryBlock, plan, run.NCATS, "CATEGORIES");
}

void AllocatePersonBlock(Run& run, const NeededBytes& neededLater) {
  // What is refused now or would be refused later: fewer persons are measured.
  if (!FitsPersons(run, run.NPERS, neededLater)) ReducePersons(run, neededLater);
  AllocateOrFail(run, run.personBlock, PlanPersons(run, run.NPERS), run.NPERS,
                 run.settings.PERSONS_LABEL);
}

void RestorePersonStatus(Run& run) {
  Array1<StatusByte>& persons = run.given.PersonStatus;
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
  static_cast<void>(file.Close());  // it was only read
  run.workDirectory.Remove("ZUU");
}

void AllocateWeightBlock(Run& run) {
  const BlockPlan plan = PlanWeights(run, run.NPERS);
  if (plan.Bytes() == 0) return;
  AllocateOrFail(run, run.weightBlock, plan, static_cast<int>(plan.Bytes() / sizeof(float)),
                 "WEIGHTS");
  // An entry that no list names counts once.
  for (const Array1<float>& weights :
       {run.given.PersonWeight, run.given.ItemWeight, run.arrays.GroupMaxWeight}) {
    std::fill(weights.begin(), weights.end(), 1.0F);
  }
}

}  // namespace vardento
