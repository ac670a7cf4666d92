#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_counts.h"
#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/chi_square.h"

/// Kruskal-Wallis one-way analysis of variance by ranks: do k independent samples come from the
/// same population?
///
/// Formulas, limits, sources: docs/statistics/kruskal_wallis.md.
///
/// A step-down orders the groups by their mean ranks, then medians; pairs are adjusted for all
/// categories of the group variable, also those without data.
/// Pass 0 ranks, pass 1 finds the hinges of the box plots, pass 2 their outliers and what the
/// ranges of a step-down come to. Records ascend by the test variable.
class NPARKruskalWOneWay final : public NPARTest {
 public:
  explicit NPARKruskalWOneWay(QDSettings* settings);

  XMLElement* WriteResults() override;

 protected:
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 222112: fewer than two groups with data. Help message 222111 with every result. Warnings
  /// 222118, 222116: fewer than 3 groups; 222119, 222117: not significant; 220013: a group alone.
  void Compute() override;
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  void RunPairwise();
  [[nodiscard]] FigureTable PairsTable() const;
  void OrderGroups();
  void RunStepwise();
  /// H within a range of the groups in stepwise order; nothing where it is significant for sure.
  [[nodiscard]] std::optional<RangeFigures> ComputeRange(const SampleRange& range);
  [[nodiscard]] bool IsSurelyApart(const SampleRange& range) const;

  GroupTally::Key groups;
  GroupTally* tally = nullptr;
  NPARRank overallRanks;          // by category code
  std::vector<double> meanRanks;  // by place among the groups with data
  ChiSquareFigures overall;
  MultipleComparison comparison;
  std::vector<std::size_t> orderedPlaces;    // the groups in stepwise order
  std::vector<std::size_t> positionOfPlace;  // and back
  RangeCounts ranges{0};                     // of the groups in that order
};
