// Memory that is refused and system calls that fail, one after the other over a whole run: the run
// ends in words or goes on with the same results, and what it calls good is good.

#include <errno.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/file.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

// Data in forms, edits, lists and every file that can be written.
constexpr char kLines[] =
    "CODES=012\nTITLE=Faults\nTABLES=0010010000000000000100110000011\nINUMB=N\n"
    "DIF=$S1W1\nDPF=$S1W1\n"
    "MFORMS=*\nD=data.txt\nP1-6=1-6\nI1-5=8\n*\nEDFILE=*\n1 1 0\n*\nPDFILE=*\n2\n*\n"
    "IAFILE=*\n1 "
    "0\n*\nPFILE=p.txt\nIFILE=i.txt\nSFILE=s.txt\nISFILE=is.txt\nRFILE=r.txt\nXFILE=x.txt";
constexpr const char* kResults[] = {"report.txt", "p.txt", "i.txt", "s.txt",
                                    "is.txt",     "r.txt", "x.txt"};

struct Result {
  int exit = -1;
  std::string said;
  std::vector<std::string> files, workFiles;
};

// One run in the test's directory, always the same so that the page headings are.
class Faults : public testing::Test {
 protected:
  void SetUp() override {
    const Matrix data = Simulate(25, 5, 2, 17);
    directory.Write("control.txt", ControlText(data, kLines) + "A\nB\nC\nD\nE\nEND LABELS\n");
    directory.Write("data.txt", DataText(data));
  }
  void TearDown() override { FailFileOperation(0, 0); }

  // Runs with the n-th request for memory and all later ones refused, or with the n-th file
  // operation failing; 0 for none.
  Result Execute(int refusedRequest, int failedOperation, int error = ENOSPC) {
    for (const char* name : kResults) std::filesystem::remove(directory.NameOf(name));
    Result result;
    {
      RecordingConsole console;
      vardento::Run run(console);  // testing::Test has a Run of its own
      run.RunStamp = kRunStamp;
      run.memory.RefuseRequest(refusedRequest);
      FailFileOperation(failedOperation, error);
      testing::internal::CaptureStderr();
      result.exit = MainRun(
          run, {directory.NameOf("control.txt"), directory.NameOf("report.txt"), "BATCH=Y"});
      FailFileOperation(0, 0);
      result.said = testing::internal::GetCapturedStderr();
    }
    for (const char* name : kResults) result.files.push_back(directory.Read(name));
    for (const std::string& name : directory.Files()) {
      if (name.starts_with("tmp/")) result.workFiles.push_back(name);
    }
    return result;
  }
  void ExpectSound(const Result& result, const Result& good) {
    for (std::size_t i = 0; i < good.files.size(); ++i) {
      EXPECT_TRUE(result.files[i] == good.files[i]) << kResults[i] << " differs";
    }
  }

  TempDirectory directory;
  OwnPlace place{directory};
};

TEST_F(Faults, WithoutMemoryARunEndsInWordsOrGivesTheSameResults) {
  const Result good = Execute(0, 0);
  ASSERT_EQ(good.exit, kExitGood);
  int refused = 0, managed = 0;
  // Each further request that is granted lets the run come further, until none is refused.
  for (int n = 1; n <= 40; ++n) {
    SCOPED_TRACE(n);
    const Result result = Execute(n, 0);
    EXPECT_EQ(result.workFiles, std::vector<std::string>{});
    if (result.exit == kExitGood) {
      ExpectSound(result, good);
      ++managed;
    } else {
      EXPECT_THAT(result.files[0], AnyOf(HasSubstr(" bytes of memory not available"),
                                         HasSubstr("Insufficient Memory: Principal Components"),
                                         HasSubstr("NOT ENOUGH MEMORY FOR TABLE"),
                                         HasSubstr("is.txt\nCannot allocate memory")));
      ++refused;
    }
  }
  EXPECT_GT(refused, 5) << "the blocks that a run can't do without";
  EXPECT_GT(managed, 2) << "the stores that it can";
}

