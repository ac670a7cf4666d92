#pragma once

#include <cstdint>

/// P(span <= `span`) of the ranks of `control` units without the `trimmed` ones at either end, of
/// which at least one is left, in a random order of `control` + `experimental`
/// (docs/statistics/moses.md). A span below the number of units left counts as that number.
/// L. E. Moses, Psychometrika 17 (1952).
[[nodiscard]] double MosesSpanTail(std::int64_t control, std::int64_t experimental,
                                   std::int64_t trimmed, std::int64_t span);
