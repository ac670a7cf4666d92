#pragma once

#include <string>

#include "support/recording_host.h"

/// Parameters that choose every test there is, with every comparison procedure and interval method,
/// on the fields of AllTestsFields.
[[nodiscard]] std::string AllTestsParameters();

/// Continuous x and y, a count, categorical p and q (yes, no), o1 and o2 (1, 2, 4) and h (a, b, c,
/// the groups), a weight w and a case identifier, in this order.
[[nodiscard]] std::string AllTestsFields();
inline constexpr std::size_t kAllTestsWidth = 10;

/// A host with those and some 40 records, missing values among them, that every test can use.
struct AllTestsHost : RecordingHost {
  explicit AllTestsHost(std::size_t recordCount = 40);
};
