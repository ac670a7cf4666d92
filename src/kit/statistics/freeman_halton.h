#pragma once

#include <cstdint>
#include <optional>
#include <span>

/// The units of a group in the lower of two rows, and all its units.
struct GroupInRows {
  std::int64_t lower;
  std::int64_t size;
};

/// Exact significance of the table of two rows and at least two groups of size above 0, each row
/// holding a unit: all tables with its margins that are at most as probable as it is, but for
/// rounding (docs/statistics/median.md); for two groups Fisher's. Nothing where the product of size
/// + 1 over all groups but the largest is above 1e6. Relative error below 1e-10. Throws
/// std::bad_alloc.
/// G. H. Freeman, J. H. Halton, Biometrika 38 (1951).
[[nodiscard]] std::optional<double> FreemanHaltonSig(std::span<const GroupInRows> groups);
