#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/contract/extended_figures.h"
#include "kit/contract/message.h"
#include "ranges/fit_extremes.h"
#include "ranges/fitted_sums.h"
#include "ranges/run_sums.h"
#include "ranges/smirnov_extremes.h"

/// What a rank test makes of the sums of a whole sorted sample: the figures that the unit of the
/// same test gets from its records.
struct RankFigures {
  /// As the result document names them, in its order.
  std::vector<std::pair<std::string_view, double>> statistics;
  std::vector<std::pair<std::string_view, double>> extremes;  ///< "MostExtremeDifferences"
  double decidingSig = 1.0;
  /// The groups with units, ascending, and the means of their ranks.
  std::vector<ComparedSample> groups;
  std::vector<ComparedSample> compared;   ///< groups in the order that pairs go by
  std::vector<PairwiseComparison> pairs;  ///< by places in `compared`
  ExtendedFigures extended;               ///< all that the test has, where the sums tell it
  /// A test with an error has no figures.
  std::vector<NPARMessage> messages;
};

/// Of two groups.
[[nodiscard]] RankFigures MannWhitneyFigures(const RunSums& sums);
/// Of all groups, with pairs where they are wanted and the test is significant at the level.
[[nodiscard]] RankFigures KruskalWallisFigures(const RunSums& sums, bool wantsPairs, double level);
/// Of the groups in their order, or from the last one down; with pairs where the sums have them and
/// the test is significant at the level.
[[nodiscard]] RankFigures JonckheereFigures(const RunSums& sums, bool descends, double level);

/// Of two groups, in a second pass over the sample.
[[nodiscard]] RankFigures SmirnovFigures(SmirnovExtremes extremes);

/// Of one sample, in a second pass over it.
[[nodiscard]] RankFigures FitFigures(const FittedDistribution& wanted, const FittedSums& sums,
                                     const ExtremeDifferences& differences);

/// Sums of the sizes of differences from 0, by sign; `zeros` are the units without a rank.
struct SignedRankSums {
  const RunSums& sums;
  std::size_t negative;  ///< group
  std::size_t positive;
  std::int64_t zeros = 0;
};
/// Wilcoxon's; those of pairs count the zeros among the units of the test.
[[nodiscard]] RankFigures SignedRankFigures(const SignedRankSums& ranked, bool isOfPairs);
