#include "kit/statistics/moses.h"

#include <algorithm>

#include "foundation/names.h"

// The sum of docs/statistics/moses.md as a hypergeometric probability: weights make billions of
// units.

double MosesSpanTail(std::int64_t control, std::int64_t experimental, std::int64_t trimmed,
                     std::int64_t span) {
  const std::int64_t kept = control - 2 * trimmed;
  const auto between = static_cast<double>(std::clamp<std::int64_t>(span - kept, 0, experimental));
  std::int32_t error = 0;
  return QDDistFun::CDFHyper(between, between + static_cast<double>(kept - 1),
                             static_cast<double>(experimental),
                             static_cast<double>(control + experimental), error);
}
