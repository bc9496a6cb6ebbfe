// The subsets that the connectivity check finds, against the same procedure written out plainly.
#include "measure/connectivity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "data/work_files.h"
#include "measure/estimation.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::uint8_t kNone = 255;

// Persons' responses as codes, with a code beyond each scale that belongs to no category.
struct Data {
  std::vector<StatusByte> persons, items;
  std::vector<int> tops;  // by item
  std::vector<std::vector<std::uint8_t>> rows;
};

struct Subsets {
  std::vector<int> persons, items;
  int count = 0;
  bool operator==(const Subsets&) const = default;
};

// Every person after the seed read in every sweep, every item of a row looked at.
class PlainScan {
 public:
  explicit PlainScan(const Data& data) : data_(data) {
    found_.persons.assign(data.persons.size(), 0);
    found_.items.assign(data.items.size(), 0);
  }
  Subsets Find() {
    for (std::size_t n = 0; n < data_.persons.size(); ++n) {
      if (!TakesPart(n) || found_.persons[n] != 0) continue;
      found_.persons[n] = ++found_.count;
      reach_.assign(data_.items.size(), ' ');
      for (std::size_t i = 0; i < reach_.size(); ++i) {
        const int x = Category(n, i);
        if (x < 0) continue;
        reach_[i] = x < 1 ? 'L' : x < data_.tops[i] ? 'B' : 'H';
        if (reach_[i] == 'B') found_.items[i] = found_.count;
      }
      anchored_ = Anchored(n);
      while (Sweep(n)) {
      }
    }
    return found_;
  }

 private:
  bool TakesPart(std::size_t n) const { return WithoutCompleteFlag(data_.persons[n]) > 0; }
  bool Anchored(std::size_t n) const { return WithoutCompleteFlag(data_.persons[n]) == 2; }
  int Category(std::size_t n, std::size_t i) const {
    const std::uint8_t code = data_.rows[n][i];
    return data_.items[i] > 0 && code <= data_.tops[i] ? code : -1;
  }
  bool CanJoin(std::size_t q) const {
    bool up = false, down = false;
    for (std::size_t i = 0; i < reach_.size(); ++i) {
      const int x = Category(q, i);
      if (x < 0 || reach_[i] == ' ') continue;
      up = up || (reach_[i] != 'H' && x > 0);
      down = down || (reach_[i] != 'L' && x < data_.tops[i]);
    }
    return (up && down) || (anchored_ && Anchored(q));
  }
  bool Extend(std::size_t q) {
    bool changed = false;
    for (std::size_t i = 0; i < reach_.size(); ++i) {
      const int x = Category(q, i);
      if (x < 0 || reach_[i] == 'B') continue;
      const char old = reach_[i];
      reach_[i] = x < 1 ? 'L' : x < data_.tops[i] || old == 'L' ? 'B' : 'H';
      if (reach_[i] == 'B') found_.items[i] = found_.count;
      changed = changed || reach_[i] != old;
    }
    return changed;
  }
  // True when another sweep may find more.
  bool Sweep(std::size_t seed) {
    std::size_t firstLeft = 0, lastChange = 0;
    for (std::size_t q = seed + 1; q < data_.persons.size(); ++q) {
      if (!TakesPart(q) || found_.persons[q] != 0) continue;
      if (!CanJoin(q)) {
        if (firstLeft == 0) firstLeft = q;
        continue;
      }
      found_.persons[q] = found_.count;
      if (Anchored(q) && !anchored_) {
        anchored_ = true;
        lastChange = q;
      }
      if (Extend(q)) lastChange = q;
    }
    return firstLeft != 0 && lastChange >= firstLeft;
  }

  const Data& data_;
  Subsets found_;
  std::string reach_;
  bool anchored_ = false;
};

