#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/order/wide_integer.h"

/// The squares of the numbers of successes that records have within every range of neighbouring
/// binary fields, summed over the records, from one walk over them.
///
/// Such a square counts the pairs of successes, each with itself included. So the weight of the
/// records with both of two successes, for each pair of fields, gives the sums of all ranges, in
/// memory of the square of the number of fields.
class RangeSuccesses {
 public:
  RangeSuccesses() = default;
  /// Throws std::bad_alloc.
  explicit RangeSuccesses(std::size_t fieldCount);

  /// Starts some records, all failures, of weight 1 where `weights` is null; Put, for a field at a
  /// time; then CountPairs. Throws std::bad_alloc.
  void Start(std::size_t recordCount, const std::int32_t* weights);
  void PutSuccess(std::size_t place, std::size_t record) noexcept {
    bits[place * wordCount + record / kWordBits] |= std::uint64_t{1} << record % kWordBits;
  }
  void CountPairs();
  /// Once, after the last record; then comes the reader.
  void Finish();

  /// Sum of w R^2, R being the successes of a record within the range and w its weight.
  [[nodiscard]] WideInteger SumOfSquares(const SampleRange& range) const noexcept {
    return sums[range.first * fieldCount + range.last];
  }

 private:
  static constexpr std::size_t kWordBits = 64;

  /// Weight of the records in hand with both successes.
  [[nodiscard]] std::int64_t WeightOfBoth(std::size_t place, std::size_t other) const noexcept;

  std::size_t fieldCount = 0;
  std::size_t wordCount = 0;
  const std::int32_t* weights = nullptr;
  std::vector<std::uint64_t> bits;  // of the records in hand, by field
  std::vector<WideInteger> sums;    // of a pair, row before column; in the end, of a range
};
