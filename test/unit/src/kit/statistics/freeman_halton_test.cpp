#include "kit/statistics/freeman_halton.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/matchers.h"

namespace {

struct TableCase {
  const char* catches;
  std::vector<GroupInRows> groups;
  std::optional<double> sig;
};

// Python 3.11, whole numbers: all tables with the margins; the first also SciPy 1.17.1,
// fisher_exact([[8, 2], [1, 5]]). The tail of the largest tables is mpmath 1.4.1's.
const TableCase kTables[] = {
    {"two groups", {{8, 10}, {1, 6}}, 0.034965034965034965},
    {"three groups", {{3, 7}, {6, 9}, {1, 8}}, 0.094580207785215189},
    {"four groups", {{1, 4}, {3, 4}, {0, 4}, {4, 4}}, 0.030303030303030303},
    {"no table is more probable", {{2, 5}, {2, 5}, {2, 5}}, 1.0},
    {"two tables of one probability", {{5, 5}, {0, 5}}, 2.0 / 252},
    {"larger groups", {{30, 300}, {200, 1500}}, 0.12937199043918917},
    {"a small tail", {{300, 999}, {40000, 200000}}, 6.5721642278364392e-14},
    {"the limit", {{500900, 999999}, {500000, 1000100}}, 0.17911987079723935},
    {"one unit more", {{500900, 1000000}, {500000, 1000100}}, std::nullopt},
    {"the limit, three groups", {{3, 999}, {2, 999}, {0, 5000}}, 0.0018903976991920088},
    {"beyond it", {{3, 999}, {2, 1000}, {0, 5000}}, std::nullopt},
};

TEST(FreemanHaltonTest, ImprobableTablesSumUp) {
  for (const TableCase& row : kTables) {
    SCOPED_TRACE(row.catches);
    EXPECT_THAT(FreemanHaltonSig(row.groups), IsCloseTo(row.sig, 1e-11));
  }
}

}  // namespace
