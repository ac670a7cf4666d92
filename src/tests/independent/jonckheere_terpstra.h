#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_counts.h"
#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/normal.h"
#include "tests/independent/jonckheere_statistic.h"

/// Jonckheere-Terpstra test for ordered alternatives: does a field rise or fall along the ordered
/// groups?
///
/// Formulas, limits, sources: docs/statistics/jonckheere_terpstra.md.
///
/// The groups are the categories with data, in the hypothesised order. The overall test sets the
/// direction in which pairs and ranges of groups are then judged, one-sided.
/// Pass 0 is the overall test, pass 1 counts what the comparisons need. Passes 1 and 2 find the box
/// plots. Records ascend by the test variable.
class NPARJonckTer final : public NPARTest {
 public:
  explicit NPARJonckTer(QDSettings* settings);

  XMLElement* WriteResults() override;

 protected:
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 222210: fewer than two groups with data. Warnings 222211, 222212: fewer than 3 groups;
  /// 222213, 222214: not significant; 220013: a group alone.
  void Compute() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  /// Pairs of units of different groups.
  [[nodiscard]] double PairsOfUnits() const;
  [[nodiscard]] double MeanRankOf(std::int32_t code);
  /// In a pass of comparisons.
  void Compare(double x, std::int64_t weight, std::size_t position);
  void EndPairwise();
  void EndStepwise();
  [[nodiscard]] std::optional<RangeFigures> ComputeRange(const SampleRange& range);
  [[nodiscard]] bool IsSurelyApart(const SampleRange& range, double statistic) const;
  /// The groups with data in their order, with their overall mean ranks.
  [[nodiscard]] std::vector<ComparedSample> OrderedSamples();
  /// One-sided, in the direction of the overall test.
  [[nodiscard]] double OneTailedSig(double z) const;
  [[nodiscard]] std::size_t PositionOf(std::int32_t code) const noexcept {
    return positionOfCode[static_cast<std::size_t>(code)];
  }
  [[nodiscard]] double SizeAt(std::size_t position) const {
    return static_cast<double>(tally->CountOf(orderedCodes[position]));
  }
  [[nodiscard]] std::size_t PairIndex(std::size_t earlier, std::size_t later) const noexcept {
    return later * (later - 1) / 2 + earlier;
  }

  /// Sums of the sizes of groups and of what a variance has of them.
  struct SizeSums {
    double sum = 0.0;
    double squares = 0.0;
    double cubic = 0.0;  // n^2 (2n + 3)
    [[nodiscard]] SizeSums With(double n) const noexcept {
      return {sum + n, squares + n * n, cubic + n * n * (2.0 * n + 3.0)};
    }
  };

  bool hasGroupRange = false;
  GroupTally::Key groups;
  GroupTally* tally = nullptr;
  std::vector<std::size_t> positionOfCode;  // in the hypothesised order of all categories
  JonckheereCounts overallCounts{0};
  NPARRank overallRanks;  // by category code; only for comparisons and extended figures
  NormalFigures overall;
  MultipleComparison comparison;
  std::vector<std::int32_t> orderedCodes;  // of the groups with data
  TieRuns runs;                            // of all values, for the comparisons
  std::vector<JonckheerePair> pairs;       // all pairs of the groups with data
  RangeCounts ranges{0};                   // all ranges of them
  std::vector<SizeSums> sizesBefore;       // by position: of all earlier groups
};
