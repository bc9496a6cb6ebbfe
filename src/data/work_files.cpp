#include "data/work_files.h"

#include <algorithm>
#include <cstring>

#include "platform/io_status.h"
#include "run/allocate_blocks.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr std::size_t kPersonRecord = WorkStores::kPersonRecord;
constexpr std::size_t kMatrixSpare = 32;

constexpr std::string_view kNameFile = "PERSON NAME FILE";
constexpr std::string_view kCodesFile = "PERSON CODES FILE";
constexpr std::string_view kScoredFile = "PERSON SCORED FILE";
constexpr std::string_view kWorkFile = "PERSON WORK FILE";

constexpr std::string_view kNameWriteFailure = " PERSON NAME FILE WRITE FAILURE AT PERSON RECORD =";
constexpr std::string_view kCodesWriteFailure =
    " PERSON CODES FILE WRITE FAILURE AT PERSON RECORD =";
constexpr std::string_view kScoredWriteFailure =
    " PERSON SCORED FILE WRITE FAILURE AT PERSON RECORD =";

void OpenPersonFile(Run& run, DirectFile& file, std::string_view stem, int recordLength,
                    std::string_view nameInMessages) {
  file.Close();
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

void ReadScoredFile(Run& run, int person) {
  const int status = run.stores.scoredRows.Read(person, run.arrays.ScoredRow.Data());
  CheckRecord(run, status, " PERSON SCORES FILE READ FAILURE AT PERSON RECORD =", person,
              kScoredFile, 'R');
}

// The person's row of the matrix, or null when there is none.
std::uint8_t* MatrixRow(const Run& run, int person) {
  if (!run.stores.responseMatrix) return nullptr;
  return run.stores.responseMatrix.Data() +
         static_cast<std::size_t>(person - 1) * static_cast<std::size_t>(run.settings.NI);
}

unsigned char* StoredWork(const Run& run, int person) {
  return run.stores.workStore.Data() + static_cast<std::size_t>(person - 1) * kPersonRecord;
}

void WriteWorkFile(Run& run, int person, const unsigned char* record) {
  const int status = run.stores.personWork.Write(person, record);
  CheckRecord(run, status, " PERSON WORK FILE WRITE FAILURE AT PERSON RECORD =", person, kWorkFile,
              'W');
}

void WriteRecord(Run& run, int person, const void* record, std::size_t size) {
  if (run.stores.workStore) {
    std::memcpy(StoredWork(run, person), record, size);
    return;
  }
  unsigned char bytes[kPersonRecord] = {};
  std::memcpy(bytes, record, size);
  WriteWorkFile(run, person, bytes);
}

void ReadRecord(Run& run, int person, void* record, std::size_t size) {
  if (run.stores.workStore) {
    std::memcpy(record, StoredWork(run, person), size);
    return;
  }
  unsigned char bytes[kPersonRecord];
  const int status = run.stores.personWork.Read(person, bytes);
  CheckRecord(run, status, " PERSON WORK FILE READ FAILURE AT PERSON RECORD =", person, kWorkFile,
              'R');
  std::memcpy(record, bytes, size);
}

void GiveBackWorkStore(Run& run) {
  if (!run.stores.workStore) return;
  for (int p = 1; p <= run.NPERS; ++p) WriteWorkFile(run, p, StoredWork(run, p));
  run.stores.workStore.Free();
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
  OpenPersonFile(run, stores.personWork, "ZQQ", static_cast<int>(kPersonRecord),
                 " PERSON WORK RECORD: ZQQ");
}

void AllocateStores(Run& run) {
  const auto persons = static_cast<std::size_t>(run.NPERS);
  const auto items = static_cast<std::size_t>(run.settings.NI);
  run.stores.responseMatrix.Free();
  run.stores.workStore.Allocate(run.memory, persons * kPersonRecord);
  run.stores.responseMatrix.Allocate(run.memory, persons * items + kMatrixSpare);
}

bool TryTakeBlock(Run& run, const BlockPlan& plan, MemoryBlock& block) {
  if (plan.Allocate(run.memory, block)) return true;
  // The scored rows are in their file already.
  run.stores.responseMatrix.Free();
  if (plan.Allocate(run.memory, block)) return true;
  GiveBackWorkStore(run);
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
  CheckRecord(run, stores.scoredRows.Flush(), kScoredWriteFailure, last, kScoredFile, 'W');
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
  std::uint8_t* stored = MatrixRow(run, person);
  if (stored && stored != row) std::memcpy(stored, row, static_cast<std::size_t>(run.settings.NI));
}

const std::uint8_t* ReadScoredRow(Run& run, int person) {
  if (const std::uint8_t* stored = MatrixRow(run, person)) return stored;
  ReadScoredFile(run, person);
  return run.arrays.ScoredRow.Data();
}

const std::uint8_t* FillScoredRow(Run& run, int person) {
  ReadScoredFile(run, person);
  const std::uint8_t* row = run.arrays.ScoredRow.Data();
  if (std::uint8_t* stored = MatrixRow(run, person)) {
    std::memcpy(stored, row, static_cast<std::size_t>(run.settings.NI));
  }
  return row;
}

void WritePersonScores(Run& run, int person, const PersonScores& record) {
  WriteRecord(run, person, &record, sizeof record);
}

PersonScores ReadPersonScores(Run& run, int person) {
  PersonScores record;
  ReadRecord(run, person, &record, sizeof record);
  return record;
}

void WritePersonWork(Run& run, int person, const PersonWorkRecord& record) {
  WriteRecord(run, person, &record, sizeof record);
}

PersonWorkRecord ReadPersonWork(Run& run, int person) {
  PersonWorkRecord record;
  ReadRecord(run, person, &record, sizeof record);
  return record;
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
  if (run.settings.INUMB == 'Y' || !file.IsOpen()) return number;
  std::string label(file.RecordLength(), ' ');
  if (file.Read(item, label.data()) != kIoOk) {
    ReportMessage(run, " ITEM WORK FILE READ FAILURE AT ITEM RECORD =" + IntegerText(item));
    return number;
  }
  label.resize(TrimRight(label).size());
  return label;
}

}  // namespace vardento
