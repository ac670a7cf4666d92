// What the C++ library of Debian's emscripten lacks of C++20: put before each source by the
// toolchain file. Numbers are written and read by printf and strtod, which round right in musl.
#pragma once

#ifdef __cplusplus
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace std {

template <typename To, typename From>
constexpr To bit_cast(const From& from) noexcept {
  return __builtin_bit_cast(To, from);
}

template <typename Array>
unique_ptr<Array> make_unique_for_overwrite(size_t count) {
  return unique_ptr<Array>(new remove_extent_t<Array>[count]);
}

inline from_chars_result from_chars(const char* first, const char* last, double& number,
                                    chars_format = chars_format::general) {
  // What stands there as a number and no more: strtod takes blanks, a plus sign and hexadecimals.
  const char* end = first;
  const auto digits = [&] {
    const char* const begin = end;
    while (end != last && *end >= '0' && *end <= '9') ++end;
    return end - begin;
  };
  if (end != last && *end == '-') ++end;
  ptrdiff_t found = 0;
  const char* const word = end;
  if (last - word >= 3 && (strncasecmp(word, "inf", 3) == 0 || strncasecmp(word, "nan", 3) == 0)) {
    const bool isLong = last - word >= 8 && strncasecmp(word, "infinity", 8) == 0;
    end = word + (isLong ? 8 : 3);
    found = 1;
  } else {
    found = digits();
    if (end != last && *end == '.') {
      ++end;
      const ptrdiff_t behind = digits();
      if (found + behind == 0) return {first, errc::invalid_argument};
      found += behind;
    }
    if (found == 0) return {first, errc::invalid_argument};
    const char* const mantissa = end;
    if (end != last && (*end == 'e' || *end == 'E')) {
      ++end;
      if (end != last && (*end == '-' || *end == '+')) ++end;
      if (digits() == 0) end = mantissa;
    }
  }
  const double value = strtod(string(first, end).c_str(), nullptr);
  const char* significant = word;
  while (significant != end && (*significant == '0' || *significant == '.')) ++significant;
  const bool isZero = significant == end || *significant < '1' || *significant > '9';
  const bool isBeyond = !isZero && (value == 0.0 || (std::isinf(value) && *significant <= '9'));
  if (isBeyond) return {end, errc::result_out_of_range};
  number = value;
  return {end, errc()};
}

inline to_chars_result to_chars(char* first, char* last, double value, chars_format,
                                int precision) {
  char text[512];
  const int length = snprintf(text, sizeof text, "%.*g", precision, value);
  if (length > last - first) return {last, errc::value_too_large};
  return {static_cast<char*>(memcpy(first, text, static_cast<size_t>(length))) + length, errc()};
}

// The shortest text that reads as the same number.
inline to_chars_result to_chars(char* first, char* last, double value) {
  char text[32];
  int digits = 15;
  do snprintf(text, sizeof text, "%.*e", digits - 1, value);
  while (std::isfinite(value) && strtod(text, nullptr) != value && ++digits <= 17);
  if (std::isfinite(value)) {
    // Without the zeros behind the last digit; as a fixed number where that is no longer.
    string mantissa(text, strchr(text, 'e'));
    const string exponent(strchr(text, 'e'));
    if (mantissa.find('.') != string::npos) {
      mantissa.erase(mantissa.find_last_not_of('0') + 1);
      if (mantissa.back() == '.') mantissa.pop_back();
    }
    const string scientific = mantissa + exponent;
    const int significant = static_cast<int>(
        count_if(mantissa.begin(), mantissa.end(), [](char c) { return c >= '0' && c <= '9'; }));
    char fixed[400];
    snprintf(fixed, sizeof fixed, "%.*f", max(0, significant - 1 - atoi(exponent.c_str() + 1)),
             value);
    const string shorter = strlen(fixed) <= scientific.size() ? string(fixed) : scientific;
    if (static_cast<ptrdiff_t>(shorter.size()) > last - first) return {last, errc::value_too_large};
    return {copy(shorter.begin(), shorter.end(), first), errc()};
  }
  const size_t length = strlen(text);
  return {static_cast<char*>(memcpy(first, text, length)) + length, errc()};
}

namespace ranges {

// Each on a whole range, by a projection where one is given.
template <typename Range, typename Test, typename Projection = identity>
bool any_of(Range&& range, Test test, Projection projection = {}) {
  return std::any_of(std::begin(range), std::end(range),
                     [&](auto&& each) { return invoke(test, invoke(projection, each)); });
}
template <typename Range, typename Test, typename Projection = identity>
bool all_of(Range&& range, Test test, Projection projection = {}) {
  return std::all_of(std::begin(range), std::end(range),
                     [&](auto&& each) { return invoke(test, invoke(projection, each)); });
}
template <typename Range, typename Test, typename Projection = identity>
bool none_of(Range&& range, Test test, Projection projection = {}) {
  return !ranges::any_of(range, test, projection);
}
template <typename Range, typename Test, typename Projection = identity>
auto find_if(Range&& range, Test test, Projection projection = {}) {
  return std::find_if(std::begin(range), std::end(range),
                      [&](auto&& each) { return invoke(test, invoke(projection, each)); });
}
template <typename Range, typename Value, typename Projection = identity>
auto find(Range&& range, const Value& value, Projection projection = {}) {
  return ranges::find_if(
      range, [&](auto&& each) { return each == value; }, projection);
}
template <typename Range, typename Test, typename Projection = identity>
auto count_if(Range&& range, Test test, Projection projection = {}) {
  return std::count_if(std::begin(range), std::end(range),
                       [&](auto&& each) { return invoke(test, invoke(projection, each)); });
}
template <typename Range, typename Output, typename Function>
void transform(Range&& range, Output output, Function function) {
  std::transform(std::begin(range), std::end(range), output, function);
}
template <typename Range, typename Test, typename Value>
void replace_if(Range&& range, Test test, const Value& value) {
  std::replace_if(std::begin(range), std::end(range), test, value);
}
template <typename Range, typename Other>
auto mismatch(Range&& range, Other&& other) {
  return std::mismatch(std::begin(range), std::end(range), std::begin(other), std::end(other));
}
template <typename Range, typename Output, typename Test>
void copy_if(Range&& range, Output output, Test test) {
  std::copy_if(std::begin(range), std::end(range), output, test);
}
template <typename Range, typename Function>
void for_each(Range&& range, Function function) {
  std::for_each(std::begin(range), std::end(range), ref(function));
}
struct OrderLess {
  template <typename A, typename B>
  bool operator()(A&& a, B&& b) const {
    return a < b;
  }
};
template <typename Range, typename Value>
auto lower_bound(Range&& range, const Value& value) {
  return std::lower_bound(std::begin(range), std::end(range), value);
}
template <typename Range, typename Value, typename Compare = OrderLess,
          typename Projection = identity>
auto upper_bound(Range&& range, const Value& value, Compare compare = {},
                 Projection projection = {}) {
  return std::upper_bound(std::begin(range), std::end(range), value, [&](auto&& a, auto&& b) {
    return invoke(compare, a, invoke(projection, b));
  });
}
template <typename Range>
auto max_element(Range&& range) {
  return std::max_element(std::begin(range), std::end(range));
}
template <typename Range>
auto minmax(Range&& range) {
  const auto found = std::minmax_element(std::begin(range), std::end(range));
  struct {
    remove_cvref_t<decltype(*std::begin(range))> min, max;
  } both{*found.first, *found.second};
  return both;
}
template <typename Range, typename Value>
void replace(Range&& range, const Value& old, const Value& other) {
  std::replace(std::begin(range), std::end(range), old, other);
}
template <typename Range>
void reverse(Range&& range) {
  std::reverse(std::begin(range), std::end(range));
}

template <typename Compare, typename Projection>
auto Ordering(Compare& compare, Projection& projection) {
  return [&](auto&& a, auto&& b) {
    return invoke(compare, invoke(projection, a), invoke(projection, b));
  };
}
template <typename Range, typename Compare = OrderLess, typename Projection = identity>
void sort(Range&& range, Compare compare = {}, Projection projection = {}) {
  std::sort(std::begin(range), std::end(range), Ordering(compare, projection));
}
template <typename Range, typename Compare = OrderLess, typename Projection = identity>
void stable_sort(Range&& range, Compare compare = {}, Projection projection = {}) {
  std::stable_sort(std::begin(range), std::end(range), Ordering(compare, projection));
}
template <typename Range, typename Place, typename Compare = OrderLess,
          typename Projection = identity>
void nth_element(Range&& range, Place place, Compare compare = {}, Projection projection = {}) {
  std::nth_element(std::begin(range), place, std::end(range), Ordering(compare, projection));
}

}  // namespace ranges
}  // namespace std
#endif
