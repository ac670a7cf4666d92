#pragma once

#include <cstdint>

/// P(span <= `span`) of the ranks of `control` units without the `trimmed` ones at either end, in a
/// random order of `control` + `experimental`. With nc and ne for these, nc - 2h >= 1 units left, h
/// trimmed at either end, and g = span - (nc - 2h), at least 0:
///   p = sum over i = 0..g of C(i + nc - 2h - 2, i) C(ne + 2h + 1 - i, ne - i) / C(nc + ne, nc)
/// Source: L. E. Moses, Psychometrika 17 (1952).
[[nodiscard]] double MosesSpanTail(std::int64_t control, std::int64_t experimental,
                                   std::int64_t trimmed, std::int64_t span);
