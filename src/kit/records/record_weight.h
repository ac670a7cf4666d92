#pragma once

#include <cstdint>

#include "foundation/names.h"
#include "kit/records/record_batch.h"

/// A sum of weights as figures take it: a negative one counts as no weight at all.
[[nodiscard]] constexpr std::int64_t WeightOrNone(std::int64_t sum) noexcept {
  return sum > 0 ? sum : 0;
}

/// The frequency weight of a record: a variable of it, or 1 where there is none.
class RecordWeight {
 public:
  RecordWeight() = default;
  explicit RecordWeight(std::int32_t weightIndex) noexcept : index(weightIndex) {}
  /// Reads "weightVariableIndex" of a test's settings; absent: every record weighs 1.
  explicit RecordWeight(const QDSettings& settings) {
    static_cast<void>(settings.GetSettingValByName("weightVariableIndex", index));
  }

  /// Without its fraction, as counts take it.
  [[nodiscard]] std::int64_t Truncated(const Record& record) const noexcept {
    return index < 0 ? 1 : TruncateToInt32(record[index]);
  }
  /// As it stands in the record.
  [[nodiscard]] double Plain(const Record& record) const noexcept {
    return index < 0 ? 1.0 : record[index];
  }
  /// Calls `use(weightAt)`, where weightAt(i) is Truncated of the i-th record: records that weigh 1
  /// get a loop of their own.
  template <typename Use>
  void UseTruncated(RecordBatch& batch, Use use) const {
    if (const std::int32_t* weights = TruncatedOf(batch)) {
      use([weights](std::size_t i) { return std::int64_t{weights[i]}; });
    } else {
      use([](std::size_t) { return std::int64_t{1}; });
    }
  }
  /// Truncated of each record; null where every record weighs 1.
  [[nodiscard]] const std::int32_t* TruncatedOf(RecordBatch& batch) const {
    return index < 0 ? batch.Counts() : batch.TruncatedOf(index);
  }
  /// Calls `use(weightAt)`, where weightAt(i) is the weight of the i-th record as it stands there.
  template <typename Use>
  void UsePlain(RecordBatch& batch, Use use) const {
    if (index >= 0) {
      const double* weights = batch.Of(index);
      use([weights](std::size_t i) { return weights[i]; });
    } else if (const std::int32_t* counts = batch.Counts()) {
      use([counts](std::size_t i) { return static_cast<double>(counts[i]); });
    } else {
      use([](std::size_t) { return 1.0; });
    }
  }
  [[nodiscard]] std::int32_t Index() const noexcept { return index; }

 private:
  std::int32_t index = -1;
};
