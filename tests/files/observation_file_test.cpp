#include "files/observation_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "report/small_run.h"
#include "support/csv.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Two persons and two items of two categories.
struct PairRun : SmallRun {
  PairRun() : SmallRun(2, 2) {
    ControlSettings& s = run.DraftSettings();
    s.CODES = "no yes";
    s.CODES_LENGTH = 6;
    s.XWIDE = 3;
    s.CATEGS = 2;
    s.ITEM_LABEL = "Question";
    SetMeasures({1, -13}, {1, 17});
    SetResponses(1, "11");
    SetResponses(2, "1 ");
    for (int n = 1; n <= 2; ++n) {
      const std::uint8_t row[] = {2, static_cast<std::uint8_t>(n == 1 ? 2 : 0)};
      WriteCodedRow(run, n, row);
    }
  }
  void SetMeasures(const std::vector<float>& persons, const std::vector<float>& items) {
    std::ranges::copy(persons, run.arrays.PersonMeasure.begin());
    std::ranges::copy(items, run.arrays.ItemMeasure.begin());
  }
  std::vector<std::string> Lines(const ObservationFields& fields = {}) {
    WriteObservationFile(run, directory.NameOf("x.txt"), fields);
    return LinesOf(directory.Read("x.txt"));
  }
};

// d = 0: p = 1/2, ln p = -.693. d = -14 and -16: z is the root of the odds against, e^7 = 1096.633
// and e^8 = 2980.958, whose high digits are lost where columns bind.
TEST(ObservationFile, FormsByHand) {
  PairRun small;
  EXPECT_THAT(
      small.Lines(),
      ElementsAre("; RESIDUAL FILE FOR Fruit  " + std::string(kRunStamp),
                  " PERSON Questi OBS ORD EXPECT VARIAN ZSCORE RESIDL MEASRE LOG(PROB) CODE",
                  "      1      1   1   1   .500   .250  1.000   .500    .00     -.693 yes",
                  "      1      2   1   1   .000   .000980.958  1.000 -16.00   -16.000 yes",
                  "      2      1   1   1   .000   .000096.633  1.000 -14.00   -14.000 yes"));
  EXPECT_THAT(small.console.lines, testing::Contains(" Writing XFILE= of observations ..."));
  EXPECT_THAT(small.console.menuEntries,
              ElementsAre("Edit Residuals XFILE=" + small.directory.NameOf("x.txt")));

  ObservationFields fields{.chosen = "x  x  x   xx  x", .person = 2, .item = 2};
  small.run.DraftSettings().CSV = 'Y';
  EXPECT_THAT(small.Lines(fields),
              ElementsAre("\"RESIDUAL FILE FOR\",\"Fruit\",\"" + std::string(kRunStamp) + "\"",
                          "\"PERSON\",\"ORDERED\",\"ZSCORE\",\"CODE\"",
                          "\"1\",\"1\",\"2980.958\",\"yes\"", "\"2\",\"-1\",\".000\",\"\""));
  EXPECT_THAT(small.console.lines,
              testing::Contains(" Writing XFILE= of observations for Question 2 ..."));
  fields.chosen = " x x  x  x    x";
  small.run.DraftSettings().CSV = 'T';
  small.run.DraftSettings().HLINES = false;
  EXPECT_THAT(small.Lines(fields), ElementsAre("\"2\"\t\"1\"\t\"2980.958\"\t\"-16.000\""));
  fields.chosen = "";
  EXPECT_THAT(small.Lines(fields), ElementsAre("", "", "")) << "nothing chosen, nothing shown";
}

// A response without any probability left has a finite logarithm and residual.
TEST(ObservationFile, CertainResponsesStayFinite) {
  PairRun small;
  small.SetMeasures({60, -60}, {0, 0});
  SmallRun& base = small;
  base.SetResponses(1, "01");
  base.SetResponses(2, "01");
  small.run.DraftSettings().CSV = 'Y';
  const auto lines = small.Lines({.chosen = "    xx x x     "});
  EXPECT_EQ(lines.at(2), "\"1.000\",\".000\",\"-1.000\",\"-30.000\"");
  EXPECT_EQ(lines.at(3), "\"1.000\",\".000\",\".000\",\".000\"");
}

