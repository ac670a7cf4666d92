#include "kit/comparisons/range_ranks.h"

#include <algorithm>
#include <type_traits>

#include "kit/order/interruption.h"

namespace {

/// 1 above, 0 beside, -1 below.
template <typename Step>
int SideOf(Step own, Step other) noexcept {
  return (own > other ? 1 : 0) - (own < other ? 1 : 0);
}

}  // namespace

RangeRanks::RangeRanks(std::size_t fieldCount)
    : fieldCount(fieldCount),
      ranks(fieldCount),
      steps(fieldCount),
      sides((fieldCount + 1) * fieldCount) {}

void RangeRanks::Add(const std::vector<const double*>& columns, RecordBatch& batch,
                     const RecordWeight& weight) {
  for (std::size_t first = 0; first < batch.Size(); first += ranks.RecordsAtOnce()) {
    const std::size_t count = std::min(ranks.RecordsAtOnce(), batch.Size() - first);
    ranks.Rank(columns, first, count);
    for (std::size_t field = 0; field < fieldCount; ++field) {
      const std::int32_t* of = ranks.StepsOf(field);
      for (std::size_t i = 0; i < count; ++i) steps[field][first + i] = static_cast<Step>(of[i]);
    }
  }
  if (weight.TruncatedOf(batch) == nullptr) {
    totalWeight += static_cast<std::int64_t>(batch.Size());
    CountPairs(batch.Size(), [](std::size_t) { return Step{1}; });
    return;
  }
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t i = 0; i < batch.Size(); ++i) totalWeight += weightAt(i);
    CountPairs(batch.Size(), weightAt);
  });
}

template <typename WeightAt>
void RangeRanks::CountPairs(std::size_t count, WeightAt weightAt) {
  using Sum = std::invoke_result_t<WeightAt, std::size_t>;  // as wide as the weights need
  for (std::size_t field = 0; field < fieldCount; ++field) {
    Interruption::Check();
    const Step* own = steps[field].data();
    for (std::size_t other = 0; other < field; ++other) {
      const Step* others = steps[other].data();
      Sum sum = 0;
      for (std::size_t i = 0; i < count; ++i) {
        sum = static_cast<Sum>(sum + weightAt(i) * SideOf(own[i], others[i]));
      }
      sides[(other + 1) * fieldCount + field] += sum;
      sides[(field + 1) * fieldCount + other] -= sum;
    }
  }
}

void RangeRanks::Finish() {
  for (std::size_t row = 1; row <= fieldCount; ++row) {
    Interruption::Check();
    const std::int64_t* before = SidesBefore(row - 1);
    std::int64_t* own = sides.data() + row * fieldCount;
    for (std::size_t field = 0; field < fieldCount; ++field) own[field] += before[field];
  }
}
