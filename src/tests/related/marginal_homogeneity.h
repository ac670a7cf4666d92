#pragma once

#include <cstdint>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/category_union.h"
#include "kit/statistics/marginal_homogeneity.h"
#include "tests/related/category_pair.h"

/// Marginal homogeneity test: do two related ordered categorical fields have the same distribution?
///
/// Formulas, limits, sources: docs/statistics/marginal_homogeneity.md.
///
/// The categories of both fields make one union (kit/groups/category_union.h) with scores: their
/// numbers, or their places for texts. One pass.
class NPARMargHomo final : public NPARTest {
 public:
  /// Takes the settings over. The union must be that of the fields in the settings.
  NPARMargHomo(QDSettings* settings, CategoryUnion categories);

  XMLElement* WriteResults() override;

 protected:
  /// Error 220002: no memory for the cross table.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to less than 1.
  void Compute() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  CategoryUnion categories;
  CategoryPair pair;
  std::vector<double> scores;
  std::vector<std::int64_t> crossTable;  // row by row
  std::int64_t totalN = 0;
  MarginalHomogeneity result;
};
