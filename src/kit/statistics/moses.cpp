#include "kit/statistics/moses.h"

#include <algorithm>

#include "foundation/names.h"

// The i-th term of the tail p(h) is the probability that i experimental units stand before the r-th
// of the control units, r = nc - 2h - 1, in a random order of all. Those are at most g where the
// first g + r units hold at most g experimental ones, which is a hypergeometric probability: no sum
// over the units, of which weights make billions.

double MosesSpanTail(std::int64_t control, std::int64_t experimental, std::int64_t trimmed,
                     std::int64_t span) {
  const std::int64_t kept = control - 2 * trimmed;
  const auto between = static_cast<double>(std::clamp<std::int64_t>(span - kept, 0, experimental));
  std::int32_t error = 0;
  return QDDistFun::CDFHyper(between, between + static_cast<double>(kept - 1),
                             static_cast<double>(experimental),
                             static_cast<double>(control + experimental), error);
}
