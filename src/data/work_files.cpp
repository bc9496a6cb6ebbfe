#include "data/work_files.h"

#include <algorithm>
#include <cstring>

#include "platform/io_status.h"
#include "run/allocate_blocks.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr std::string_view kNameFile = "PERSON NAME FILE";
constexpr std::string_view kCodesFile = "PERSON CODES FILE";
constexpr std::string_view kScoredFile = "PERSON SCORED FILE";
constexpr std::string_view kWorkFile = "PERSON WORK FILE";

constexpr std::string_view kNameWriteFailure = " PERSON NAME FILE WRITE FAILURE AT PERSON RECORD =";
constexpr std::string_view kCodesWriteFailure =
    " PERSON CODES FILE WRITE FAILURE AT PERSON RECORD =";
constexpr std::string_view kScoredWriteFailure =
    " PERSON SCORED FILE WRITE FAILURE AT PERSON RECORD =";

template <class File>
void OpenPersonFile(Run& run, File& file, std::string_view stem, int recordLength,
                    std::string_view nameInMessages) {
  const auto length = static_cast<std::size_t>(std::max(recordLength, 1));
  const int status = file.Create(run.workDirectory.NameOf(stem), length);
  if (status == kIoOk) return;
  ReportMessage(run, "UNABLE TO OPEN WORK FILE.");
  run.RunIoStatus = status;
  FatalFileFailure(run, nameInMessages, 'O');
}

// Ends the run when the operation on a person's record failed.
void CheckRecord(Run& run, int status, std::string_view text, int person, std::string_view file,
                 char operation) {
  if (status == kIoOk) return;
  ReportMessage(run, std::string(text) + IntegerText(person));
  run.RunIoStatus = status;
  FatalFileFailure(run, file, operation);
}

void CheckScoredRead(Run& run, int status, int person) {
  CheckRecord(run, status, " PERSON SCORES FILE READ FAILURE AT PERSON RECORD =", person,
              kScoredFile, 'R');
}

void CheckWorkWrite(Run& run, int status, int person) {
  CheckRecord(run, status, " PERSON WORK FILE WRITE FAILURE AT PERSON RECORD =", person, kWorkFile,
              'W');
}

// A person's record of either kind, in a place as long as the longer one.
template <class Record>
void WriteRecord(Run& run, int person, const Record& record) {
  unsigned char bytes[WorkStores::kPersonRecord] = {};
  std::memcpy(bytes, &record, sizeof record);
  CheckWorkWrite(run, run.stores.personWork.Write(person, bytes), person);
}

template <class Record>
Record ReadRecord(Run& run, int person) {
  unsigned char bytes[WorkStores::kPersonRecord];
  const int status = run.stores.personWork.Read(person, bytes);
  CheckRecord(run, status, " PERSON WORK FILE READ FAILURE AT PERSON RECORD =", person, kWorkFile,
              'R');
  Record record;
  std::memcpy(&record, bytes, sizeof record);
  return record;
}

}  // namespace

void OpenWorkFiles(Run& run) {
  WorkStores& stores = run.stores;
  const ControlSettings& settings = run.settings;
  OpenPersonFile(run, stores.scoredRows, "ZMM", settings.NI, " PERSON SCORE RECORD: ZMM");
  OpenPersonFile(run, stores.codedRows, "ZNN", settings.NI, " PERSON CODE RECORD: ZNN");
  if (settings.NAMLEN >= 1) {
    OpenPersonFile(run, stores.personNames, "ZPP", settings.NAMLEN, " PERSON NAME RECORD: ZPP");
  }
  OpenPersonFile(run, stores.personWork, "ZQQ", static_cast<int>(WorkStores::kPersonRecord),
                 " PERSON WORK RECORD: ZQQ");
}

void AllocateStores(Run& run) {
  WorkStores& stores = run.stores;
  stores.scoredRows.Drop();
  stores.personWork.Mirror(run.memory, run.NPERS);
  stores.scoredRows.Mirror(run.memory, run.NPERS);
}

bool TryTakeBlock(Run& run, const BlockPlan& plan, MemoryBlock& block) {
  for (MirroredFile* store : {&run.stores.scoredRows, &run.stores.personWork}) {
    if (plan.Allocate(run.memory, block)) return true;
    CheckWorkWrite(run, store->GiveBack(), run.NPERS);
  }
  return plan.Allocate(run.memory, block);
}

