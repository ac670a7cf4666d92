#pragma once

#include <cstdint>

// The exact distribution of the differences between the empirical function of n units and a
// continuous distribution that does not depend on them (docs/statistics/ks_one_sample.md).

/// Up to so many units there is an exact value.
inline constexpr std::int64_t kMostExactKolmogorovUnits = 2000;

/// P(D+ >= d) of the largest difference to one side; 1 for d up to 0.
/// Z. W. Birnbaum, F. H. Tingey, Ann. Math. Stat. 22 (1951).
[[nodiscard]] double OneSidedKolmogorovSig(std::int64_t n, double d);

/// P(D >= d) of the largest difference to either side. By G. Marsaglia, W. W. Tsang, J. Wang, J.
/// Stat. Software 8(18) (2003), and where it cannot be told from twice the one-sided value, that:
/// R. Simard, P. L'Ecuyer, J. Stat. Software 39(11) (2011).
[[nodiscard]] double TwoSidedKolmogorovSig(std::int64_t n, double d);