// A run over all models, with extreme, deleted and empty entries, unused codes between the used
// ones and a code that is none; its file in numbers.
class ObservationsOfARun : public testing::Test {
 protected:
  struct Line {
    int person, item, observed, ordered;
    double expected, variance, z, residual, difference, logProbability;
    std::string code;
  };
  static constexpr int kPersons = 90, kItems = 12;

  void Measure(const std::string& more = "") {
    Matrix data = Simulate(kPersons, kItems, 2, 5);
    for (std::string& row : data) {
      for (char& c : row) c = c == ' ' ? c : static_cast<char>('a' + (c - '0'));
      row[3] = 'a';
    }
    data[4] = std::string(kItems, 'c');
    data[5] = std::string(kItems, 'a');
    data[6] = std::string(kItems, ' ');
    data[8][1] = 'x';
    // Scored 1, 3 and 4, the code of 2 used by nobody.
    RunData(whole, data,
            "CODES=abcd\nNEWSCR=1342\nSTKEEP=N\nGROUPS=AAAABBBBCCCC\nMODELS=RRRRSSSSFFFF\n"
            "USCALE=100\nUMEAN=500\nUDECIM=3\nPFILE=p.txt\nIFILE=i.txt\nSFILE=s.txt\n"
            "XFILE=x.txt\nCSV=Y\nPDFILE=*\n8\n*\nIDFILE=*\n11\n*\n" +
                more);
    all = EstimatesOf(whole);
  }
  std::vector<Line> Read(const std::string& name) {
    std::string text = whole.directory.Read(name);
    whole.directory.Write("table.csv", text.substr(text.find('\n') + 1));
    std::vector<Line> lines;
    for (CsvRow& row : ReadCsv(whole.directory.NameOf("table.csv"))) {
      const auto whole_number = [&](const char* field) { return std::stoi(row.at(field)); };
      const auto real = [&](const char* field) { return std::stod(row.at(field)); };
      lines.push_back({whole_number("PERSON"), whole_number("ITEM"), whole_number("OBSERVED"),
                       whole_number("ORDERED"), real("EXPECTATION"), real("VARIANCE"),
                       real("ZSCORE"), real("RESIDUAL"), real("MEASURE"), real("LOG(PROBABILITY)"),
                       row.at("CODE")});
    }
    return lines;
  }
  std::vector<Line> Write(const ObservationFields& fields) {
    WriteObservationFile(whole.run, "x2.txt", fields);
    return Read("x2.txt");
  }
  // Measures and steps in logits as the measure files print them.
  std::map<int, double> PrintedMeasures(const std::string& name) {
    std::string text = whole.directory.Read(name);
    for (int line = 0; line < 3; ++line) text.erase(0, text.find('\n') + 1);
    whole.directory.Write("table.csv", text);
    std::map<int, double> measures;
    for (CsvRow& row : ReadCsv(whole.directory.NameOf("table.csv"))) {
      measures[std::stoi(row.at("ENTRY"))] = (std::stod(row.at("MEASURE")) - 500) / 100;
    }
    return measures;
  }
  // The two steps of each of the three groups.
  std::vector<std::vector<double>> PrintedSteps() {
    std::vector<std::vector<double>> steps(3);
    for (const std::string& line : SmallRun::LinesOf(whole.directory.Read("s.txt"))) {
      const auto fields = SplitCsv(line);
      if (fields[0].find_first_not_of("0123456789") != std::string::npos) continue;
      const auto group = static_cast<std::size_t>((std::stoi(fields[0]) - 1) / 4);
      if (fields[1] != "1" && steps[group].size() < 2) {
        steps[group].push_back(std::stod(fields[2]) / 100);
      }
    }
    return steps;
  }
  StatusByte StatusOf(int person) const {
    return static_cast<StatusByte>(all.persons.status[static_cast<std::size_t>(person - 1)]);
  }
  StatusByte ItemStatusOf(int item) const {
    return static_cast<StatusByte>(all.items.status[static_cast<std::size_t>(item - 1)]);
  }