// A run with nothing in it but what the check reads: each item has a group of its own.
class ScanRun : public TestRun {
 public:
  ScanRun(const Data& data, bool matrix) {
    const int persons = static_cast<int>(data.persons.size());
    const int items = static_cast<int>(data.items.size());
    run.NPERS = persons;
    run.DraftSettings().NI = items;
    personStatus_ = data.persons;
    itemStatus_ = data.items;
    models_.assign(data.items.size(), Model::Rating);
    scored_.assign(data.items.size(), 0);
    for (int i = 1; i <= items; ++i) {
      const int top = data.tops[static_cast<std::size_t>(i) - 1];
      groups_.push_back(i);
      starts_.push_back(static_cast<int>(codes_.size()) + 1);
      tops_.push_back(top);
      for (int code = 0; code <= top + 1; ++code) codes_.push_back(code <= top ? code : -4);
    }
    ones_.assign(codes_.size(), 1);
    zeros_.assign(std::max(codes_.size(), data.items.size()), 0);
    RunArrays& a = run.arrays;
    a.PersonStatus = {personStatus_.data(), persons};
    a.ItemStatus = {itemStatus_.data(), items};
    a.ItemGroup = {groups_.data(), items};
    a.GroupStart = {starts_.data(), items};
    a.GroupTop = {tops_.data(), items};
    a.GroupModel = {models_.data(), items};
    a.ItemMeasure = {zeros_.data(), items};
    a.CodeToCategory = {codes_.data(), static_cast<int>(codes_.size())};
    a.StepStatus = {ones_.data(), static_cast<int>(codes_.size())};
    a.StepCalibration = {zeros_.data(), static_cast<int>(codes_.size())};
    a.ScoredRow = {scored_.data(), items};
    OpenWorkFiles(run);
    if (matrix) AllocateStores(run);
    for (int n = 1; n <= persons; ++n) {
      WriteScoredRow(run, n, data.rows[static_cast<std::size_t>(n) - 1].data());
    }
  }

 private:
  std::vector<StatusByte> personStatus_, itemStatus_;
  std::vector<std::int32_t> groups_, starts_, tops_, codes_, ones_;
  std::vector<Model> models_;
  std::vector<float> zeros_;
  std::vector<std::uint8_t> scored_;
};

// `blocks`: how many of the scan's requests for memory are granted; it makes 2.
Subsets FindSubsets(const Data& data, bool matrix, int blocks) {
  ScanRun test(data, matrix);
  test.run.memory.RefuseRequest((matrix ? 2 : 0) + blocks + 1);
  ConnectivityScan scan(test.run);
  EXPECT_TRUE(scan.Allocate());
  EXPECT_TRUE(scan.Scan());
  Subsets found;
  found.count = scan.SubsetCount();
  for (int n = 1; n <= test.run.NPERS; ++n) {
    found.persons.push_back(std::max(scan.SubsetOfPerson(n), 0));
  }
  for (int i = 1; i <= test.run.settings.NI; ++i) found.items.push_back(scan.SubsetOfItem(i));
  return found;
}

