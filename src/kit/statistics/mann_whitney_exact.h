#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "kit/statistics/exact_tails.h"
#include "kit/statistics/tied_units.h"

/// The exact distribution of U is formed up to this number n1 n2 of pairs.
inline constexpr std::int64_t kMostMannWhitneyPairs = 10000;
/// Of groups with at least one unit.
[[nodiscard]] constexpr bool HasExactMannWhitney(std::int64_t n1, std::int64_t n2) noexcept {
  return n1 <= kMostMannWhitneyPairs / n2;
}

/// What the exact distribution of U says (docs/statistics/mann_whitney.md).
struct MannWhitneyExact {
  ExactTails sigs;
  double point = 1.0;  ///< P(U = u)
};

/// Given the ties: each choice of n1 among all units is as likely as any other. The runs ascend and
/// hold at least one unit of either group, with n1 n2 up to kMostMannWhitneyPairs. Relative error
/// below 1e-12, since only positive numbers are added. Throws std::bad_alloc.
///
/// The shift algorithm (B. Streitberg, J. Röhmel, Statistical Software Newsletter 12 (1986)), run
/// by run, on the lower and the upper half of the units by themselves: what is counted of either is
/// joined by the tails alone. That costs at most (n1 n2)^2 / 4 additions, without ties half of it.
[[nodiscard]] MannWhitneyExact ConditionalMannWhitney(std::span<const TiedUnits> runs);

/// P(U = u) of n1 and n2 units without ties, u from 0 to n1 n2, n1 n2 from 1 to
/// kMostMannWhitneyPairs. Relative error below 1e-12. Throws std::bad_alloc.
/// H. B. Mann, D. R. Whitney, Ann. Math. Stat. 18 (1947).
[[nodiscard]] std::vector<double> MannWhitneyProbabilities(std::int64_t n1, std::int64_t n2);
