#include "files/response_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/small_run.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A blank label, a deleted person, a deleted item, a code without score and one of two digits.
struct ResponsesRun : WholeRun {
  std::vector<std::string> Rows(const std::vector<std::string>& words) {
    directory.Write("control.txt",
                    "NI=4\nITEM1=13\nNAMLEN=12\nXWIDE=2\nCODES=\"a b c \"\nNEWSCR=\" 0 212\"\n"
                    "TABLES=0\nIDFILE=*\n3\n*\nPDFILE=*\n3\n*\nRFILE=r.txt\n&END\n"
                    "one\ntwo\nthree\nfour, 4\nEND LABELS\n"
                    "Ann Bee     a b c c\n"
                    "            b a a z\n"
                    "Gone        c c c c\n"
                    "Dee         c b a\n"
                    "Eve         a b a c\n");
    std::vector<std::string> all{"NAME1=1"};
    all.insert(all.end(), words.begin(), words.end());
    EXPECT_EQ(Execute(all), kExitGood);
    return SmallRun::LinesOf(directory.Read("r.txt"));
  }
};

TEST(ResponseFile, FormsByHand) {
  const std::string pad(18, ' ');
  EXPECT_THAT(
      ResponsesRun().Rows({}),
      ElementsAre("Ann Bee     " + pad + " 0 2  12", "00002P      " + pad + " 2 0", " (DELETED)",
                  "Dee         " + pad + "12 2", "Eve         " + pad + " 0 2  12"));
  EXPECT_THAT(
      ResponsesRun().Rows({"CSV=Y"}),
      ElementsAre("\"PERSON\",\"one\",\"two\",\"three\",\"four, 4\"", "\"Ann Bee\",0,2,,12",
                  "\"00002P\",2,0,,", "\" (DELETED)\",,,,", "\"Dee\",12,2,,", "\"Eve\",0,2,,12"));
  EXPECT_THAT(ResponsesRun().Rows({"CSV=T", "HLINES=N"}),
              ElementsAre("\"Ann Bee\"\t0\t2\t\t12", "\"00002P\"\t2\t0\t\t",
                          "\" (DELETED)\"\t\t\t\t", "\"Dee\"\t12\t2\t\t", "\"Eve\"\t0\t2\t\t12"));
}

// The same form once the run is over, by the statuses of then.
TEST(ResponseFile, CanBeWrittenAgain) {
  ResponsesRun whole;
  const std::vector<std::string> before = whole.Rows({});
  const RunArrays& arrays = whole.run.arrays;
  WriteResponseFile(whole.run, "r.txt", arrays.PersonStatus, arrays.ItemStatus);
  EXPECT_EQ(SmallRun::LinesOf(whole.directory.Read("r.txt")), before);
  arrays.PersonStatus[1] = Status::LostLow;
  WriteResponseFile(whole.run, "r.txt", arrays.PersonStatus, arrays.ItemStatus);
  EXPECT_EQ(SmallRun::LinesOf(whole.directory.Read("r.txt")).at(0), " (OMITTED)");
}

// Lines are as long as they must be, and the file gives the estimates of the data it was made from.
TEST(ResponseFile, ComesBackAsData) {
  const Matrix data = Simulate(40, 300, 2, 3);
  WholeRun first;
  RunData(first, data, "CODES=012\nNEWSCR=021\nRFILE=r.txt");
  const std::string text = first.directory.Read("r.txt");
  EXPECT_GT(SmallRun::LinesOf(text).at(2).size(), 300U);
  WholeRun second;
  second.directory.Write("control.txt",
                         "DATA=data.txt\nNAME1=1\nNAMLEN=30\nITEM1=31\nINUMB=Y\nNI=300\n"
                         "CODES=012\n&END\n");
  second.directory.Write("data.txt", text);
  ASSERT_EQ(second.Execute(kTight), kExitGood);
  EXPECT_EQ(EstimatesOf(second).items.measure, EstimatesOf(first).items.measure);
  EXPECT_EQ(EstimatesOf(second).persons.score, EstimatesOf(first).persons.score);
}

// It is there for the user to see why nobody could be measured.
TEST(ResponseFile, IsWrittenBeforeTheEstimation) {
  WholeRun whole;
  const Matrix data{"11", "11"};
  whole.directory.Write("control.txt", ControlText(data, "CODES=01\nRFILE=r.txt\nXFILE=x.txt"));
  whole.directory.Write("data.txt", DataText(data));
  testing::internal::CaptureStderr();
  EXPECT_EQ(whole.Execute(), kExitBad);
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              HasSubstr("No Non-Extreme Persons or Items, see RFILE="));
  EXPECT_EQ(whole.directory.Read("r.txt"),
            "P1001" + std::string(25, ' ') + "11\nP1002" + std::string(25, ' ') + "11\n");
  EXPECT_FALSE(whole.directory.Exists("x.txt"));
}

// At that point lists that the estimation needs have not been read: they stay. So does a list of
// Tables, which is read behind all files.
TEST(ResponseFile, TakesTheLineOfNoList) {
  for (const char* const list : {"IAFILE", "PAFILE", "SAFILE", "PWEIGHT", "IWEIGHT", "TFILE"}) {
    for (const char* const file : {"RFILE", "XFILE"}) {
      SCOPED_TRACE(std::string(list) + " " + file);
      WholeRun whole;
      const Matrix data = Simulate(20, 4, 1, 2);
      whole.directory.Write(
          "control.txt", ControlText(data, std::string("CODES=01\n") + list + "=list.txt\n" + file +
                                               "=./list.txt"));
      whole.directory.Write("data.txt", DataText(data));
      whole.directory.Write("list.txt", "1 1\n");
      testing::internal::CaptureStderr();
      EXPECT_EQ(whole.Execute(), kExitBad);
      EXPECT_THAT(testing::internal::GetCapturedStderr(),
                  HasSubstr(std::string(file) + "=./list.txt\nFile exists"));
      EXPECT_EQ(whole.directory.Read("list.txt"), "1 1\n");
      EXPECT_TRUE(whole.run.complete);
    }
  }
}

}  // namespace
}  // namespace vardento::test
