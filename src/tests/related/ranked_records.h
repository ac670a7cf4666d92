#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "catalogue/card.h"
#include "catalogue/shared_codes.h"
#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_ranks.h"
#include "kit/contract/test.h"
#include "kit/ranks/column_ranks.h"
#include "kit/ranks/rank_counts.h"
#include "kit/summaries/field_quartiles.h"

/// The two-way analysis of variance by ranks, which Friedman's test and Kendall's coefficient
/// share.
///
/// Formulas, limits, sources: docs/statistics/friedman.md.
///
/// R_j is the sum of the ranks of field j, X the test statistic. One pass, and one more for what a
/// step-down needs.
class NPARRankedRecords : public NPARTest {
 public:
  XMLElement* WriteResults() override;
  [[nodiscard]] bool TakesCells() const override { return true; }

  /// What parts the two tests. It lives as long as the program.
  struct Profile {
    const catalogue::Card& card;
    const char* conditionKey;
    const catalogue::RankedRecordsCodes& codes;
  };

  /// Reads the entry into the settings of a test.
  static void ReadEntry(TestConstruction& construction, const Profile& profile);

 protected:
  NPARRankedRecords(QDSettings* settings, const Profile& profile);
  /// Figures of the test's own, which stand behind "TotalN".
  virtual void WriteOwnFigures(XMLElement& /*statistics*/) const {}

  /// An error: "variableIndex" holds fewer than two positions.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0.
  void Compute() override;
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;
  void Extend(ExtendedFigures& figures) override;

  [[nodiscard]] double ChiSquare() const noexcept { return overall.testStatistic; }
  [[nodiscard]] double Fields() const noexcept { return static_cast<double>(variables.size()); }
  [[nodiscard]] double Records() const noexcept { return static_cast<double>(totalN); }

 private:
  /// `count` records from `first` on; weightOf(i) is the weight of the i-th of them.
  template <typename WeightOf>
  void RankFields(RecordBatch& batch, std::size_t first, std::size_t count, WeightOf weightOf);
  void ComparePairs();
  [[nodiscard]] std::vector<ComparedSample> MeanRanks() const;
  /// X and p of the samples with these rank sums.
  [[nodiscard]] RangeFigures ComputeFigures(const std::vector<double>& sums,
                                            const DoubleDouble& tieSum) const;
  [[nodiscard]] std::optional<RangeFigures> ComputeRange(const SampleRange& range) const;
  [[nodiscard]] bool IsSurelyApart(const SampleRange& range) const;

  const Profile& profile;
  std::vector<std::int32_t> variables;
  MultipleComparison comparison;
  ColumnRanks ranks;
  std::vector<const double*> fields;  // the columns that are ranked among each other
  std::int64_t totalN = 0;
  FieldQuartiles quartiles;  // for extended figures
  RankCounts rankCounts;
  std::vector<double> rankSums;  // R by place
  RangeFigures overall;
  std::vector<ComparedSample> ordered;  // the fields as the step-down has them
  RangeRanks ranges;
};
