#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ranges/smirnov_extremes.h"

namespace npar_host {

/// What pieces have to know of all of them before they are summed a second time: two groups, their
/// sizes, and how many of their units stand before each piece.
struct FurtherPass {
  FurtherPass() = default;
  /// From what Write gave. InputError for other bytes.
  explicit FurtherPass(std::string_view bytes);
  [[nodiscard]] std::string Write() const;
  /// Extremes that begin with a piece, counted from 0. InputError for a piece that was not there.
  [[nodiscard]] SmirnovExtremes Start(std::size_t piece) const;

  std::string signature;  // of the plan
  std::vector<std::string> groups;
  SmirnovExtremes::Counts sizes{};
  std::vector<SmirnovExtremes::Counts> before;  // by piece
};

}  // namespace npar_host