void TakeBlock(Run& run, const BlockPlan& plan, MemoryBlock& block, int count,
               std::string_view word) {
  if (!TryTakeBlock(run, plan, block)) FailForMemory(run, plan.Bytes(), count, word);
}

void FlushPersonFiles(Run& run) {
  WorkStores& stores = run.stores;
  const int last = run.NPERS;
  CheckRecord(run, stores.personNames.Flush(), kNameWriteFailure, last, kNameFile, 'W');
  CheckRecord(run, stores.codedRows.Flush(), kCodesWriteFailure, last, kCodesFile, 'W');
  CheckRecord(run, stores.scoredRows.File().Flush(), kScoredWriteFailure, last, kScoredFile, 'W');
}

void WritePersonName(Run& run, int person, std::string_view label) {
  if (run.settings.NAMLEN < 1) return;
  const auto length = static_cast<std::size_t>(run.settings.NAMLEN);
  const int status =
      label.size() == length
          ? run.stores.personNames.Write(person, label.data())
          : run.stores.personNames.Write(person, PadRight(label, run.settings.NAMLEN).data());
  CheckRecord(run, status, kNameWriteFailure, person, kNameFile, 'W');
}

std::string ReadPersonName(Run& run, int person) {
  if (run.settings.NAMLEN < 1) return "";
  std::string label(static_cast<std::size_t>(run.settings.NAMLEN), ' ');
  const int status = run.stores.personNames.Read(person, label.data());
  CheckRecord(run, status, " PERSON NAME FILE READ FAILURE AT PERSON RECORD =", person, kNameFile,
              'R');
  return label;
}

void WriteCodedRow(Run& run, int person, const std::uint8_t* row) {
  const int status = run.stores.codedRows.Write(person, row);
  CheckRecord(run, status, kCodesWriteFailure, person, kCodesFile, 'W');
}

void ReadCodedRow(Run& run, int person, std::uint8_t* row) {
  const int status = run.stores.codedRows.Read(person, row);
  CheckRecord(run, status, " PERSON CODES FILE READ FAILURE AT PERSON RECORD =", person, kCodesFile,
              'R');
}

void WriteScoredRow(Run& run, int person, const std::uint8_t* row) {
  const int status = run.stores.scoredRows.Write(person, row);
  CheckRecord(run, status, kScoredWriteFailure, person, kScoredFile, 'W');
}

const std::uint8_t* ReadScoredRow(Run& run, int person) {
  if (const std::uint8_t* stored = run.stores.scoredRows.Find(person)) return stored;
  std::uint8_t* const row = run.arrays.ScoredRow.Data();
  CheckScoredRead(run, run.stores.scoredRows.Read(person, row), person);
  return row;
}

const std::uint8_t* FillScoredRow(Run& run, int person) {
  std::uint8_t* const row = run.arrays.ScoredRow.Data();
  CheckScoredRead(run, run.stores.scoredRows.Fill(person, row), person);
  return row;
}

void WritePersonScores(Run& run, int person, const PersonScores& record) {
  WriteRecord(run, person, record);
}

PersonScores ReadPersonScores(Run& run, int person) {
  return ReadRecord<PersonScores>(run, person);
}

void WritePersonWork(Run& run, int person, const PersonWorkRecord& record) {
  WriteRecord(run, person, record);
}

PersonWorkRecord ReadPersonWork(Run& run, int person) {
  return ReadRecord<PersonWorkRecord>(run, person);
}

std::string ItemNumberLabel(int item, int NI) {
  std::string label = integer_text(item, 5);
  std::replace(label.begin(), label.end(), ' ', '0');
  if (NI < 10000) label[0] = 'I';
  return label;
}

std::string ItemLabelOf(Run& run, int item) {
  DirectFile& file = run.stores.itemLabels;
  const std::string number = ItemNumberLabel(item, run.settings.NI);
  if (run.settings.INUMB || !file.IsOpen()) return number;
  std::string label(file.RecordLength(), ' ');
  if (file.Read(item, label.data()) != kIoOk) {
    ReportMessage(run, " ITEM WORK FILE READ FAILURE AT ITEM RECORD =" + IntegerText(item));
    return number;
  }
  label.resize(TrimRight(label).size());
  return label;
}

}  // namespace vardento
