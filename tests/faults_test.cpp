// Memory that is refused and system calls that fail, one after the other over a whole run: the run
// ends in words or goes on with the same results, and what it calls good is good.

#include <errno.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/file.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;

constexpr char kLines[] =
    "CODES=012\nTITLE=Faults\nTABLES=00100100000000000100\nPFILE=p.txt\nIFILE=i.txt";

struct Result {
  int exit = -1;
  std::string report, persons, items;
  std::vector<std::string> workFiles;
};

// One run in the test's directory, always the same so that the page headings are.
class Faults : public testing::Test {
 protected:
  void SetUp() override {
    const Matrix data = Simulate(25, 5, 2, 17);
    directory.Write("control.txt", ControlText(data, kLines));
    directory.Write("data.txt", DataText(data));
    std::filesystem::create_directories(directory.NameOf("tmp"));
    if (const char* temporary = getenv("TMPDIR")) temporary_ = temporary;
    setenv("TMPDIR", directory.NameOf("tmp").c_str(), 1);
  }
  void TearDown() override {
    FailFileOperation(0, 0);
    std::filesystem::current_path(start_);
    temporary_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", temporary_.c_str(), 1);
  }

  // Runs with the n-th request for memory and all later ones refused, or with the n-th file
  // operation failing; 0 for none.
  Result Execute(int refusedRequest, int failedOperation, int error = ENOSPC) {
    for (const char* name : {"report.txt", "p.txt", "i.txt"}) {
      std::filesystem::remove(directory.NameOf(name));
    }
    Result result;
    {
      RecordingConsole console;
      vardento::Run run(console);  // testing::Test has a Run of its own
      run.RunStamp = kRunStamp;
      run.memory.RefuseRequest(refusedRequest);
      FailFileOperation(failedOperation, error);
      result.exit = MainRun(
          run, {directory.NameOf("control.txt"), directory.NameOf("report.txt"), "BATCH=Y"});
      FailFileOperation(0, 0);
    }
    result.report = directory.Read("report.txt");
    result.persons = directory.Read("p.txt");
    result.items = directory.Read("i.txt");
    for (const std::string& name : directory.Files()) {
      if (name.starts_with("tmp/")) result.workFiles.push_back(name);
    }
    return result;
  }
  void ExpectSound(const Result& result, const Result& good) {
    EXPECT_TRUE(result.report == good.report) << "the report differs";
    EXPECT_TRUE(result.persons == good.persons) << "PFILE= differs";
    EXPECT_TRUE(result.items == good.items) << "IFILE= differs";
  }

  TempDirectory directory;
  std::filesystem::path start_ = std::filesystem::current_path();
  std::string temporary_;
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
      EXPECT_THAT(result.report, HasSubstr(" bytes of memory not available."));
      ++refused;
    }
  }
  EXPECT_GT(refused, 5) << "the blocks that a run can't do without";
  EXPECT_GT(managed, 2) << "the stores that it can";
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
