// The way of test users: the item and step measures of one run anchor the next. What comes back
// must be what was written, whatever the units and the form of the files.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <sstream>

#include "measure/entry_values.h"
#include "report/small_run.h"
#include "support/estimates.h"
#include "support/joint_estimate.h"

namespace vardento::test {
namespace {

struct Trip {
  const char* name;
  const char* example;   // of examples/
  const char* settings;  // words of both runs
  // How far the rounding of the anchors may move a measure, in user units: half of the last digit
  // of the item measures and, with more than two categories, of the steps (always .01).
  double rounding;
};

void PrintTo(const Trip& trip, std::ostream* out) { *out << trip.name; }

std::vector<std::string> WordsOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

void RunExample(WholeRun& whole, const Trip& trip, const std::string& more) {
  std::filesystem::copy(VARDENTO_SOURCE_DIR "/examples/" + std::string(trip.example),
                        whole.directory.Path(), std::filesystem::copy_options::recursive);
  std::vector<std::string> words = WordsOf(trip.settings);
  words.insert(words.end(), kTight.begin(), kTight.end());
  for (const std::string& word : WordsOf(more)) words.push_back(word);
  ASSERT_EQ(whole.Execute(words), kExitGood) << whole.directory.Read("report.txt");
}

// Entry number and measure of every row of a measure file that isn't a comment.
std::vector<std::string> MeasuresIn(const WholeRun& whole, const char* name) {
  std::vector<std::string> rows;
  for (std::string line : SmallRun::LinesOf(whole.directory.Read(name))) {
    if (whole.run.settings.CSV == 'N') {
      if (line[0] != ';') rows.push_back(line.substr(0, 14));
      continue;
    }
    std::replace(line.begin(), line.end(), '\t', ',');
    const bool isRow = line.starts_with("\" \",");
    const std::size_t measure = line.find(',', 4);
    if (isRow) rows.push_back(line.substr(0, line.find(',', measure + 1)));
  }
  return rows;
}

class RoundTrip : public testing::TestWithParam<Trip> {
 protected:
  void SetUp() override {
    RunExample(first, GetParam(), "IFILE=i.txt SFILE=s.txt PFILE=p.txt");
    unit = std::fabs(first.run.settings.USCALE);
  }
  // Beside the rounding, either run may end this far from its solution; extreme measures further.
  double Near(StatusByte status) const {
    return GetParam().rounding + (IsExtreme(status) ? 4 : 2) * kSame * unit;
  }
  void ExpectPersonsNear(const WholeRun& second) const {
    const RunArrays& a = first.run.arrays;
    for (int n = 1; n <= first.run.NPERS; ++n) {
      EXPECT_NEAR(second.run.arrays.PersonMeasure[n], a.PersonMeasure[n], Near(a.PersonStatus[n]))
          << "person " << n;
    }
  }
  double unit = 1;
  WholeRun first;
};

TEST_P(RoundTrip, ItemsAndStepsComeBackAsTheyWereWritten) {
  WholeRun second;
  RunExample(second, GetParam(),
             "IAFILE=" + first.directory.NameOf("i.txt") +
                 " SAFILE=" + first.directory.NameOf("s.txt") + " IFILE=i.txt SFILE=s.txt");
  EXPECT_EQ(MeasuresIn(second, "i.txt"), MeasuresIn(first, "i.txt"));
  EXPECT_FALSE(MeasuresIn(second, "i.txt").empty());
  EXPECT_EQ(second.directory.Read("s.txt"), first.directory.Read("s.txt"));
  const RunArrays& a = second.run.arrays;
  for (int i = 1; i <= second.run.settings.NI; ++i) {
    EXPECT_EQ(a.ItemStatus[i], Status::Anchored) << "item " << i;
    EXPECT_NEAR(a.ItemDisplacement[i], 0, Near(a.ItemStatus[i])) << "item " << i;
  }
  ExpectPersonsNear(second);
}

TEST_P(RoundTrip, PersonsComeBackAndHoldTheItems) {
  WholeRun second;
  RunExample(second, GetParam(),
             "PAFILE=" + first.directory.NameOf("p.txt") + " PFILE=p.txt IFILE=i.txt");
  // Rows of extreme persons are comments: nothing holds these.
  const RunArrays& a = second.run.arrays;
  for (int n = 1; n <= first.run.NPERS; ++n) {
    const StatusByte before = first.run.arrays.PersonStatus[n];
    ASSERT_EQ(a.PersonStatus[n], before == Status::Active ? Status::Anchored : before);
  }
  EXPECT_EQ(MeasuresIn(second, "p.txt"), MeasuresIn(first, "p.txt"));
  for (int i = 1; i <= second.run.settings.NI; ++i) {
    EXPECT_NEAR(a.ItemMeasure[i], first.run.arrays.ItemMeasure[i], Near(a.ItemStatus[i]));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Examples, RoundTrip,
    testing::Values(
        Trip{"AsTheyAre_Conspiracy", "conspiracy-beliefs", "", .01},
        Trip{"AsTheyAre_MathExam", "math-exam", "", .5},
        Trip{"AsTheyAre_Attitudes", "student-attitudes", "", .01},
        Trip{"AsTheyAre_Forms", "two-forms", "", .005},
        Trip{"AsTheyAre_Aggression", "verbal-aggression", "", .01},
        Trip{"FixedColumns", "verbal-aggression", "CSV=N UMEAN=50 USCALE=10", .01},
        Trip{"FixedColumns_FullFields", "math-exam", "CSV=N UMEAN=0 USCALE=100 UDECIM=3", .0005},
        Trip{"Tabs_NegativeUnit", "conspiracy-beliefs", "CSV=T USCALE=-2 UDECIM=4", .00505},
        Trip{"FixedColumns_NegativeUnit", "math-exam", "CSV=N UMEAN=500 USCALE=-100 UDECIM=2",
             .005},
        Trip{"FourDecimals", "student-attitudes", "CSV=N UMEAN=0 UDECIM=4", .00505},
        Trip{"MeanOfPersons", "verbal-aggression", "UPMEAN=100 USCALE=20 UDECIM=1", .055},
        Trip{"ShortTest", "two-forms", "STBIAS=Y UMEAN=50 USCALE=10 CSV=T", .005},
        Trip{"OwnUnitsOfAnchors", "verbal-aggression", "UASCALE=5 USCALE=5", .01},
        Trip{"PartialCredit", "conspiracy-beliefs", "GROUPS=0 CSV=N USCALE=5 UMEAN=7", .01},
        Trip{"Succession", "verbal-aggression", "MODELS=S", .01},
        Trip{"SuccessionFromAbove", "student-attitudes", "MODELS=F USCALE=-3", .01},
        Trip{"MixedScales", "verbal-aggression",
             "GROUPS=AAAAAABBBBBBCCCCCCCC0000 MODELS=RRRRRRSSSSSSFFFFFFFFRSFR CSV=N", .01},
        Trip{"GapsClosed", "verbal-aggression", "NEWSCR=013 STKEEP=N GROUPS=0", .01},
        Trip{"GapsKept", "verbal-aggression", "NEWSCR=013 USCALE=2", .01}),
    [](const auto& parameter) { return std::string(parameter.param.name); });

// The first character of the error column in each row of a measure Table, by entry.
std::map<int, char> MarksIn(const std::string& report, const std::string& table) {
  std::map<int, char> marks;
  const std::size_t start = report.find("TABLE " + table);
  const std::size_t end = report.find("TABLE ", start + 1);
  for (const std::string& line : SmallRun::LinesOf(report.substr(start, end - start))) {
    if (line.size() > 40 && line[0] == '|' && line[6] != ' ' && isdigit(line[6])) {
      marks[std::stoi(line.substr(1, 6))] = line[29];
    }
  }
  return marks;
}

// With head lines the rows of extreme entries are comments: such entries stay free.
TEST(Anchors, ExtremeEntriesStayFreeAndTablesMarkTheOthers) {
  Matrix data = Simulate(80, 6, 2, 5);
  for (std::string& row : data) row += '2';
  data.push_back("2222222");
  for (const std::string form : {"CSV=N", "CSV=Y", "CSV=T"}) {
    SCOPED_TRACE(form);
    // A title that looks like an anchor is none.
    const std::string lines = "CODES=012\nTITLE=\"2 3 4\"\n" + form + "\n";
    WholeRun first, second;
    RunData(first, data, lines + "IFILE=i.txt\nSFILE=s.txt\nPFILE=p.txt");
    RunData(second, data,
            lines + "IAFILE=" + first.directory.NameOf("i.txt") +
                "\nSAFILE=" + first.directory.NameOf("s.txt") + "\nTFILE=*\n14.1\n18.1\n*");
    const RunArrays& a = second.run.arrays;
    EXPECT_EQ(a.ItemStatus[7], Status::ExtremeLow);
    EXPECT_EQ(a.PersonStatus[81], Status::ExtremeHigh);
    for (int n = 1; n <= 81; ++n) {
      EXPECT_NEAR(a.PersonMeasure[n], first.run.arrays.PersonMeasure[n], .01 + 4 * kSame);
    }
    const std::string report = second.directory.Read("report.txt");
    const std::map<int, char> items = MarksIn(report, "14.1");
    EXPECT_EQ(items.size(), 7U);
    for (const auto& [item, mark] : items) EXPECT_EQ(mark, item < 7 ? 'A' : ' ') << item;
    for (const auto& [person, mark] : MarksIn(report, "18.1")) EXPECT_EQ(mark, ' ') << person;
  }
}

// Anchors that the data gainsay: the others are estimated in their frame, and an anchor's
// displacement is what the data would add to it. It is found by one step along the log-odds, which
// bend a little.
TEST(Anchors, DisplacementsLeadToWhereTheDataAre) {
  constexpr double kBend = 0.05;
  constexpr double kOrigin = 10, kUnit = -2;
  const Matrix data = Simulate(150, 7, 2, 6);
  WholeRun whole;
  RunData(whole, data,
          "CODES=012\nUMEAN=10\nUSCALE=-2\nTFILE=*\n14.1\n*\nIAFILE=*\n2 8\n5 11.6\n*");
  const JointEstimate expected(
      data, {.codes = "012", .scores = {0, 1, 2}, .anchors = {{1, 1.0}, {4, -.8}}});
  for (int i = 1; i <= 7; ++i) {
    SCOPED_TRACE(i);
    const auto item = static_cast<std::size_t>(i) - 1;
    const EntryValues found = ReadEntryValues(whole.run, Facet::Items, i);
    EXPECT_NEAR(found.measure, kOrigin + kUnit * expected.items[item], 2 * kSame);
    const double added = kUnit * (expected.FindItem(item) - expected.items[item]);
    EXPECT_NEAR(found.displacement, added, 2 * kSame + kBend * std::fabs(added));
    EXPECT_EQ(std::fabs(added) > .5, i == 2 || i == 5) << "the anchors are to be far off";
  }
  for (int n = 1; n <= 150; ++n) {
    const auto person = static_cast<std::size_t>(n) - 1;
    const double near = expected.isExtreme[person] ? 8 * kSame : 2 * kSame;
    EXPECT_NEAR(MeasureOf(whole.run, Facet::Persons, n), kOrigin + kUnit * expected.persons[person],
                near);
  }
  EXPECT_NE(whole.directory.Read("report.txt").find("|DISPLACE|"), std::string::npos);
}

TEST(Anchors, DisplacedPersons) {
  const Matrix data = Simulate(40, 10, 1, 8);
  std::string items;
  std::map<std::size_t, double> anchors;
  for (std::size_t i = 0; i < 10; ++i) {
    anchors[i] = .25 * static_cast<double>(i) - 1;
    items += std::to_string(i + 1) + " " + std::to_string(anchors[i]) + "\n";
  }
  const JointEstimate expected(data, {.anchors = anchors});
  WholeRun whole;
  RunData(whole, data, "CODES=01\nIAFILE=*\n" + items + "*\nPAFILE=*\n3 .2\n7-9 -.1\n*");
  for (int n = 1; n <= 40; ++n) {
    const auto person = static_cast<std::size_t>(n) - 1;
    if (expected.isExtreme[person]) continue;
    const bool anchored = n == 3 || (n >= 7 && n <= 9);
    const double held = n == 3 ? .2 : anchored ? -.1 : expected.persons[person];
    EXPECT_NEAR(whole.run.arrays.PersonMeasure[n], held, kSame);
    const double added = expected.persons[person] - held;
    EXPECT_NEAR(ReadEntryValues(whole.run, Facet::Persons, n).displacement, added,
                2 * kSame + .05 * std::fabs(added))
        << "person " << n;
  }
}

}  // namespace
}  // namespace vardento::test
