#pragma once

#include <cstdint>

#include "foundation/names.h"

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
  [[nodiscard]] std::int32_t Index() const noexcept { return index; }

 private:
  std::int32_t index = -1;
};
