// PTBIS=Y against the definition: the correlation of the responses with the mean of the rest.
#include <gtest/gtest.h>

#include <cmath>

#include "support/estimates.h"

namespace vardento::test {
namespace {

// A weighted correlation in two passes.
struct Pairs {
  std::vector<double> x, rest, weight;
  void Add(double value, double mean, double w) {
    x.push_back(value);
    rest.push_back(mean);
    weight.push_back(w);
  }
  double Correlation() const {
    double n = 0, mx = 0, mr = 0, xx = 0, rr = 0, xr = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      n += weight[i];
      mx += x[i] * weight[i];
      mr += rest[i] * weight[i];
    }
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double dx = x[i] - mx / n, dr = rest[i] - mr / n;
      xx += dx * dx * weight[i];
      rr += dr * dr * weight[i];
      xr += dx * dr * weight[i];
    }
    return xr / std::sqrt(xx * rr);
  }
};

TEST(PointBiserial, CorrelatesEachResponseWithTheMeanOfTheRest) {
  const Matrix data = Simulate(70, 8, 2, 5);
  for (const bool weighted : {false, true}) {
    SCOPED_TRACE(weighted);
    std::vector<double> pw(data.size(), 1), iw(8, 1);
    if (weighted) {
      pw[4] = 3;
      pw[20] = .5;
      iw[2] = 2;
    }
    const AllEstimates found =
        Estimate(data, std::string("CODES=012\nPTBIS=Y\n") +
                           (weighted ? "PWEIGHT=*\n5 3\n21 .5\n*\nIWEIGHT=*\n3 2\n*\n" : ""));
    std::vector<double> personSum(data.size()), personCount(data.size()), itemSum(8), itemCount(8);
    for (std::size_t n = 0; n < data.size(); ++n) {
      for (std::size_t i = 0; i < 8; ++i) {
        if (data[n][i] == ' ') continue;
        personSum[n] += (data[n][i] - '0') * iw[i];
        personCount[n] += iw[i];
        itemSum[i] += (data[n][i] - '0') * pw[n];
        itemCount[i] += pw[n];
      }
    }
    std::vector<Pairs> persons(data.size()), items(8);
    for (std::size_t n = 0; n < data.size(); ++n) {
      for (std::size_t i = 0; i < 8; ++i) {
        if (data[n][i] == ' ') continue;
        const double x = data[n][i] - '0';
        persons[n].Add(x, (itemSum[i] - x * pw[n]) / (itemCount[i] - pw[n]), iw[i]);
        items[i].Add(x, (personSum[n] - x * iw[i]) / (personCount[n] - iw[i]), pw[n]);
      }
    }
    for (std::size_t i = 0; i < 8; ++i) {
      EXPECT_NEAR(found.items.correlation[i], items[i].Correlation(), 1e-5) << "item " << i + 1;
    }
    for (std::size_t n = 0; n < data.size(); ++n) {
      if (found.persons.status[n] < 1) continue;
      EXPECT_NEAR(found.persons.correlation[n], persons[n].Correlation(), 1e-5)
          << "person " << n + 1;
    }
  }
}

}  // namespace
}  // namespace vardento::test
