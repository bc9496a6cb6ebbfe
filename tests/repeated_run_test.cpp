// A run that is measured more than once in one process: what an estimation finds leaves no trace in
// the next one, and other deletions give what a new run with them gives.

#include <gtest/gtest.h>

#include "files/measure_files.h"
#include "files/step_files.h"
#include "program/analysis_driver.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

// Anchors, weights, a pivot, a deleted step and out-of-range responses: all that an estimation
// could overwrite.
constexpr char kLines[] =
    "TITLE=Again\nCODES=0123\nPTBIS=Y\nCSV=Y\nUDECIM=4\nGROUPS=AAABBB\nSTKEEP=Y\nIAFILE=*\n6 "
    ".5\n*\n"
    "PAFILE=*\n7 1\n9 -.5\n*\nSAFILE=*\n1 2 .75\n*\nPWEIGHT=*\n3 2\n*\nPIVOT=*\n4 1\n*\n";

class RepeatedRun {
 public:
  explicit RepeatedRun(const std::string& lines) {
    const Matrix data = Simulate(60, 6, 3, 11);
    whole_.directory.Write("control.txt", ControlText(data, lines));
    whole_.directory.Write("data.txt", DataText(data));
    PrepareRun(whole_.run,
               {whole_.directory.NameOf("control.txt"), whole_.directory.NameOf("report.txt"),
                "BATCH=Y", "PFILE=p.txt", "IFILE=i.txt", "SFILE=s.txt", "ISFILE=is.txt"});
  }

  // The estimation's part of the report and all files.
  std::string Measure() {
    vardento::Run& run = whole_.run;
    EXPECT_EQ(run.report.Close(), kIoOk);
    EXPECT_EQ(run.report.Open(whole_.directory.NameOf("report.txt"), FileMode::Replace), kIoOk);
    run.report.LinesOnPage = 0;
    run.startUp.ReportFileName = "report.txt";  // the page heads show it
    testing::internal::CaptureStderr();
    MeasureRun(run);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(run.report.Close(), kIoOk);
    EXPECT_EQ(run.report.Open(whole_.directory.NameOf("rest.txt"), FileMode::Replace), kIoOk);
    std::string all = whole_.directory.Read("report.txt");
    WritePersonMeasureFile(run);
    WriteItemMeasureFile(run);
    WriteStepFile(run);
    WriteItemStepFile(run);
    for (const char* file : {"p.txt", "i.txt", "s.txt", "is.txt"}) {
      all += whole_.directory.Read(file);
    }
    return all;
  }

  GivenEntries& Given() { return whole_.run.given; }

 private:
  WholeRun whole_;
};

TEST(RepeatedRun, FindsTheSameAgain) {
  for (const std::string more : {"", "MODELS=S\n", "EDFILE=*\n4 2-3 2\n*\nMAKEKEY=Y\n", "CUTLO=-1\nCUTHI=1\nTARGET=Y\nMUCON=30\n"}) {
    SCOPED_TRACE(more);
    RepeatedRun run(kLines + more);
    const std::string first = run.Measure();
    EXPECT_NE(first.find("\";\""), std::string::npos) << "head lines of the files";
    EXPECT_EQ(run.Measure(), first);
  }
}

TEST(RepeatedRun, TakesOtherDeletions) {
  for (const std::string cut : {"", "CUTLO=1\nCUTHI=1\n"}) {
    RepeatedRun run(std::string(kLines) + cut + "PDFILE=*\n9\n*\nIDFILE=*\n2\n*\n");
    const std::string first = run.Measure();
    // Person 9, who is anchored, and item 2 come back, person 30 and item 5 go.
    run.Given().PersonStatus[9] = Status::Active;
    run.Given().ItemStatus[2] = Status::Active;
    run.Given().PersonStatus[30] = Status::Deleted;
    run.Given().ItemStatus[5] = Status::Deleted;
    const std::string second = run.Measure();
    EXPECT_NE(second, first);
    RepeatedRun fresh(std::string(kLines) + cut + "PDFILE=*\n30\n*\nIDFILE=*\n5\n*\n");
    EXPECT_EQ(second, fresh.Measure());
  }
}

}  // namespace
}  // namespace vardento::test
