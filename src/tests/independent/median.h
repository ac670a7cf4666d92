#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_medians.h"
#include "kit/contract/test.h"
#include "kit/groups/group_median_limits.h"
#include "kit/groups/group_tally.h"
#include "kit/order/sorted_sample.h"
#include "kit/statistics/chi_square.h"

/// Median test: do k independent samples come from populations of one median?
///
/// Formulas, limits, sources: docs/statistics/median.md.
///
/// L_j is the weight of group j at or below the median, which is that of all records together, or a
/// given one.
/// Pass 0 counts the groups, pass 1 finds the median and the cells, pass 2 keeps the sorted groups
/// for a comparison. Passes 1 and 2 find the box plots too. Records ascend by the test variable.
class NPARKSMedian final : public NPARTest {
 public:
  explicit NPARKSMedian(QDSettings* settings);

  XMLElement* WriteResults() override;

 protected:
  void Prepare(const SettingsReader& settings) override;
  /// Errors 220003: no weight; 222312: fewer than two groups with data; 222313: no value below, or
  /// none above the median. Help message 222311: cells with E below 5, their percentage, the
  /// smallest E. Warnings 222318, 222316: fewer than 3 groups; 222319, 222317: not significant;
  /// 220013: a group alone.
  void Compute() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  /// Counts records that are all on one side of the median; false, and nothing done, for others.
  bool PassOver(const GroupTally::Units& units);
  /// Counts a record in its cell and finds the median on the way.
  void CountCell(double x, std::int64_t weight, std::size_t place);
  void EndOverall();
  void Compare();
  void RunStepwise(std::vector<ComparedSample> list);
  void WriteCells(XMLElement& algorithm) const;
  /// With the limits of the medians.
  [[nodiscard]] FigureTable ExtendedGroups() const;
  /// The test on some of the groups, parted at their median or the given one.
  [[nodiscard]] RangeFigures ComputeFor(std::span<const SortedSample* const> groups) const;
  [[nodiscard]] static RangeFigures ComputeAt(double cut,
                                              std::span<const SortedSample* const> groups);
  [[nodiscard]] bool IsSurelyApart(const SampleRange& range, const RangeMedians::Halves& halves,
                                   std::int64_t total,
                                   std::span<const SortedSample* const> groups) const;
  /// Decides: the exact p where there is one.
  [[nodiscard]] double DecidingSig() const { return exactSig.value_or(overall.sig); }

  GroupTally::Key groups;
  GroupTally* tally = nullptr;
  std::optional<double> givenMedian;
  std::optional<double> median;
  std::int64_t cumulative = 0;
  double lowerMiddle = 0.0;
  std::vector<std::int64_t> lowerCounts;  // L_j, by place
  ChiSquareFigures overall;
  ChiSquareFigures yates;  // two groups only
  std::optional<double> exactSig;
  MultipleComparison comparison;
  std::vector<SortedSample> sortedGroups;  // by place
  GroupMedianLimits medianLimits;          // only for the extended figures
};
