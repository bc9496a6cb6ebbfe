// The work file of residuals, which components are taken of.
#include "analysis/residual_file.h"

#include <gtest/gtest.h>

namespace vardento {
namespace {

TEST(ResidualFile, EntriesByKind) {
  // y = 0.5 of a top of 2, z = 2, V = 1/16, p(x) = 0.25.
  const ResidualTerms terms{1, 2, 0.5, 2.0, 0.0625, 0.25};
  struct Case {
    char kind;
    int entry;
  };
  const Case cases[] = {{'S', 3000}, {'Y', 3000}, {'R', 8192},  {'L', 800},
                        {'O', 1},    {'K', 8192}, {'H', -7309},  // ln 0.25 / -ln 0.002 of 32767
                        {'G', -5794}};                           // ln(1/3) / ln 499 of 32767
  for (const Case& c : cases) EXPECT_EQ(ResidualEntry(c.kind, terms), c.entry) << c.kind;
  // A certainty that failed: y = -1, p = 1e-5, V = .00001. What is limited stops at 32767; H is
  // stored as it falls, ln(1e-5) / ln(.002) = 1.852563 of 32767 being 60703, and 65536 less that.
  const ResidualTerms surprise{0, 1, -1, -316.2, 0.00001, 0.00001};
  for (const char kind : {'S', 'L', 'R', 'G'}) EXPECT_EQ(ResidualEntry(kind, surprise), -32767);
  EXPECT_EQ(ResidualEntry('H', surprise), 65536 - 60703);
}

}  // namespace
}  // namespace vardento
