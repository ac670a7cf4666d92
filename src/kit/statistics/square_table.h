#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "kit/statistics/chi_square.h"

// Tables of two fields with the same k categories, row by row
// (docs/statistics/marginal_homogeneity.md). Records with equal categories do not count.

/// A chi-square statistic with its degrees of freedom.
struct TableFigures {
  double statistic = 0.0;
  std::int64_t degreeOfFreedom = 0;
  double sig = 1.0;  ///< upper tail
};

/// Have both fields the same distribution? Nothing where no record has unequal categories. A.
/// Stuart, Biometrika 42 (1955); A. E. Maxwell, British Journal of Psychiatry 116 (1970).
[[nodiscard]] std::optional<TableFigures> StuartMaxwell(std::span<const std::int64_t> table,
                                                        std::size_t categories);

/// Is each change as frequent as the opposite one? Pairs of categories without records carry no
/// degree of freedom; nothing where all are so. A. H. Bowker, JASA 43 (1948); J. M. Hoenig, M. J.
/// Morgan, C. A. Brown, Can. J. Fish. Aquat. Sci. 52 (1995).
[[nodiscard]] std::optional<TableFigures> Bowker(std::span<const std::int64_t> table,
                                                 std::size_t categories);