  WholeRun whole;
  AllEstimates all;
};

struct ByHand {
  double expected, variance, probability;
};

// Of the category x = 0, 1, 2 with its two steps, by the definitions of the models.
ByHand WorkOut(char model, double d, const std::vector<double>& steps, int x) {
  const double pass[] = {1, 1 / (1 + std::exp(steps[0] - d)), 1 / (1 + std::exp(steps[1] - d))};
  if (model == 'R') {
    const double odds[] = {1, std::exp(d - steps[0]), std::exp(2 * d - steps[0] - steps[1])};
    const double total = odds[0] + odds[1] + odds[2];
    const double mean = (odds[1] + 2 * odds[2]) / total;
    return {1 + mean, (odds[1] + 4 * odds[2]) / total - mean * mean, odds[x] / total};
  }
  // Steps in play: of "S" those up to the first failed one, of "F" those from the passed one on.
  const int first = model == 'S' ? 1 : std::max(x, 1);
  const int last = model == 'S' ? std::min(x + 1, 2) : 2;
  ByHand result{1, 0, x == 0 ? 1 - pass[1] : pass[x]};
  for (int k = first; k <= last; ++k) {
    result.expected += pass[k];
    result.variance += pass[k] * (1 - pass[k]);
  }
  // One of them was passed where x says that it was step x.
  if (model == 'F' && x > 0) result.expected += x - 1;
  return result;
}

TEST_F(ObservationsOfARun, AreThoseOfTheModels) {
  Measure();
  const auto persons = PrintedMeasures("p.txt"), items = PrintedMeasures("i.txt");
  const auto steps = PrintedSteps();
  ASSERT_EQ(ItemStatusOf(4), Status::ExtremeHigh);
  const std::vector<Line> lines = Write({.chosen = "xxxxxxxxxxxxx"});
  ASSERT_EQ(lines.size(), static_cast<std::size_t>(kPersons * kItems));
  const std::map<std::string, int> scores{{"a", 1}, {"b", 3}, {"c", 4}, {"", 255}};
  int used = 0, unused = 0;
  for (std::size_t at = 0; at < lines.size(); ++at) {
    const Line& line = lines[at];
    SCOPED_TRACE(std::to_string(line.person) + " on " + std::to_string(line.item));
    ASSERT_EQ(line.person, static_cast<int>(at / kItems) + 1);
    ASSERT_EQ(line.item, static_cast<int>(at % kItems) + 1);
    const StatusByte s = StatusOf(line.person), t = ItemStatusOf(line.item);
    const bool read = line.person != 8 && line.item != 11;
    EXPECT_EQ(line.observed, read ? scores.at(line.code) : -1);
    const bool measured = read && line.person != 7;
    EXPECT_NEAR(line.difference, measured ? persons.at(line.person) - items.at(line.item) : 0,
                .00501);
    if (!measured || line.observed == 255 || !(IsActive(s) || IsActive(t))) {
      EXPECT_EQ(line.ordered, -1);
      EXPECT_EQ(line.expected, -1);
      EXPECT_EQ(std::fabs(line.z) + line.residual + line.variance + line.logProbability, 0);
      ++unused;
      continue;
    }
    ++used;
    EXPECT_EQ(line.ordered, line.observed == 1 ? 1 : line.observed - 1) << "closed up";
    const auto group = static_cast<std::size_t>((line.item - 1) / 4);
    const double d = persons.at(line.person) - items.at(line.item);
    const ByHand hand = WorkOut("RSF"[group], d, steps[group], line.ordered - 1);
    EXPECT_NEAR(line.expected, hand.expected, .0011);
    EXPECT_NEAR(line.variance, hand.variance, .0011);
    EXPECT_NEAR(line.residual, line.ordered - hand.expected, .0011);
    const double z = (line.ordered - hand.expected) / std::sqrt(hand.variance);
    EXPECT_NEAR(line.z, z, .001 + .002 * std::fabs(z));
    EXPECT_NEAR(line.logProbability, std::log(hand.probability), .0015);
  }
  EXPECT_GT(used, 800);
  EXPECT_GT(unused, 60);
}

