#include "kit/order/weighted_values.h"

#include <algorithm>
#include <cmath>

void WeightedValues::Shift(double distance) noexcept {
  for (PlainKey& value : values) {
    value.key = std::bit_cast<std::uint64_t>(std::bit_cast<double>(value.key) + distance);
  }
}

void WeightedValues::Sort() {
  if (weights.IsEmpty()) {
    SortPlainly();
    return;
  }
  // Each weight goes with its key, in the place of a record's number.
  const LargeArray<NumberedKey> entries = SortedEntries<NumberedKey>(
      Size(),
      [this](std::size_t place) { return NumberedKey(OrderedBits(Value(place)), weights[place]); });
  weights = {};
  std::int64_t below = 0;
  weightBelow.Assign(Size() + 1, below);
  for (std::size_t place = 0; place < Size(); ++place) {
    const double value = ValueOfOrderedBits(entries[place].Key());
    values.begin()[place].key = std::bit_cast<std::uint64_t>(value);
    below += entries[place].number;
    weightBelow.begin()[place + 1] = below;
  }
}

void WeightedValues::SortPlainly() {
  const auto bitsOf = [](PlainKey value) { return OrderedBits(std::bit_cast<double>(value.key)); };
  if (std::is_sorted(values.begin(), values.end(),
                     [&](PlainKey a, PlainKey b) { return bitsOf(a) < bitsOf(b); })) {
    return;
  }
  for (PlainKey& value : values) value.key = bitsOf(value);
  SortKeys(values.begin(), Size());
  for (PlainKey& value : values) {
    value.key = std::bit_cast<std::uint64_t>(ValueOfOrderedBits(value.key));
  }
}

bool WeightedValues::IsPlain() const noexcept {
  return static_cast<std::uint64_t>(TotalWeight()) == Size() && std::isfinite(Value(0)) &&
         std::isfinite(Value(Size() - 1));
}
