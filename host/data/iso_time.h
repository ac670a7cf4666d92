#pragma once

#include <string>
#include <string_view>

namespace npar_host {

/// Dates and times in the extended forms of ISO 8601, Gregorian calendar, years 0000 to 9999.
/// False, and the number is left alone, for anything else.

/// "2024-02-29": days since 1970-01-01.
[[nodiscard]] bool ParseDate(std::string_view text, double& days);
/// "23:59", "23:59:59" or "23:59:59.25": seconds since midnight.
[[nodiscard]] bool ParseTime(std::string_view text, double& seconds);
/// A date, "T" or a blank, a time, and optionally "Z" or an offset such as "+02:00"; a date alone
/// is its midnight. Seconds since 1970-01-01 00:00 UTC; without offset the time counts as UTC.
[[nodiscard]] bool ParseTimestamp(std::string_view text, double& seconds);

/// The text of such a number, a fraction of a second only where there is one; empty for a number
/// that no text above spells.
[[nodiscard]] std::string DateText(double days);
[[nodiscard]] std::string TimeText(double seconds);
[[nodiscard]] std::string TimestampText(double seconds);

}  // namespace npar_host
