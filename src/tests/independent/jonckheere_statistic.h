#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/ranks/tied_run.h"
#include "kit/ranks/ties.h"
#include "kit/statistics/normal.h"

/// What the data of ordered groups come to in the Jonckheere-Terpstra test.
struct JonckheereSums {
  double statistic = 0.0;  ///< J
  TieSums ties;
};
/// Of groups of these sizes.
[[nodiscard]] NormalFigures Standardize(const JonckheereSums& sums,
                                        const std::vector<double>& sizes);

/// Sums over ascending values in k groups. J counts, for each value, the smaller values in earlier
/// groups, equal ones as a half: instead of one ranker for each pair of groups there is one tree of
/// cumulative counts (P. M. Fenwick, Software: Practice and Experience 24 (1994)), so a value costs
/// log k.
class JonckheereCounts {
 public:
  explicit JonckheereCounts(std::size_t groupCount) : run(groupCount), tree(groupCount + 1) {}

  void Add(double x, std::int64_t weight, std::size_t place) {
    if (run.IsEndedBy(x)) CloseRun();
    run.Add(weight, place);
  }
  /// Takes the current run; to be called after the last value.
  void CloseRun();
  [[nodiscard]] const JonckheereSums& Sums() const noexcept { return sums; }

 private:
  [[nodiscard]] double CountBefore(std::size_t place) const noexcept;
  void AddCount(std::size_t place, double weight) noexcept;

  TiedRun run;
  std::vector<double> tree;  // counts below the run, from 1
  JonckheereSums sums;
};

/// The same for two groups, in a few words, since there may be many pairs.
class JonckheerePair {
 public:
  void Add(double x, std::int64_t weight, bool isLater) {
    if (runs.Begins(x)) CloseRun();
    (isLater ? laterInRun : earlierInRun) += static_cast<double>(weight);
  }
  void CloseRun() noexcept;
  [[nodiscard]] const JonckheereSums& Sums() const noexcept { return sums; }

 private:
  TieRuns runs;
  double earlierBelow = 0.0;
  double earlierInRun = 0.0;
  double laterInRun = 0.0;
  JonckheereSums sums;
};
