// Whole runs on data that are changed on their way in: linked test forms, keys made from the data.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/small_run.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

constexpr char kExample[] = VARDENTO_SOURCE_DIR "/examples/two-forms/";

// The 20 items of the example's students, put together by the words of its README.
Matrix JoinedForms() {
  Matrix data;
  for (const std::string& line :
       SmallRun::LinesOf(TempDirectory::ReadFile(std::string(kExample) + "form-a.txt"))) {
    const std::string answers = line.substr(5);
    data.push_back(answers.substr(0, 4) + answers.substr(6, 4) + answers.substr(4, 2) +
                   answers.substr(10, 2) + std::string(8, ' '));
  }
  const auto lines =
      SmallRun::LinesOf(TempDirectory::ReadFile(std::string(kExample) + "form-b.txt"));
  for (std::size_t k = 1; k < lines.size(); k += 2) data.push_back(std::string(8, ' ') + lines[k]);
  return data;
}

TEST(TwoForms, AreOneTestOnOneScale) {
  WholeRun whole;
  std::filesystem::copy(kExample, whole.directory.Path(), std::filesystem::copy_options::recursive);
  ASSERT_EQ(whole.Execute(kTight), kExitGood) << whole.directory.Read("report.txt");
  const AllEstimates joined = Estimate(JoinedForms(), "CODES=01");
  const RunArrays& a = whole.run.arrays;
  ASSERT_EQ(whole.run.NPERS, 800);
  std::vector<double> items, persons;
  for (int i = 1; i <= 20; ++i) items.push_back(a.ItemMeasure[i]);
  for (int n = 1; n <= 800; ++n) persons.push_back(a.PersonMeasure[n]);
  EXPECT_EQ(items, joined.items.measure);
  EXPECT_EQ(persons, joined.persons.measure);
  EXPECT_THAT(whole.directory.Read("persons.csv"), testing::HasSubstr("\"2400 B\""));
}

// 90 persons' answers to 6 questions with four choices; the right one is the most frequent.
TEST(MadeKeys, ScoreAsTheSameKeyWouldThatIsGiven) {
  const Matrix right = Simulate(90, 6, 1, 99);
  const std::string key = "BADCAB";
  std::string data;
  for (std::size_t n = 0; n < right.size(); ++n) {
    data += "P" + std::to_string(101 + n) + " ";
    for (std::size_t i = 0; i < 6; ++i) {
      data += right[n][i] == ' ' ? 'x' : right[n][i] == '1' ? key[i] : "ABCD"[(n + i) % 4];
    }
    data += '\n';
  }
  std::string files[2];
  for (const bool made : {false, true}) {
    WholeRun whole;
    whole.directory.Write("data.txt", data);
    whole.directory.Write("control.txt",
                          "TITLE=Keys\nDATA=data.txt\nNI=6\nITEM1=6\nNAMLEN=4\nINUMB=Y\n"
                          "CODES=ABCD\nHLINES=N\nIFILE=i.csv\nPFILE=p.csv\n" +
                              (made ? "MAKEKEY=Y" : "KEY1=" + key) + "\n&END\n");
    ASSERT_EQ(whole.Execute(), kExitGood);
    files[made] = whole.directory.Read("i.csv") + whole.directory.Read("p.csv");
    const std::string report = whole.directory.Read("report.txt");
    EXPECT_EQ(report.find("; MAKEKEY=Y constructed key follows:\n" + key + "\n",
                          report.find("TABLE 0.3")) != std::string::npos,
              made);
  }
  EXPECT_EQ(files[0], files[1]);
}

}  // namespace
}  // namespace vardento::test
