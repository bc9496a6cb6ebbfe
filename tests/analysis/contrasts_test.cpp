// Who responds differently to the two ends of a component.
#include "analysis/contrasts.h"

#include <gtest/gtest.h>

#include "report/small_run.h"

namespace vardento::test {
namespace {

Vector1<double> Loadings(const std::vector<double>& values) {
  Vector1<double> loadings(static_cast<int>(values.size()));
  std::copy(values.begin(), values.end(), loadings.begin());
  return loadings;
}

// Each component marks what it picks, but for the last one; the next counts the others, and takes
// at most half of them.
TEST(ContrastFinder, PicksAsManyAsLoadWithinLimits) {
  SmallRun small(1, 12);
  const std::vector<int> order = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  ContrastFinder finder(small.run, Facet::Items, order);
  const struct {
    std::vector<double> loadings;
    std::vector<int> top, bottom;
  } components[] = {
      // 4 of .4 and more, 1 of -.4 and less: 4 at each end.
      {{.9, .8, .7, .4, .39, .1, 0, -.1, -.2, -.3, -.3, -.5}, {1, 2, 3, 4}, {12, 10, 11, 9}},
      // 9 was picked last; it and 5 to 8 are counted, and half of 5 is 2.
      {{.9, .8, .7, .6, 0, 0, 0, 0, 0, -.6, -.7, -.8}, {1, 2}, {12, 11}},
      // All but 1, 2 and 12 are counted: 3 is the least.
      {{.1, .1, .1, .1, .1, .1, .3, -.1, -.1, -.1, -.1, -.1}, {7, 1, 2}, {8, 9, 10}},
  };
  for (const auto& c : components) {
    const Contrast contrast = finder.Find(Loadings(c.loadings));
    EXPECT_EQ(contrast.top, c.top);
    EXPECT_EQ(contrast.bottom, c.bottom);
  }
  SmallRun large(1, 40);
  std::vector<int> all;
  std::vector<double> loadings;
  for (int i = 1; i <= 40; ++i) {
    all.push_back(i);
    loadings.push_back(i <= 20 ? .9 : -.9);
  }
  EXPECT_EQ(ContrastFinder(large.run, Facet::Items, all).Find(Loadings(loadings)).top.size(), 9U);
}

// A success of a person a logit below the item is .73 more than expected, a failure of one a logit
// above it .73 less; the others are within half a point.
TEST(ContrastFinder, CountsResponsesToBothEnds) {
  SmallRun small(5, 6);
  const char* const responses[] = {"111000", "111000", "1 1  0", "000111", "111111"};
  const float measures[] = {-1, 1, -1, 1, -1};
  for (int n = 1; n <= 5; ++n) {
    small.SetResponses(n, responses[n - 1]);
    small.run.arrays.PersonMeasure[n] = measures[n - 1];
  }
  small.run.arrays.PersonStatus[4] = Status::ExtremeHigh;
  small.run.arrays.PersonStatus[5] = Status::ExtremeLow;
  const std::vector<int> order = {1, 2, 3, 4, 5, 6};
  ContrastFinder finder(small.run, Facet::Items, order);
  const Contrast contrast = finder.Find(Loadings({.5, .5, .5, -.5, -.5, -.5}));
  const struct {
    int person;
    ContrastCounts top, bottom;
    int score;
  } expected[] = {{1, {3, 0, 0}, {0, 3, 0}, 3},
                  {2, {0, 3, 0}, {0, 0, 3}, 3},
                  {3, {2, 0, 0}, {0, 1, 0}, 2},
                  {4, {0, 0, 3}, {0, 3, 0}, -3}};
  ASSERT_EQ(contrast.others.size(), 4U) << "who is extreme at the bottom is left out";
  for (std::size_t k = 0; k < 4; ++k) {
    const ContrastingEntry& other = contrast.others[k];
    EXPECT_EQ(other.entry, expected[k].person);
    EXPECT_EQ(other.Score(), expected[k].score) << other.entry;
    EXPECT_EQ(other.top.high, expected[k].top.high) << other.entry;
    EXPECT_EQ(other.top.expected, expected[k].top.expected) << other.entry;
    EXPECT_EQ(other.top.low, expected[k].top.low) << other.entry;
    EXPECT_EQ(other.bottom.high, expected[k].bottom.high) << other.entry;
    EXPECT_EQ(other.bottom.expected, expected[k].bottom.expected) << other.entry;
    EXPECT_EQ(other.bottom.low, expected[k].bottom.low) << other.entry;
  }
  EXPECT_EQ(contrast.LargestScore(), 3);
}

}  // namespace
}  // namespace vardento::test
