#pragma once

#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace QDCommon_700 {

/// The number that the whole text spells in the C locale, a leading "+" included. False, and `out`
/// unchanged, for anything else: blanks around it, a number out of the type's range, and for
/// doubles the words for infinity and not a number, which nobody can mean as a measurement.
template <typename Number>
[[nodiscard]] bool SpellsNumber(std::string_view text, Number& out) {
  if (text.starts_with('+') && text.size() > 1 && text[1] != '-') text.remove_prefix(1);
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || text.empty()) return false;
  if constexpr (std::is_floating_point_v<Number>) {
    if (!std::isfinite(number)) return false;
  }
  out = number;
  return true;
}

}  // namespace QDCommon_700