// A data set of any shape: booklets in any order, much or little missing, orderly or not, statuses
// of all kinds.
Data DrawData(std::mt19937& generator) {
  const auto draw = [&](int count) {
    return static_cast<int>(generator() % static_cast<unsigned>(count));
  };
  Data data;
  const int persons = 1 + draw(60), items = 1 + draw(draw(8) == 0 ? 150 : 14);
  const int largestTop = 1 + draw(3), missing = draw(10), booklets = 1 + draw(6);
  const int anchors = draw(3) == 0 ? 3 : 100, noise = 1 + draw(30);
  for (int i = 0; i < items; ++i) {
    data.tops.push_back(1 + draw(largestTop));
    data.items.push_back(static_cast<StatusByte>(draw(12) == 0 ? -draw(4) : draw(9) == 0 ? 2 : 1));
  }
  for (int n = 0; n < persons; ++n) {
    const int kind = draw(10), status = kind == 0 ? -draw(4) : draw(anchors) == 0 ? 2 : 1;
    data.persons.push_back(static_cast<StatusByte>(status > 0 && kind > 6 ? status + 16 : status));
    const int booklet = draw(booklets), ability = draw(items + 1);
    std::vector<std::uint8_t> row(static_cast<std::size_t>(items), kNone);
    for (int i = 0; i < items; ++i) {
      const bool taken = i * booklets / items == booklet || draw(10 * booklets) == 0;
      if (!taken || draw(12) < missing) continue;
      const int top = data.tops[static_cast<std::size_t>(i)];
      // Without noise the easier items are passed and the harder ones failed.
      const int x = draw(noise) == 0 ? draw(top + 2) : i < ability ? top : 0;
      row[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(x);
    }
    data.rows.push_back(row);
  }
  return data;
}

TEST(Connectivity, FindsWhatThePlainProcedureFinds) {
  std::mt19937 generator(20);
  int several = 0;
  for (int trial = 0; trial < 200; ++trial) {
    SCOPED_TRACE(trial);
    const Data data = DrawData(generator);
    const Subsets plain = PlainScan(data).Find();
    several += plain.count > 1 ? 1 : 0;
    ASSERT_EQ(FindSubsets(data, true, 2), plain);
    if (trial % 3 == 0) {
      ASSERT_EQ(FindSubsets(data, false, 1), plain);  // no room for an index, rows on disk
    }
  }
  EXPECT_GT(several, 60);  // the data were not all of one piece
}

// Cases worked out by hand, which the plain procedure must know as well.
TEST(Connectivity, HandCases) {
  const std::pair<Data, Subsets> cases[] = {
      // The first item is seen at the bottom last, the second at the top.
      {{{1, 1}, {1, 1}, {1, 1}, {{1, 0}, {0, 1}}}, {{1, 1}, {0, 1}, 1}},
      // The second never is above the first; the third is, on the second item.
      {{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {{1, 0, 1}, {0, kNone, 0}, {0, 1, kNone}}},
       {{1, 2, 1}, {0, 1, 0}, 2}},
      // Middle categories link at once.
      {{{1, 1}, {1}, {2}, {{1}, {1}}}, {{1, 1}, {1}, 1}},
      // An anchored person brings those before it.
      {{{1, 2, 2}, {1, 1, 1}, {1, 2, 1}, {{kNone, 1, kNone}, {1, kNone, 0}, {kNone, 1, kNone}}},
       {{1, 1, 1}, {0, 1, 0}, 1}},
  };
  for (const auto& [data, expected] : cases) {
    SCOPED_TRACE(testing::PrintToString(data.rows));
    EXPECT_EQ(PlainScan(data).Find(), expected);
    EXPECT_EQ(FindSubsets(data, true, 2), expected);
  }
}

// Perfectly ordered data of a hundred patterns: everybody is a subset of their own, and reading
// every row for everyone would take minutes.
TEST(Connectivity, OrderlyDataOfManyPersonsStayQuick) {
  constexpr int kItems = 100, kPersons = 20000;
  Data data{std::vector<StatusByte>(kPersons, 1),
            std::vector<StatusByte>(kItems, 1),
            std::vector<int>(kItems, 1),
            {}};
  for (int n = 0; n < kPersons; ++n) {
    std::vector<std::uint8_t> row(kItems, 0);
    std::fill(row.begin(), row.begin() + 1 + n % (kItems - 1), std::uint8_t{1});
    data.rows.push_back(row);
  }
  const Subsets found = FindSubsets(data, true, 2);
  EXPECT_EQ(found.count, kPersons);
  EXPECT_EQ(found.persons.back(), kPersons);
}

TEST(Connectivity, AStopEndsTheSearch) {
  Data data{std::vector<StatusByte>(3000, 1), {1, 1}, {1, 1}, {}};
  data.rows.assign(3000, {1, 0});
  ScanRun test(data, true);
  test.run.batch = false;
  test.console.onPump = [](RecordingConsole& console) { console.interrupts = 1; };
  CheckConnectivity(test.run);
  EXPECT_THAT(test.console.Text(), Not(HasSubstr("SUBSET")));
  EXPECT_EQ(test.run.results.connectivityText, "");
}

// Two booklets of three items each; one person who meets both connects them.
TEST(Connectivity, TellsOfBookletsWithoutCommonItems) {
  for (const std::string link : {"", "Ivy    10 10 \n"}) {
    WholeRun data;
    data.directory.Write("control.txt",
                         "TITLE=T\nNI=6\nITEM1=8\nNAME1=1\nNAMLEN=6\nTABLES=001\n&END\n"
                         "Ant\nBee\nCat\nDog\nEel\nFly\nEND LABELS\n"
                         "Ann    110   \nBob    011   \nCam    101   \nDan    010   \n"
                         "Eve       010\nFay       110\nGus       011\nHal       101\n" +
                             link);
    ASSERT_EQ(data.Execute(), kExitGood);
    const std::string report = data.directory.Read("report.txt");
    const std::string above =
        "WARNING: DATA AMBIGUOUSLY CONNECTED. THERE ARE 2 SUBSETS LISTED ABOVE.\n";
    if (link.empty()) {
      EXPECT_THAT(report, HasSubstr("2 CATS     VARDENTO  .10\n" + above + "----"));
      EXPECT_THAT(report, HasSubstr("\nWARNING: DATA AMBIGUOUSLY CONNECTED. THERE ARE 2 SUBSETS.\n"
                                    "These are members of different subsets:\n"
                                    "SUBSET 1:  PERSON:  1  Ann\nSUBSET 1:  ITEM:  1  Ant\n"
                                    "SUBSET 2:  PERSON:  5  Eve\nSUBSET 2:  ITEM:  4  Dog\n" +
                                    above));
    } else {
      EXPECT_THAT(report, Not(HasSubstr("CONNECTED")));
    }
  }
}

}  // namespace
}  // namespace vardento::test