TEST_F(ObservationsOfARun, SumUpToScoresAndFit) {
  Measure("IWEIGHT=*\n2 3\n5 .5\n9 2\n*\nPWEIGHT=*\n1-20 2\n30 .25\n*\n");
  const GivenEntries& given = whole.run.given;
  struct Sums {
    double residual = 0, square = 0, count = 0;
    void Add(const Line& line, double weight) {
      residual += line.residual * weight;
      square += line.z * line.z * weight;
      count += weight;
    }
  };
  std::map<int, Sums> persons, items;
  for (const Line& line : Read("x.txt")) {
    ASSERT_TRUE(IsActive(StatusOf(line.person)) && IsActive(ItemStatusOf(line.item)));
    persons[line.person].Add(line, given.ItemWeight[line.item]);
    items[line.item].Add(line, given.PersonWeight[line.person]);
  }
  EXPECT_EQ(persons.size(), static_cast<std::size_t>(kPersons - 4));
  EXPECT_EQ(items.size(), static_cast<std::size_t>(kItems - 2));
  const auto expectSound = [](const std::map<int, Sums>& sums, const Estimates& estimates) {
    for (const auto& [entry, sum] : sums) {
      const auto place = static_cast<std::size_t>(entry - 1);
      EXPECT_NEAR(sum.residual, 0, .001 + .0005 * sum.count) << entry;
      EXPECT_NEAR(sum.square / sum.count, std::min(estimates.outfit[place], 9.9), .005) << entry;
      EXPECT_NEAR(sum.count, estimates.count[place], .001) << entry;
    }
  };
  expectSound(persons, all.persons);
  expectSound(items, all.items);
}

TEST_F(ObservationsOfARun, CanBeChosen) {
  Measure();
  const auto isOf = [&](const Line& line) {
    return IsActive(StatusOf(line.person)) && IsActive(ItemStatusOf(line.item));
  };
  const auto count = [&](const std::string& places, bool missing, bool extreme) {
    const std::vector<Line> lines = Write({.chosen = "xxxxxxxxxxx" + places});
    for (const Line& line : lines) {
      EXPECT_TRUE(missing || line.ordered != -1);
      EXPECT_TRUE(extreme || isOf(line)) << line.person << " on " << line.item;
    }
    return lines.size();
  };
  const std::size_t plain = count("", false, false), missing = count("x", true, false);
  EXPECT_EQ(plain, Read("x.txt").size());
  EXPECT_EQ(missing, static_cast<std::size_t>((kPersons - 4) * (kItems - 2)));
  const std::size_t extreme = count(" x", false, true);
  EXPECT_GT(missing, plain);
  EXPECT_GT(extreme, plain);
  EXPECT_EQ(count("xx", true, true), static_cast<std::size_t>(kPersons * kItems));

  ObservationFields one{.chosen = "xxxxxxxxxxxxxxx", .person = 7, .item = 0};
  EXPECT_EQ(Write(one).size(), static_cast<std::size_t>(kItems));
  one.item = 3;
  EXPECT_EQ(Write(one).size(), 1U);
  one.person = kPersons + 1;
  EXPECT_EQ(Write(one).size(), static_cast<std::size_t>(kPersons));
}

// The run goes on, the words name the file, and what was there before stays.
TEST_F(ObservationsOfARun, FailInWords) {
  Measure();
  const auto fail = [&](const std::string& name) {
    testing::internal::CaptureStderr();
    WriteObservationFile(whole.run, name, {});
    EXPECT_TRUE(whole.run.outputFailed);
    return testing::internal::GetCapturedStderr();
  };
  EXPECT_THAT(fail("/dev/full"), HasSubstr("/dev/full"));
  EXPECT_THAT(fail("nowhere/x.txt"), HasSubstr("XFILE=nowhere/x.txt"));
  EXPECT_THAT(fail("data.txt"), HasSubstr("XFILE=data.txt"));
  EXPECT_THAT(whole.directory.Read("data.txt"), testing::StartsWith("P1001"));
}

}  // namespace
}  // namespace vardento::test
