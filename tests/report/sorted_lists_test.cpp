#include "report/sorted_lists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "report/small_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;

TEST(SortedLists, FitOrderTakesTheLargerStatisticAndBreaksTiesByNumber) {
  SmallRun small(6, 2);
  RunArrays& a = small.run.arrays;
  const float infit[] = {1.0F, 1.00005F, -3, 2, 5, 0.5F};
  const float outfit[] = {0.2F, 0, 3, 1, 9, 0.6F};
  for (int n = 1; n <= 6; ++n) {
    a.PersonInfitZ[n] = infit[n - 1];
    a.PersonOutfitZ[n] = outfit[n - 1];
  }
  a.PersonStatus[5] = Status::ExtremeHigh;
  small.run.request.CurrentTable = 6;
  SelectedList list;
  SortByFit(small.run, ArraysOf(small.run, Facet::Persons), list);
  EXPECT_THAT(list.entries, ElementsAre(3, 4, 1, 2, 6));
  small.run.DraftSettings().OUTFIT = false;
  SortByFit(small.run, ArraysOf(small.run, Facet::Persons), list);
  EXPECT_THAT(list.entries, ElementsAre(4, 1, 2, 6, 3));
  EXPECT_EQ(list.order, 'F');
  EXPECT_THAT(small.console.lines,
              ElementsAre("  Sorting by Fit for Table 6", "  Sorting by Infit for Table 6"));
}

TEST(SortedLists, LettersDecideEntriesDirectionAndTies) {
  SmallRun small(2, 6);
  RunArrays& a = small.run.arrays;
  const float keys[] = {0.5F, -1, 0.5F, 2, 0.50005F, 7};
  for (int i = 1; i <= 6; ++i) a.ItemMeasure[i] = a.ItemCorrelation[i] = keys[i - 1];
  a.ItemStatus[4] = Status::ExtremeLow;
  a.ItemStatus[6] = Status::NoResponses;
  SelectedList list;
  SortByValue(small.run, Facet::Items, 'M', list);
  EXPECT_THAT(list.entries, ElementsAre(4, 1, 3, 5, 2));
  SortByValue(small.run, Facet::Items, 'm', list);
  EXPECT_THAT(list.entries, ElementsAre(4, 5, 3, 1, 2));
  SortByValue(small.run, Facet::Items, 'P', list);
  EXPECT_THAT(list.entries, ElementsAre(2, 1, 3, 5));
  EXPECT_EQ(list.order, 'P');
}

TEST(SortedLists, LongListsComeOutSorted) {
  for (const int count : {2, 3, 5, 27, 100, 1000}) {
    SmallRun small(count, 1);
    std::vector<int> order(static_cast<std::size_t>(count));
    for (int n = 0; n < count; ++n) order[static_cast<std::size_t>(n)] = n + 1;
    std::shuffle(order.begin(), order.end(), std::mt19937(7));
    for (int n = 0; n < count; ++n) {
      small.run.arrays.PersonMeasure[order[static_cast<std::size_t>(n)]] =
          static_cast<float>(-n) / 8;
    }
    SelectedList list;
    SortByValue(small.run, Facet::Persons, 'M', list);
    EXPECT_EQ(list.entries, order) << count;
  }
}

// The order of labels, in memory and, when that is refused, read from the work file each time.
TEST(SortedLists, AlphabeticalOrderNeedsNoMemory) {
  for (const bool refused : {false, true}) {
    SmallRun small(6, 1);
    const char* labels[] = {"b z", "a\xC4", "b", "ab", "", "ab"};
    for (int n = 1; n <= 6; ++n) small.SetPerson(n, labels[n - 1], {});
    small.run.arrays.PersonStatus[5] = Status::ExtremeHigh;
    small.run.request.CurrentTable = 19;
    if (refused) small.run.memory.SetLimit(0);
    SelectedList list;
    SortAlphabetically(small.run, Facet::Persons, list);
    EXPECT_THAT(list.entries, ElementsAre(5, 4, 6, 2, 3, 1)) << refused;
    EXPECT_EQ(small.run.request.Value(5), 1);
    small.run.request.TableArgumentSet[4] = 'U';
    small.run.request.TableArgument[4] = 3;
    SortAlphabetically(small.run, Facet::Persons, list);
    EXPECT_THAT(list.entries, ElementsAre(2, 3, 4, 5, 6, 1)) << refused;
    small.run.request.TableArgument[4] = 1e9F;
    SortAlphabetically(small.run, Facet::Persons, list);
    EXPECT_EQ(small.run.request.Value(5), 300);
    EXPECT_EQ(small.console.lines[0], "  Sorting PERSONS for Table 19.1");
    if (refused) {
      EXPECT_EQ(small.console.lines[1], "36 bytes of memory not available, using disk work file");
    }
  }
}

TEST(SortedLists, PlotLettersMeetInTheMiddle) {
  const auto letters = [](std::vector<int> entries) {
    SelectedList list{entries, 'F'};
    std::string text;
    for (const int entry : entries) text.push_back(PlotLetter(list, std::abs(entry)));
    return text;
  };
  const auto upTo = [](int count) {
    std::vector<int> entries;
    for (int n = count; n >= 1; --n) entries.push_back(n);
    return entries;
  };
  const std::string capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::string smalls = "zyxwvutsrqponmlkjihgfedcba";
  EXPECT_EQ(letters({3, -9, 1}), "391");
  EXPECT_EQ(letters({3, 10, 1}), "ABa");
  EXPECT_EQ(letters(upTo(10)), "ABCDEedcba");
  EXPECT_EQ(letters(upTo(52)), capitals + smalls);
  EXPECT_EQ(letters(upTo(53)), capitals + " " + smalls);
  EXPECT_EQ(PlotLetter({upTo(53), 'F'}, 54), ' ');
}

}  // namespace
}  // namespace vardento::test
