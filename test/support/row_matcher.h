#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

/// The cells of a row of a simple table.
[[nodiscard]] inline std::vector<std::string_view> CellsOf(std::string_view row) {
  std::vector<std::string_view> cells;
  for (std::size_t begin = 0;;) {
    const std::size_t end = std::min(row.find(';', begin), row.size());
    cells.push_back(row.substr(begin, end - begin));
    if (end == row.size()) return cells;
    begin = end + 1;
  }
}

[[nodiscard]] inline bool AreCellsClose(std::string_view a, std::string_view b, double relative,
                                        double absolute = 0.0) {
  if (a == b) return true;
  double x = 0.0;
  double y = 0.0;
  const bool areNumbers = std::from_chars(a.data(), a.data() + a.size(), x).ec == std::errc() &&
                          std::from_chars(b.data(), b.data() + b.size(), y).ec == std::errc();
  return areNumbers &&
         std::fabs(x - y) <= absolute + relative * std::max(std::fabs(x), std::fabs(y));
}

/// A row whose cells equal those of another, numbers within 1e-12: reference values of
/// significances do not carry more.
MATCHER_P(IsRow, expected, std::string("is the row ") + std::string(expected)) {
  const std::vector<std::string_view> cells = CellsOf(arg);
  const std::vector<std::string_view> wanted = CellsOf(expected);
  if (cells.size() != wanted.size()) return false;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (AreCellsClose(cells[i], wanted[i], 1e-12)) continue;
    *result_listener << "cell " << i << " is " << cells[i] << " instead of " << wanted[i];
    return false;
  }
  return true;
}
