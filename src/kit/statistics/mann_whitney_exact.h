#pragma once

#include <cstdint>
#include <vector>

/// Null distribution of the Mann-Whitney statistic U of two groups of `a` and `b` untied values:
/// element u is the number of arrangements with U = u, from 0 to a b. Empty for a group below 1.
/// Throws std::bad_alloc.
///
/// Source: L. C. Dinneen, B. C. Blakesley, algorithm AS 62, Applied Statistics 22 (1973). Doubles
/// hold every frequency exactly up to C(a + b, a) = 2^53, and to rounding beyond.
[[nodiscard]] std::vector<double> MannWhitneyFrequencies(std::int64_t a, std::int64_t b);

/// Two-sided exact significance: the smaller tail of U, doubled and cut to 1. A U between two
/// integers, from tied values, is compared with the integers beyond it in either tail. Not a number
/// for a group below 1.
[[nodiscard]] double ExactMannWhitneyP(std::int64_t a, std::int64_t b, double u);
