#include "data/work_files.h"

#include <errno.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/data_run.h"
#include "platform/file.h"

namespace vardento::test {
namespace {

using Row = std::vector<std::uint8_t>;

Row RowOf(const std::uint8_t* row, int NI) { return {row, row + NI}; }

// Persons enough for several windows of the files.
constexpr int kPersons = 5000;

std::uint8_t ScoreOf(int person, int item) {
  return static_cast<std::uint8_t>((person * 7 + item) % 5);
}

TEST(WorkFiles, GiveTheSameRowsAndRecordsWithAndWithoutMemory) {
  for (const int refuseFrom : {0, 1, 2}) {  // no store refused, both, the matrix alone
    for (const int NI : {1, 33}) {
      SCOPED_TRACE(testing::Message() << "refused from " << refuseFrom << ", NI " << NI);
      DataRun data("", NI);
      vardento::Run& run = data.run;
      run.DraftSettings().NAMLEN = 4;
      run.NPERS = kPersons;
      OpenWorkFiles(run);
      for (int p = 1; p <= kPersons; ++p) {
        Row row;
        for (int i = 1; i <= NI; ++i) row.push_back(ScoreOf(p, i));
        WriteScoredRow(run, p, row.data());
        WritePersonName(run, p, "P" + std::to_string(p));
      }
      run.memory = MemoryBudget();
      run.memory.RefuseRequest(refuseFrom);
      AllocateStores(run);
      EXPECT_EQ(run.stores.personWork.IsMirrored(), refuseFrom != 1);
      EXPECT_EQ(run.stores.scoredRows.IsMirrored(), refuseFrom == 0);

      for (int p = 1; p <= kPersons; ++p) WritePersonScores(run, p, {1, 2, 3});
      for (int p = kPersons; p >= 1; p -= 3) {
        PersonWorkRecord record;
        record.score = static_cast<float>(p);
        record.displacement = -1;
        WritePersonWork(run, p, record);
      }
      for (int p = 1; p <= kPersons; ++p) {
        ASSERT_EQ(RowOf(FillScoredRow(run, p), NI)[0], ScoreOf(p, 1));
      }
      const Row changed(static_cast<std::size_t>(NI), 255);
      WriteScoredRow(run, 2, changed.data());
      for (int p = 1; p <= kPersons; p += 97) {
        const Row row = RowOf(ReadScoredRow(run, p), NI);
        ASSERT_EQ(row.back(), ScoreOf(p, NI)) << p;
      }
      EXPECT_EQ(RowOf(ReadScoredRow(run, 2), NI), changed);
      EXPECT_EQ(RowOf(FillScoredRow(run, 2), NI), changed);  // the file has it too
      EXPECT_EQ(ReadPersonWork(run, kPersons - 3).score, kPersons - 3);
      EXPECT_EQ(ReadPersonWork(run, kPersons - 3).displacement, -1);
      EXPECT_EQ(ReadPersonScores(run, kPersons - 1).correlation, 3);
      EXPECT_EQ(ReadPersonName(run, 17), "P17 ");
      // With the store there, the person work file is left alone.
      PersonWorkRecord unused;
      EXPECT_EQ(run.stores.personWork.File().Read(1, &unused) == 0, refuseFrom == 1);
    }
  }
}

TEST(WorkFiles, ReadFailuresNameFileAndPerson) {
  struct Case {
    void (*read)(vardento::Run& run);
    const char* message;
    const char* file;
  };
  const Case cases[] = {
      {[](vardento::Run& run) { ReadPersonName(run, 5); },
       " PERSON NAME FILE READ FAILURE AT PERSON RECORD =5", "PERSON NAME FILE"},
      {[](vardento::Run& run) { ReadCodedRow(run, 5, run.arrays.ScoredRow.Data()); },
       " PERSON CODES FILE READ FAILURE AT PERSON RECORD =5", "PERSON CODES FILE"},
      {[](vardento::Run& run) { ReadScoredRow(run, 5); },
       " PERSON SCORES FILE READ FAILURE AT PERSON RECORD =5", "PERSON SCORED FILE"},
      {[](vardento::Run& run) { ReadPersonWork(run, 5); },
       " PERSON WORK FILE READ FAILURE AT PERSON RECORD =5", "PERSON WORK FILE"},
  };
  for (const Case& c : cases) {
    DataRun data("", 3);
    data.settings.NAMLEN = 2;
    OpenWorkFiles(data.run);  // nothing written
    EXPECT_THROW(c.read(data.run), RunEnded);
    ASSERT_GE(data.console.lines.size(), 2U);
    EXPECT_EQ(data.console.lines[0], c.message);
    EXPECT_EQ(data.console.lines[1], c.file);
    EXPECT_EQ(data.run.RunIoStatus, -1);
  }
}

// The rows of a small run are written last of all: that the disk is full then is no fault of
// reading.
TEST(WorkFiles, TellAFullDiskAsAFailedWrite) {
  DataRun data("", 3);
  data.settings.NAMLEN = 2;
  data.run.NPERS = 1;
  OpenWorkFiles(data.run);
  WriteCodedRow(data.run, 1, data.run.arrays.ScoredRow.Data());
  FailFileOperation(1, ENOSPC);
  EXPECT_THROW(FlushPersonFiles(data.run), RunEnded);
  FailFileOperation(0, 0);
  EXPECT_THAT(data.console.lines,
              testing::ElementsAre(" PERSON CODES FILE WRITE FAILURE AT PERSON RECORD =1",
                                   "PERSON CODES FILE", "Not Enough Disk Space"));
}

}  // namespace
}  // namespace vardento::test
