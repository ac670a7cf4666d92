#pragma once

#include "foundation/names.h"

/// Upper tail of the Kolmogorov distribution at z, in the bands of its small and large series: 1
/// below 0.27, 0 from 3.1 on and for what is no number from 0 on. N. Smirnov, Ann. Math. Stat. 19
/// (1948). False, and `sig` unchanged, where the exponential fails.
[[nodiscard]] bool KolmogorovSmirnovSig(double z, double& sig);
