#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/contract/column_test.h"
#include "kit/groups/category_union.h"
#include "kit/records/record_weight.h"
#include "kit/statistics/marginal_homogeneity.h"

/// Marginal homogeneity test: do two related ordered categorical fields have the same distribution?
///
/// The categories of both fields make one union with scores s (their numbers, or their places for
/// texts); n_ij is the weight of the records with category i in the first and j in the second
/// field; figures as in kit/statistics/marginal_homogeneity.h. No continuity correction, no exact
/// value. One pass.
///
/// Source: A. Agresti, Categorical Data Analysis (1990), 10.3; A. Stuart, Biometrika 42 (1955).
class NPARMargHomo final : public NPARRecordTest {
 public:
  /// Takes the settings over. The union must be that of the fields in the settings.
  NPARMargHomo(QDSettings* settings, CategoryUnion categories);

  void SetSharedData(UnivariateResults*) override {}
  /// Error 220002: no memory for the cross table.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record& record) override;
  bool NeedsAnotherPass() override { return false; }
  /// Error 220003: the weights sum to less than 1.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  [[nodiscard]] std::int64_t& Cell(std::size_t row, std::size_t column) {
    return crossTable[row * scores.size() + column];
  }

  CategoryUnion categories;
  RecordWeight weight;
  double sigLevel = 0.05;
  std::int32_t first = -1;
  std::int32_t second = -1;
  std::vector<double> scores;
  std::vector<std::int64_t> crossTable;  // row by row
  std::int64_t totalN = 0;
  MarginalHomogeneity result;
};