// A limit from next to nothing upwards. Each gives the whole run, the run with the persons that
// fit, or the memory message in a finished report.
TEST(Memory, EveryLimitGivesAWholeRunFewerPersonsOrTheMessage) {
  constexpr int kPersons = 150;
  const Matrix data = Simulate(kPersons, 6, 2, 21);
  const std::string lines = "CODES=012\nPTBIS=Y\nTABLES=00100100010000000100\nPWEIGHT=*\n2 2\n*";
  WholeRun all;
  RunData(all, data, lines);
  const AllEstimates expected = EstimatesOf(all);
  int whole = 0, reduced = 0, ended = 0;
  for (std::size_t limit = 500; whole < 5; limit += limit / 40) {
    SCOPED_TRACE(limit);
    ASSERT_LT(limit, 100'000U) << "more than all arrays of the run";
    WholeRun tight;
    tight.run.memory.SetLimit(limit);
    tight.directory.Write("control.txt", ControlText(data, lines));
    tight.directory.Write("data.txt", DataText(data));
    testing::internal::CaptureStderr();
    const int exit = tight.Execute(kTight);
    testing::internal::GetCapturedStderr();
    const std::string report = tight.directory.Read("report.txt");
    EXPECT_THAT(report, HasSubstr("TABLE 0.3"));
    if (exit != kExitGood) {
      // Of very few persons nobody may be left to measure.
      EXPECT_THAT(report, AnyOf(HasSubstr(" bytes of memory not available. NOT ENOUGH MEMORY FOR"),
                                HasSubstr("No Non-Extreme Persons")));
      ++ended;
    } else if (tight.run.NPERS < kPersons) {
      const std::string kept = std::to_string(tight.run.NPERS);
      EXPECT_THAT(report, AnyOf(HasSubstr(kept + " OF     150 PERSONS PROCESSED DUE TO MEMORY"),
                                HasSubstr("PERSONS SKIPPED AFTER " + kept)));
      ++reduced;
    } else {
      EXPECT_EQ(EstimatesOf(tight).persons.measure, expected.persons.measure);
      EXPECT_EQ(EstimatesOf(tight).items.infit, expected.items.infit);
      // Without room for them there are other correlations, and the head says so.
      const bool same = EstimatesOf(tight).items.correlation == expected.items.correlation;
      EXPECT_EQ(same, tight.run.inForce.pointBiserial);
      EXPECT_THAT(report, HasSubstr(same ? "|PTBIS|" : "|SCORE|"));
      ++whole;
    }
  }
  EXPECT_GT(ended, 5);
  EXPECT_GT(reduced, 5);
}

class FailingCalls : public Faults, public testing::WithParamInterface<int> {};

TEST_P(FailingCalls, NeverPassForAGoodRun) {
  const Result good = Execute(0, 0);
  ASSERT_EQ(good.exit, kExitGood);
  int failed = 0, n = 1, unnoticed = 0;
  // Until the operation that would fail lies behind the run's end.
  for (; unnoticed < 20 && n < 3000; ++n) {
    SCOPED_TRACE(n);
    const Result result = Execute(0, n, GetParam());
    EXPECT_EQ(result.workFiles, std::vector<std::string>{});
    if (result.exit == kExitGood) {
      ExpectSound(result, good);
      ++unnoticed;
    } else {
      EXPECT_THAT(result.said,
                  HasSubstr(GetParam() == ENOSPC ? "Not Enough Disk Space" : "Input/output error"));
      ++failed;
      unnoticed = 0;
    }
  }
  EXPECT_GT(failed, 30);
  EXPECT_LT(n, 3000);
}

INSTANTIATE_TEST_SUITE_P(Errors, FailingCalls, testing::Values(ENOSPC, EIO),
                         [](const auto& parameter) {
                           return parameter.param == ENOSPC ? "DiskFull" : "DeviceFault";
                         });

}  // namespace
}  // namespace vardento::test
