#include "planning/test_table.h"

#include <array>

#include "tests/one_sample/binomial.h"
#include "tests/one_sample/chi_square.h"
#include "tests/one_sample/estimate_ci.h"
#include "tests/related/marginal_homogeneity.h"
#include "tests/related/mcnemar.h"

// One include and one row for each test; names are those of the entries that the settings'
// translation makes.

std::span<const TestTableRow> TestTable() {
  static constexpr std::array kRows = std::to_array<TestTableRow>({
      {"OBinomial", ConstructBinomialTest},
      {"OChiSquare", ConstructChiSquareTest},
      {"OEstimateConfidenceInterval", ConstructEstimateCITest},
      {"RMarginalHomogeneity", ConstructMarginalHomogeneityTest},
      {"RMcNemar", ConstructMcNemarTest},
  });
  return kRows;
}
