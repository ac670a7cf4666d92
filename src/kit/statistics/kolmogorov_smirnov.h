#pragma once

#include "foundation/names.h"

/// Upper tail of Kolmogorov's limiting distribution at z, in the bands of
/// docs/statistics/ks_one_sample.md; 0 for a z below 0 or not a number. False, and `sig` unchanged,
/// where the exponential fails.
/// N. V. Smirnov, Ann. Math. Stat. 19 (1948).
[[nodiscard]] bool KolmogorovSmirnovSig(double z, double& sig);

/// The same tail without bands, to the accuracy of a double: 1 for a z of 0, not a number for
/// one below or not a number.
[[nodiscard]] double LimitingKolmogorovSig(double z);
